#include "widgets/dtpickeraccessible.h"

#include <QAccessibleWidget>

#include "widgets/dtpicker.h"

namespace kovanix {

namespace {

class PickerInterface : public QAccessibleWidget {
public:
    explicit PickerInterface(DTPicker& picker)
        : QAccessibleWidget(&picker, QAccessible::ComboBox), m_picker(picker) {}

    // Its parts are the picker's own affair.
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? m_picker.text() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = m_picker.isDropped();
        state.collapsed = !state.expanded;
        return state;
    }

private:
    const DTPicker& m_picker;
};

QAccessibleInterface* pickerInterface(const QString& /*kind*/, QObject* object) {
    auto* picker = qobject_cast<DTPicker*>(object);
    return picker ? new PickerInterface(*picker) : nullptr;
}

}  // namespace

void installPickerAccessibility() {
    QAccessible::installFactory(pickerInterface);  // does nothing the second time
}

}  // namespace kovanix
