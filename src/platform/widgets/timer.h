#pragma once

#include <QTimer>

namespace kovanix {

/// A timer that is told by its interval alone: 0 stands still, any other value (milliseconds) ticks again and
/// again.
class Timer : public QObject {
    Q_OBJECT
    Q_PROPERTY(int interval READ interval WRITE setInterval)

public:
    explicit Timer(QObject* parent = nullptr);

    int interval() const { return m_interval; }
    /// Sets the interval and starts counting anew; 0 stops.
    void setInterval(int milliseconds);

Q_SIGNALS:
    void tick();

private:
    int m_interval = 0;
    QTimer m_timer;
};

}  // namespace kovanix
