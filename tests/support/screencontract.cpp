#include "screencontract.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <algorithm>

#include "app/modTurkce.h"
#include "runtime/screen.h"
#include "widgets/activeresize.h"
#include "widgets/caption.h"
#include "widgets/image.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int fingerHeight = 44;  // pixels at design size; scaled with the screen

/// Parts of the toolkit's own controls are no controls.
bool isPart(const QWidget& widget) {
    for (const QWidget* above = widget.parentWidget(); above; above = above->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea*>(above) || qobject_cast<const QLineEdit*>(above))
            return true;
    }
    return widget.objectName().isEmpty();
}

/// The controls that hold no others, where they are seen.
QList<const QWidget*> leaves(const QWidget& screen) {
    QList<const QWidget*> found;
    for (const QWidget* control : screen.findChildren<QWidget*>()) {
        if (!control->isVisible() || isPart(*control))
            continue;
        const auto inside = control->findChildren<QWidget*>();
        if (std::all_of(inside.begin(), inside.end(), [](const QWidget* child) { return isPart(*child); }))
            found.append(control);
    }
    return found;
}

bool cutsItsText(const QWidget& control) {
    const auto* label = qobject_cast<const QLabel*>(&control);
    if (qobject_cast<const QAbstractScrollArea*>(&control))
        return false;  // it scrolls
    if (!label)
        return control.height() < control.minimumSizeHint().height() * 0.5;  // drawn captions fit themselves
    if (label->wordWrap())
        return label->heightForWidth(label->width()) > label->height();
    return label->sizeHint().width() > label->width() ||
           label->fontMetrics().height() > label->height() + 1;  // a pixel goes by rounding
}

}  // namespace

QList<QSize> displays() {
    return {{800, 600}, {1024, 768}, {1366, 768}, {1920, 1080}};
}

QList<std::pair<QString, QString>> hostileTexts() {
    return {{u"apostrophes"_s, u"'; DROP TABLE urunler;--''"_s},
            {u"percent signs"_s, u"%_%1%n%%"_s},
            {u"brackets"_s, u"[*]{}(]<b>"_s},
            {u"10,000 characters"_s, u"ab'%["_s.repeated(2000)},
            {u"emoji"_s, u"🍞👩‍🌾"_s},
            {u"right to left"_s, u"\u202Eשלום\u200F"_s},
            {u"NUL"_s, u"a\0b"_s.left(1) + QChar(u'\0') + u'b'},
            {u"line breaks"_s, u"a\r\nb\nc\u2028d"_s}};
}

QStringList layoutFaults(const QWidget& screen) {
    QStringList faults;
    const auto* container = screen.findChild<const ActiveResize*>();
    const double scale = container ? container->scale() : 1;
    QList<std::pair<QString, QRect>> places;
    for (const QWidget* control : leaves(screen)) {
        const QString name = control->objectName();
        const QRect place(control->mapTo(&screen, QPoint(0, 0)), control->size());
        if (!screen.rect().contains(place))
            faults.append(name + u" stands out of the window");
        for (const auto& [otherName, other] : places) {
            if (place.intersects(other))
                faults.append(name + u" lies on " + otherName);
        }
        if (cutsItsText(*control))
            faults.append(name + u" cuts its text");
        // A picture that the keyboard doesn't reach is a picture.
        const bool picture = qobject_cast<const Image*>(control) && control->focusPolicy() == Qt::NoFocus;
        const bool pressed =
            (qobject_cast<const QAbstractButton*>(control) && !picture) || control->focusPolicy() != 0;
        if (pressed && place.height() < static_cast<int>(fingerHeight * scale))
            faults.append(name + u" is only " + QString::number(place.height()) + u" high");
        places.append({name, place});
    }
    if (places.isEmpty() && container)
        faults.append(u"nothing to see"_s);
    return faults;
}

QStringList symbolsLeft(const Screen& screen, const QStringList& required) {
    QStringList texts{screen.windowTitle()};
    for (const QWidget* control : screen.findChildren<QWidget*>()) {
        if (!isPart(*control))
            texts << caption(*control) << control->toolTip() << control->accessibleName();
    }
    QStringList found;
    for (const QString& text : texts) {
        if (harfvarmi(text) && !required.contains(text))
            found.append(text);
    }
    for (const QString& text : required) {
        if (!texts.contains(text))
            found.append(u"missing: " + text);
    }
    return found;
}

QStringList tabFaults(const QWidget& screen, QStringList order) {
    QStringList reachable;
    for (const QWidget* control : screen.findChildren<QWidget*>()) {
        if (control->isVisible() && control->isEnabled() && (control->focusPolicy() & Qt::TabFocus) &&
            !control->objectName().startsWith(u"qt_"))
            reachable.append(control->objectName());
    }
    QStringList reached;
    for (qsizetype step = 0; step <= reachable.size() && QApplication::focusWidget(); ++step) {
        reached.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QStringList faults;
    if (reached != order + order.mid(0, 1))  // and round again
        faults.append(u"Tab goes " + reached.join(u' '));
    reachable.sort();
    order.sort();
    if (reachable != order)
        faults.append(u"the keyboard is for " + reachable.join(u' '));
    return faults;
}

QList<QLineEdit*> writableFields(const Screen& screen) {
    QList<QLineEdit*> fields;
    for (auto* field : screen.findChildren<QLineEdit*>()) {
        if (field->isVisible() && field->isEnabled() && !field->isReadOnly())
            fields.append(field);
    }
    return fields;
}

QStringList untoldControls(const QWidget& screen) {
    static const QList<QAccessible::Role> told{
        QAccessible::PushButton, QAccessible::CheckBox, QAccessible::RadioButton, QAccessible::EditableText,
        QAccessible::Table,      QAccessible::ComboBox, QAccessible::List,        QAccessible::SpinBox,
        QAccessible::ScrollBar,  QAccessible::Graphic,  QAccessible::Grouping,    QAccessible::Tree};
    QStringList faults;
    for (QWidget* control : screen.findChildren<QWidget*>()) {
        const bool used = control->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(control);
        if (!control->isVisible() || isPart(*control) || !used)
            continue;
        QAccessibleInterface* tool = QAccessible::queryAccessibleInterface(control);
        const QString name = control->objectName();
        if (!tool || !told.contains(tool->role()))
            faults << u"%1 has no role (%2)"_s.arg(name, QString::number(tool ? tool->role() : -1));
        if (tool && tool->text(QAccessible::Name).trimmed().isEmpty() &&
            tool->text(QAccessible::Description).trimmed().isEmpty())
            faults << name + u" has no name";
        if (tool && tool->role() == QAccessible::Table && !tool->tableInterface())
            faults << name + u" has no cells";
    }
    return faults;
}

QStringList untoldTables(const QWidget& window) {
    QStringList faults;
    for (auto* view : window.findChildren<QAbstractItemView*>()) {
        if (!view->isVisible() || qobject_cast<QHeaderView*>(view))
            continue;
        const QString name = view->objectName();
        QAccessibleInterface* tool = QAccessible::queryAccessibleInterface(view);
        QAccessibleTableInterface* table = tool ? tool->tableInterface() : nullptr;
        const QAbstractItemModel& model = *view->model();
        if (!table || table->rowCount() != model.rowCount(view->rootIndex())) {
            faults << name + u" has no rows";
            continue;
        }
        for (int column = 0; column < table->columnCount(); ++column) {
            const bool isList = table->columnCount() == 1;
            // The toolkit numbers columns that nobody has named.
            const QString heading = table->columnDescription(column);
            if (!isList && (heading.isEmpty() || heading == QString::number(column + 1)))
                faults << u"%1: column %2 has no heading"_s.arg(name).arg(column);
            for (int row = 0; row < table->rowCount(); ++row) {
                QAccessibleInterface* cell = table->cellAt(row, column);
                const QString shown = model.index(row, column, view->rootIndex()).data().toString();
                if (!cell || cell->text(QAccessible::Name) != shown)
                    faults << u"%1: cell %2/%3 isn't told"_s.arg(name).arg(row).arg(column);
            }
        }
    }
    return faults;
}

}  // namespace kovanix
