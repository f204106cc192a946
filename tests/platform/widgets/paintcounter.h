#pragma once

#include <QEvent>
#include <QObject>
#include <QPaintEvent>
#include <QRegion>

namespace kovanix {

/// Counts the paintings of a widget and gathers what they covered.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QObject& watched) { watched.installEventFilter(this); }

    int count() const { return m_count; }
    const QRegion& region() const { return m_region; }

    void reset() {
        m_count = 0;
        m_region = {};
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            ++m_count;
            m_region += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }

private:
    int m_count = 0;
    QRegion m_region;
};

}  // namespace kovanix
