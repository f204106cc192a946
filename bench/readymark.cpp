#include "readymark.h"

#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

namespace kovanix::bench {

namespace {

QString& awaitedControl() {
    static QString name;
    return name;
}

class ReadyMark : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool paint = event->type() == QEvent::Paint && watched->isWidgetType();
        if (paint)
            ++m_paints;
        if (paint || event->type() == QEvent::FocusIn || event->type() == QEvent::WindowActivate)
            askSoon();
        return false;
    }

private:
    void askSoon() {
        if (m_asking || m_ready)
            return;
        m_asking = true;
        QTimer::singleShot(0, this, [this, before = m_paints] { ask(before); });
    }

    void ask(int paintsBefore) {
        m_asking = false;
        const QWidget* focused = QApplication::focusWidget();
        if (m_paints == 0 || !focused || focused->objectName() != awaitedControl() ||
            !focused->isActiveWindow())
            return;
        if (m_paints != paintsBefore) {
            askSoon();
            return;
        }
        m_ready = true;
        constexpr char mark[] = "ready\n";
        if (::write(STDOUT_FILENO, mark, sizeof mark - 1) < 0)
            QCoreApplication::exit(2);
        QCoreApplication::exit(0);
    }

    int m_paints = 0;
    bool m_asking = false;
    bool m_ready = false;
};

void watchApplication() {
    if (!awaitedControl().isEmpty())
        QCoreApplication::instance()->installEventFilter(new ReadyMark(QCoreApplication::instance()));
}

}  // namespace

void endWhenReady(const QString& focusedControl) {
    awaitedControl() = focusedControl;
    qAddPreRoutine(watchApplication);
}

}  // namespace kovanix::bench
