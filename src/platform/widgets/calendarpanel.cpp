#include "widgets/calendarpanel.h"

#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "runtime/clock.h"
#include "values/dates.h"
#include "widgets/drawnbutton.h"
#include "widgets/face.h"
#include "widgets/monthview.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size: 400 wide.
constexpr int cellWidth = 54;
constexpr int cellHeight = 48;
constexpr int weekGap = 2;
constexpr int weekdaysHeight = 28;
constexpr int sideMargin = 11;
constexpr int margin = 10;
constexpr int arrowSide = 44;
constexpr int arrowMargin = 4;

}  // namespace

CalendarPanel::CalendarPanel(QWidget& field, QDate chosen) : DropPanel(field) {
    const QDate today = Clock::now().date();
    // The arrows need their room in the strip, whatever the scale.
    setTitleHeight(
        static_cast<int>(std::ceil((target(arrowSide) + 2 * scaled(arrowMargin)) / designScale(*this))));
    setTitleAlignment(Qt::AlignHCenter);
    const MonthView::Measures measures{.cell = {target(cellWidth), target(cellHeight)},
                                       .gap = scaled(weekGap),
                                       .heading = scaled(weekdaysHeight),
                                       .headingFont = textFont(14, QFont::Medium),
                                       .dayFont = textFont(18, QFont::Medium)};
    m_month = new MonthView(chosen, today, measures, this);
    connect(m_month, &MonthView::dayChosen, this, &CalendarPanel::dayChosen);
    connect(m_month, &MonthView::monthChanged, this, &CalendarPanel::showMonth);

    m_controls.today = new CommandButton(this);
    m_controls.today->setLook(FaceRole::light);
    m_controls.today->setFont(textFont(16, QFont::Medium));
    m_controls.today->setCaption(u"Bugün"_s);
    m_controls.today->setFixedHeight(target(arrowSide));
    connect(m_controls.today, &QAbstractButton::clicked, this, [this, today] { Q_EMIT dayChosen(today); });

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(scaled(sideMargin), scaled(margin), scaled(sideMargin), scaled(margin));
    rows->setSpacing(scaled(margin));
    rows->addWidget(m_month);
    rows->addWidget(m_controls.today);

    m_controls.former = addArrow(u":/icons/left.svg"_s, u"Önceki ay"_s, -1);
    m_controls.next = addArrow(u":/icons/right.svg"_s, u"Sonraki ay"_s, 1);
    showMonth();
}

CalendarPanel::~CalendarPanel() = default;

DrawnButton* CalendarPanel::addArrow(const QString& icon, const QString& name, int months) {
    auto* arrow = new vkCommand(this);
    arrow->setLook(FaceRole::navy);
    arrow->setIconFile(icon);
    arrow->setIconSize({24, 24});
    arrow->setAccessibleName(name);
    arrow->setFocusPolicy(Qt::TabFocus);  // a press leaves the keyboard with the days
    arrow->resize(target(arrowSide), target(arrowSide));
    connect(arrow, &QAbstractButton::clicked, this, [this, months] { m_month->turn(months); });
    return arrow;
}

void CalendarPanel::setChosen(QDate day) {
    m_month->setChosen(day);
}

void CalendarPanel::showMonth() {
    setCaption(monthText(m_month->current()));
    const bool focused = m_controls.former->hasFocus() || m_controls.next->hasFocus();
    m_controls.former->setEnabled(m_month->canTurn(-1));
    m_controls.next->setEnabled(m_month->canTurn(1));
    if (focused && !m_controls.former->hasFocus() && !m_controls.next->hasFocus())
        m_month->currentCell()->setFocus(Qt::OtherFocusReason);
}

QList<QWidget*> CalendarPanel::stops() const {
    return {m_month->currentCell(), m_controls.today, m_controls.former, m_controls.next};
}

void CalendarPanel::resizeEvent(QResizeEvent* event) {
    DropPanel::resizeEvent(event);
    const int inset = (contentsMargins().top() - m_controls.next->height()) / 2;
    m_controls.former->move(inset, inset);
    m_controls.next->move(width() - inset - m_controls.next->width(), inset);
}

void CalendarPanel::showEvent(QShowEvent* event) {
    DropPanel::showEvent(event);
    m_month->setMarksCurrent(isByKeyboard());
}

}  // namespace kovanix
