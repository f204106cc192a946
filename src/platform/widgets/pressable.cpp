#include "widgets/pressable.h"

#include <QAccessibleWidget>
#include <QCoreApplication>

namespace kovanix {

namespace {

constexpr char marked[] = "kovanixTellAsButton";

/// Pressing is what the space bar does.
class PressInterface : public QAccessibleWidget {
public:
    explicit PressInterface(QWidget& control) : QAccessibleWidget(&control, QAccessible::PushButton) {}

    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name != pressAction() || !widget()->isEnabled())
            return;
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent key(type, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
            QCoreApplication::sendEvent(widget(), &key);
        }
    }
};

QAccessibleInterface* pressInterface(const QString& /*kind*/, QObject* object) {
    auto* control = qobject_cast<QWidget*>(object);
    return control && control->property(marked).toBool() ? new PressInterface(*control) : nullptr;
}

}  // namespace

void tellAsButton(QWidget& control) {
    control.setProperty(marked, true);
    QAccessible::installFactory(pressInterface);  // does nothing the second time
}

}  // namespace kovanix
