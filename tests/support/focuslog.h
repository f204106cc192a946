#pragma once

#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <QtGui/private/qguiapplication_p.h>
#include <QAccessible>
#include <QStringList>

namespace kovanix {

/// What assistive tools are told of the focus while it lives, as if one were running: the name of each thing
/// that gets it.
class FocusLog {
public:
    FocusLog() {
        s_names.clear();
        setActive(true);
        QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
            if (event->type() == QAccessible::Focus && event->accessibleInterface())
                s_names << event->accessibleInterface()->text(QAccessible::Name);
        });
    }
    ~FocusLog() {
        QAccessible::installUpdateHandler(nullptr);
        setActive(false);
    }
    FocusLog(const FocusLog&) = delete;
    FocusLog& operator=(const FocusLog&) = delete;

    QStringList names() const { return s_names; }
    QString last() const { return s_names.isEmpty() ? QString() : s_names.constLast(); }
    void clear() { s_names.clear(); }

private:
    static void setActive(bool active) {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
    }

    static inline QStringList s_names;
};

}  // namespace kovanix
