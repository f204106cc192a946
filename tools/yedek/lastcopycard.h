#pragma once

#include <QWidget>

#include "widgets/look.h"

class QLabel;

namespace kovanix {
class FittedLabel;
}

namespace kovanix::yedek {

/// What a shopkeeper looks for first, large: when the last good copy was taken, on green, or that there is
/// none or only an old one, on red; on blue as long as that is still being found out.
class LastCopyCard : public QWidget {
    Q_OBJECT

public:
    explicit LastCopyCard(QWidget* parent = nullptr);

    enum class State { unknown, good, bad };

    /// @param words  the large line. @param hint  the small one below
    void setState(State state, const QString& words, const QString& hint);
    State state() const { return m_state; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    State m_state = State::unknown;
    FittedLabel* m_words;
    QLabel* m_hint;
};

}  // namespace kovanix::yedek
