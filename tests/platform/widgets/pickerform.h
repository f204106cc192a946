#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include "runtime/clock.h"
#include "widgets/calendarpanel.h"
#include "widgets/dtpicker.h"
#include "widgets/monthview.h"
#include "widgets/timepanel.h"

namespace kovanix {

using namespace Qt::StringLiterals;

using Format = DTPicker::Format;

inline const QDateTime now(QDate(2026, 5, 4), QTime(10, 24, 31, 500));
inline const QDate may(2026, 5, 1);
inline const QTime morning(7, 5, 9);

inline void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

inline void tap(QWidget& control) {
    QTest::mouseClick(&control, Qt::LeftButton);
}

inline void show(QWidget& window) {
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("no window gets the keyboard");
}

/// A window with a picker at its upper left, and something beside it that takes the keyboard.
struct Form {
    QWidget window;
    DTPicker picker{&window};
    QLineEdit other{&window};
    QStringList told;

    explicit Form(Format format = Format::date, QSize size = {760, 700}) {
        picker.setFormat(format);
        picker.setDate(may);
        picker.setTime(morning);
        picker.setGeometry(16, 60, 220, 48);
        other.setGeometry(500, 60, 200, 48);
        window.resize(size);
        show(window);
        picker.setFocus();
        QObject::connect(&picker, &DTPicker::change, &window, [this] { told << u"change"_s; });
        QObject::connect(&picker, &DTPicker::closeUp, &window, [this] { told << u"closeUp"_s; });
        QObject::connect(&picker, &DTPicker::lostFocus, &window, [this] { told << u"lostFocus"_s; });
    }

    QAbstractButton& button() { return *picker.findChild<QAbstractButton*>(); }
    QLineEdit& edit() { return *picker.findChild<QLineEdit*>(); }
    CalendarPanel* calendar() { return open<CalendarPanel>(); }
    TimePanel* times() { return open<TimePanel>(); }
    MonthView& month() { return calendar()->month(); }
    void drop() { tap(button()); }
    void type(const QString& text) {
        edit().selectAll();
        QTest::keyClicks(&picker, text);
    }

private:
    // One that was closed lives until the event loop turns.
    template <class Panel>
    Panel* open() {
        for (auto* panel : window.findChildren<Panel*>()) {
            if (panel->isVisible())
                return panel;
        }
        return nullptr;
    }
};

}  // namespace kovanix
