#include "grafik/chartview.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

// The base takes the chart at once: a view that is made without one keeps a chart of its own, which
// setChart() wouldn't free.
ChartView::ChartView(QWidget* parent)
    : QChartView(new FigureChart, parent), m_chart(static_cast<FigureChart*>(chart())) {
    setFrameShape(QFrame::NoFrame);
    setRenderHint(QPainter::Antialiasing);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setBackgroundBrush(roleColor(ColorRole::card));
    setAccessibleName(u"Grafik"_s);
}

void ChartView::setTable(const FigureTable& table) {
    m_chart->setTable(table);
    choose(-1);
}

void ChartView::choose(int row) {
    m_chart->choose(row);
    setAccessibleDescription(
        chosen() >= 0 ? m_chart->words(chosen())
                      : u"%1 sütun, yanındaki tabloda rakamlarıyla"_s.arg(m_chart->table().rows.size()));
}

void ChartView::chooseByHand(int row) {
    if (row == chosen())
        return;
    choose(row);
    Q_EMIT rowChosen(chosen());
}

void ChartView::mousePressEvent(QMouseEvent* event) {
    const int row = m_chart->rowAt(m_chart->mapFromScene(mapToScene(event->pos())));
    chooseByHand(row == chosen() ? -1 : row);
}

// The view's own dealings with the mouse would reach the chart.
void ChartView::mouseReleaseEvent(QMouseEvent* /*event*/) {}

void ChartView::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons())
        return;
    if (const int row = m_chart->rowAt(m_chart->mapFromScene(mapToScene(event->pos()))); row >= 0)
        chooseByHand(row);
}

void ChartView::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(m_chart->table().rows.size()) - 1;
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            chooseByHand(std::max(0, chosen() - 1));
            break;
        case Qt::Key_Right:
        case Qt::Key_Down:
            chooseByHand(std::min(last, chosen() + 1));
            break;
        case Qt::Key_Home:
            chooseByHand(0);
            break;
        case Qt::Key_End:
            chooseByHand(last);
            break;
        default:
            event->ignore();  // Escape is the window's
    }
}

void ChartView::focusInEvent(QFocusEvent* event) {
    QChartView::focusInEvent(event);
    viewport()->update();
}

void ChartView::focusOutEvent(QFocusEvent* event) {
    QChartView::focusOutEvent(event);
    viewport()->update();
}

void ChartView::changeEvent(QEvent* event) {
    QChartView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        m_chart->setTextFont(font());
}

void ChartView::paintEvent(QPaintEvent* event) {
    QChartView::paintEvent(event);
    if (!hasFocus())
        return;
    QPainter painter(viewport());
    painter.setPen(QPen(roleColor(ColorRole::focus), 2));
    painter.drawRect(QRectF(viewport()->rect()).adjusted(1, 1, -1, -1));
}

}  // namespace kovanix
