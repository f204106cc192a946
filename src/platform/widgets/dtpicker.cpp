#include "widgets/dtpicker.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPalette>
#include <algorithm>

#include "runtime/clock.h"
#include "values/dates.h"
#include "widgets/calendarpanel.h"
#include "widgets/dtpickeraccessible.h"
#include "widgets/pictures.h"
#include "widgets/timepanel.h"
#include "widgets/typedmoment.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int partLength = 3;  // of HH:mm:ss, with its colon
constexpr int longestTyped = 40;

/// The button's place; its field paints it, rim and all.
class DropButton : public QAbstractButton {
public:
    explicit DropButton(QWidget* field) : QAbstractButton(field) { setFocusPolicy(Qt::NoFocus); }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {}
    /// A thumb that presses twice means it once.
    void mouseDoubleClickEvent(QMouseEvent* event) override { event->accept(); }
};

bool isDropKey(const QKeyEvent& event) {
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    return event.key() == Qt::Key_F4 || event.key() == Qt::Key_Space || (alt && event.key() == Qt::Key_Down);
}

QTime toTheSecond(QTime time) {
    return {time.hour(), time.minute(), time.second()};
}

int around(int number, int count) {
    return (number + count) % count;
}

}  // namespace

DTPicker::DTPicker(QWidget* parent)
    : QWidget(parent), m_edit(new QLineEdit(this)), m_button(new DropButton(this)) {
    installPickerAccessibility();
    const QDateTime start = Clock::now();
    m_date = start.date();
    m_time = toTheSecond(start.time());

    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    // The keyboard is the picker's own: it hands on what is typed.
    m_edit->setFocusPolicy(Qt::NoFocus);
    m_edit->setFocusProxy(this);
    m_edit->setFrame(false);
    m_edit->setMaxLength(longestTyped);
    QPalette clear = m_edit->palette();
    clear.setColor(QPalette::Base, Qt::transparent);
    m_edit->setPalette(clear);
    connect(m_button, &QAbstractButton::clicked, this, [this] { toggle(false); });
    connect(m_button, &QAbstractButton::pressed, this, [this] { update(buttonRect()); });
    connect(m_button, &QAbstractButton::released, this, [this] { update(buttonRect()); });
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*former*/, QWidget* now) { followFocus(now); });
    showFormat();
}

DTPicker::~DTPicker() {
    disconnect(qApp, nullptr, this, nullptr);  // the focus goes on while the base is taken down
    delete m_panel;
}

void DTPicker::setFormat(Format format) {
    if (format == m_format)
        return;
    discardPanel();
    m_format = format;
    showFormat();
}

void DTPicker::showFormat() {
    const bool isDate = m_format == Format::date;
    m_icon = sharedIcon(isDate ? u":/icons/calendar.svg"_s : u":/icons/down.svg"_s);
    m_button->setAccessibleName(isDate ? u"Takvim"_s : u"Saatler"_s);
    showValue();
    updateGeometry();
    update();
}

void DTPicker::setDate(QDate date) {
    if (!canBeChosen(date))
        return;
    take(date, m_time);
    if (auto* calendar = qobject_cast<CalendarPanel*>(m_panel))
        calendar->setChosen(m_date);
}

void DTPicker::setTime(QTime time) {
    if (time.isValid())
        take(m_date, toTheSecond(time));
}

QString DTPicker::text() const {
    return m_format == Format::date ? dateText(m_date) : timeText(m_time);
}

bool DTPicker::isDropped() const {
    return m_panel;
}

void DTPicker::showValue() {
    const int caret = m_edit->cursorPosition();
    m_edit->setText(text());
    m_edit->setCursorPosition(hasFocus() ? caret : 0);
}

/// @return whether the value is another one now
bool DTPicker::take(QDate date, QTime time) {
    const bool changes = date != m_date || time != m_time;
    m_date = date;
    m_time = time;
    showValue();
    if (changes && QAccessible::isActive()) {
        QAccessibleValueChangeEvent told(this, text());
        QAccessible::updateAccessibility(&told);
    }
    return changes;
}

/// Takes what the user wants, and tells it.
/// @return whether the picker is still there
bool DTPicker::changeTo(QDate date, QTime time) {
    const QPointer<DTPicker> self(this);
    if (take(date, time))
        Q_EMIT change();
    return self;
}

/// What stands in the field; nothing where that is no moment.
std::optional<DTPicker::Moment> DTPicker::typed() const {
    const QString text = m_edit->text();
    if (m_format == Format::date) {
        const auto day = typedDate(text, m_date.year());
        return day ? std::optional(Moment{*day, m_time}) : std::nullopt;
    }
    const auto time = typedTime(text);
    return time ? std::optional(Moment{m_date, *time}) : std::nullopt;
}

bool DTPicker::takeTyped() {
    if (!m_edit->isModified())
        return true;
    const Moment moment = typed().value_or(Moment{m_date, m_time});
    return changeTo(moment.date, moment.time);
}

void DTPicker::confirm() {
    const bool isMoment = typed().has_value();
    if (!takeTyped())
        return;
    m_edit->selectAll();
    if (isMoment)
        Q_EMIT closeUp();
}

void DTPicker::step(int by) {
    const int part = std::min(m_edit->cursorPosition(), partLength * 2) / partLength;
    auto [date, time] = typed().value_or(Moment{m_date, m_time});
    if (m_format == Format::time) {
        time = QTime(around(time.hour() + (part == 0 ? by : 0), 24),
                     around(time.minute() + (part == 1 ? by : 0), 60),
                     around(time.second() + (part == 2 ? by : 0), 60));
    } else if (canBeChosen(date.addDays(by))) {
        date = date.addDays(by);
    }
    if (!changeTo(date, time))
        return;
    if (m_format == Format::time)
        m_edit->setSelection(part * partLength, partLength - 1);
    else
        m_edit->selectAll();
}

void DTPicker::toggle(bool byKeyboard) {
    if (m_panel) {
        panelLeft();
        return;
    }
    if (!takeTyped() || !isVisible() || !isEnabled())
        return;
    if (m_format == Format::date)
        dropCalendar(byKeyboard);
    else
        dropTime(false, byKeyboard);
}

void DTPicker::dropCalendar(bool byKeyboard) {
    auto* calendar = new CalendarPanel(*this, m_date);
    connect(calendar, &CalendarPanel::dayChosen, this, &DTPicker::chooseDay);
    drop(*calendar, byKeyboard);
}

void DTPicker::dropTime(bool minutes, bool byKeyboard) {
    auto* panel = minutes ? new TimePanel(*this, TimePanel::Part::minute, m_time.minute())
                          : new TimePanel(*this, TimePanel::Part::hour, m_time.hour());
    connect(panel, &TimePanel::chosen, this, minutes ? &DTPicker::chooseMinute : &DTPicker::chooseHour);
    drop(*panel, byKeyboard);
}

void DTPicker::drop(DropPanel& panel, bool byKeyboard) {
    connect(&panel, &DropPanel::left, this, &DTPicker::panelLeft);
    m_panel = &panel;
    panel.drop(byKeyboard);
    update();
}

void DTPicker::discardPanel() {
    if (DropPanel* panel = m_panel) {
        m_panel.clear();
        panel->discard();
        update();
    }
}

void DTPicker::panelLeft() {
    discardPanel();
    Q_EMIT closeUp();
}

void DTPicker::chooseDay(QDate day) {
    discardPanel();
    if (changeTo(day, m_time))
        Q_EMIT closeUp();
}

void DTPicker::chooseHour(int hour) {
    const DropPanel* hours = m_panel;
    if (!changeTo(m_date, QTime(hour, m_time.minute(), m_time.second())) || m_panel != hours)
        return;
    discardPanel();
    dropTime(true, false);
}

void DTPicker::chooseMinute(int minute) {
    discardPanel();
    if (changeTo(m_date, QTime(m_time.hour(), minute, m_time.second())))
        Q_EMIT closeUp();
}

bool DTPicker::isOwn(const QWidget* widget) const {
    return widget == this || isAncestorOf(widget) ||
           (m_panel && (widget == m_panel || m_panel->isAncestorOf(widget)));
}

void DTPicker::followFocus(const QWidget* now) {
    if (!now)
        return;  // another program's window, or one of ours that is on its way
    if (isOwn(now)) {
        m_entered = true;
        return;
    }
    if (!m_entered)
        return;
    const QPointer<DTPicker> self(this);
    const bool leaves = now->window() == window() && isVisible() && isEnabled();
    m_entered = !leaves && isVisible() && isEnabled();
    if (m_panel)
        panelLeft();
    if (!leaves || !self || !takeTyped())
        return;
    Q_EMIT lostFocus();
}

bool DTPicker::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::InputMethod:
            return m_edit->event(event);
        case QEvent::ShortcutOverride: {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            if (isDropKey(key)) {
                event->accept();
                return true;
            }
            return m_edit->event(event);
        }
        default:
            return QWidget::event(event);
    }
}

void DTPicker::keyPressEvent(QKeyEvent* event) {
    event->accept();
    if (isDropKey(*event)) {
        if (!event->isAutoRepeat())
            toggle(true);
        return;
    }
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!event->isAutoRepeat())
                confirm();
            return;
        case Qt::Key_Up:
            return step(1);
        case Qt::Key_Down:
            return step(-1);
        case Qt::Key_Escape:
            if (m_edit->isModified())
                showValue();
            else
                event->ignore();
            return;
        default:
            m_edit->event(event);
    }
}

QVariant DTPicker::inputMethodQuery(Qt::InputMethodQuery query) const {
    return m_edit->inputMethodQuery(query);
}

void DTPicker::focusInEvent(QFocusEvent* event) {
    m_edit->event(event);
    update();
}

void DTPicker::focusOutEvent(QFocusEvent* event) {
    m_edit->event(event);
    update();
}

void DTPicker::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void DTPicker::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    discardPanel();
    // What is being typed stays in a window that is only minimised.
    if (!event->spontaneous())
        showValue();
}

void DTPicker::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        discardPanel();
    if (event->type() == QEvent::FontChange) {
        layOut();
        updateGeometry();
    }
}

}  // namespace kovanix
