#include "widgets/monthview.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <optional>

#include "values/dates.h"
#include "widgets/face.h"
#include "widgets/pressable.h"
#include "widgets/typedmoment.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int daysOfWeek = 7;
constexpr int weeks = 6;

constexpr std::array<QStringView, daysOfWeek> weekdays{u"Pzt", u"Sal", u"Çar", u"Per",
                                                       u"Cum", u"Cmt", u"Paz"};

QDate firstOfMonth(QDate day) {
    return {day.year(), day.month(), 1};
}

/// Where a key goes from a day; nothing for a key that goes nowhere.
std::optional<QDate> moved(QDate day, int key) {
    switch (key) {
        case Qt::Key_Left:
            return day.addDays(-1);
        case Qt::Key_Right:
            return day.addDays(1);
        case Qt::Key_Up:
            return day.addDays(-daysOfWeek);
        case Qt::Key_Down:
            return day.addDays(daysOfWeek);
        case Qt::Key_PageUp:
            return day.addMonths(-1);
        case Qt::Key_PageDown:
            return day.addMonths(1);
        case Qt::Key_Home:
            return firstOfMonth(day);
        case Qt::Key_End:
            return QDate(day.year(), day.month(), day.daysInMonth());
        default:
            return std::nullopt;
    }
}

}  // namespace

class DayCell : public Pressable<QAbstractButton> {
public:
    explicit DayCell(MonthView& month) : Pressable(&month), m_month(month) {
        setFocusPolicy(Qt::NoFocus);  // it is given by the month
    }

    QDate day() const { return m_day; }
    void setDay(QDate day) {
        m_day = day;
        setEnabled(canBeChosen(day));
        setAccessibleName(isEnabled() ? longDateText(day) : QString());
        setAccessibleDescription(day == m_month.today() ? u"Bugün"_s : QString());
        update();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        // A button's own answer to an arrow is to go to the next control.
        if (moved(m_day, event->key()))
            event->ignore();
        else
            Pressable::keyPressEvent(event);
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        if (!isEnabled())
            return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const Tone tone = toneOf(*this);
        const double scale = designScale(*this);
        const double radius = 6 * scale;
        const QRectF bounds = QRectF(rect()).adjusted(1, 0, -1, 0);
        const bool chosen = m_day == m_month.chosen();
        const bool marked = hasFocus() && m_month.marksCurrent();
        const QColor accent = roleColor(ColorRole::selectionBar, tone);
        painter.setPen(Qt::NoPen);
        if (chosen || marked || isDown()) {
            painter.setBrush(chosen ? accent : roleColor(ColorRole::selection, tone));
            painter.drawRoundedRect(bounds, radius, radius);
        }
        if (m_day == m_month.today() && !chosen) {
            const double width = 2 * scale;
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(accent, width));
            painter.drawRoundedRect(bounds.adjusted(width / 2, width / 2, -width / 2, -width / 2),
                                    radius - width / 2, radius - width / 2);
        }
        if (marked)
            paintFocusRing(painter, bounds, radius);
        const bool own = m_day.month() == m_month.current().month();
        QFont weighed = font();
        weighed.setWeight(own || chosen ? QFont::Medium : QFont::Normal);
        painter.setFont(weighed);
        painter.setPen(chosen ? QColor(Qt::white)
                              : roleColor(own ? ColorRole::ink : ColorRole::mutedInk, tone));
        painter.drawText(bounds, Qt::AlignCenter, QString::number(m_day.day()));
    }

private:
    MonthView& m_month;
    QDate m_day;
};

MonthView::MonthView(QDate chosen, QDate today, const Measures& measures, QWidget* parent)
    : QWidget(parent), m_chosen(chosen), m_today(today), m_current(chosen), m_measures(measures) {
    setFont(measures.dayFont);
    setAccessibleName(u"Takvim"_s);
    for (int i = 0; i < weeks * daysOfWeek; ++i) {
        auto* cell = new DayCell(*this);
        const QSize size = measures.cell;
        cell->setGeometry(i % daysOfWeek * size.width(),
                          measures.heading + measures.gap + i / daysOfWeek * (size.height() + measures.gap),
                          size.width(), size.height());
        connect(cell, &QAbstractButton::clicked, this, [this, cell] { Q_EMIT dayChosen(cell->day()); });
        m_cells.append(cell);
    }
    setFixedSize(daysOfWeek * measures.cell.width(),
                 measures.heading + weeks * (measures.cell.height() + measures.gap));
    fill();
}

MonthView::~MonthView() = default;

void MonthView::fill() {
    const QDate first = firstOfMonth(m_current);
    QDate day = first.addDays(1 - first.dayOfWeek());
    for (DayCell* cell : m_cells) {
        cell->setDay(day);
        day = day.addDays(1);
    }
    setAccessibleDescription(monthText(m_current));
}

QWidget* MonthView::cell(QDate day) const {
    const auto found = std::ranges::find(m_cells, day, &DayCell::day);
    return found == m_cells.cend() ? nullptr : *found;
}

void MonthView::setCurrent(QDate day) {
    if (day == m_current || !canBeChosen(day))
        return;
    const QWidget* former = currentCell();
    const bool hadFocus = former->hasFocus();
    const bool sameMonth = firstOfMonth(day) == firstOfMonth(m_current);
    m_current = day;
    if (!sameMonth)
        fill();
    if (hadFocus)
        currentCell()->setFocus(Qt::OtherFocusReason);
    if (!sameMonth)
        Q_EMIT monthChanged();
}

bool MonthView::canTurn(int months) const {
    return canBeChosen(m_current.addMonths(months));
}

void MonthView::setChosen(QDate day) {
    m_chosen = day;
    setCurrent(day);
    update();
}

void MonthView::setMarksCurrent(bool marks) {
    m_marksCurrent = marks;
    update();
}

void MonthView::keyPressEvent(QKeyEvent* event) {
    const std::optional<QDate> day = moved(m_current, event->key());
    if (!day || event->modifiers() & Qt::AltModifier) {
        event->ignore();
        return;
    }
    setMarksCurrent(true);
    setCurrent(*day);
}

void MonthView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setFont(m_measures.headingFont);
    painter.setPen(roleColor(ColorRole::mutedInk, toneOf(*this)));
    QRect place(0, 0, m_measures.cell.width(), m_measures.heading);
    for (const QStringView name : weekdays) {
        painter.drawText(place, Qt::AlignCenter, name.toString());
        place.translate(place.width(), 0);
    }
}

}  // namespace kovanix
