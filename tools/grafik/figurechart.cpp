#include "grafik/figurechart.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QHorizontalBarSeries>
#include <QtCharts/QValueAxis>
#include <algorithm>
#include <array>
#include <cmath>

#include "values/numbers.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr double barShare = 0.8;  // of a row's strip
constexpr double lineHeight = 1.6;
// In heights of a line.
constexpr double edge = 0.4;
constexpr double gap = 0.4;  // between a label and what it is of
constexpr double cardWidth = 13;
constexpr int ticksWanted = 5;
constexpr double largestAmount = 1e15;

// Told apart in grey and by whoever doesn't tell red from green.
constexpr ColorRole turnoverColor = ColorRole::selectionBar;
constexpr ColorRole profitColor = ColorRole::honey;

/// The next larger of 1, 2 and 5, times a power of ten.
double roundStep(double step) {
    const double power = std::pow(10, std::floor(std::log10(step)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (step <= factor * power * (1 + 1e-9))
            return factor * power;
    }
    return 10 * power;
}

/// What a bar can show of an amount: the axis ends somewhere.
double barLength(const Sum& sum) {
    return std::isfinite(sum.value()) ? std::clamp(sum.value(), -largestAmount, largestAmount) : 0;
}

QString lira(const Sum& sum) {
    return moneyText(sum) + u" TL";
}

}  // namespace

/// Paints beneath or above the bars.
class FigureChart::Surroundings : public QGraphicsItem {
public:
    using Paint = void (FigureChart::*)(QPainter& painter) const;

    Surroundings(FigureChart& chart, Paint painting, double level)
        : QGraphicsItem(&chart), m_chart(chart), m_paint(painting) {
        setZValue(level);
        setAcceptedMouseButtons(Qt::NoButton);
    }

    QRectF boundingRect() const override { return m_chart.rect(); }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* /*option*/, QWidget* /*widget*/) override {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setFont(m_chart.m_font);
        (m_chart.*m_paint)(*painter);
    }
    void changeSize() { prepareGeometryChange(); }

private:
    const FigureChart& m_chart;
    Paint m_paint;
};

FigureChart::FigureChart() {
    constexpr double aboveAll = 100;
    m_under = std::make_unique<Surroundings>(*this, &FigureChart::paintUnder, -aboveAll);
    m_over = std::make_unique<Surroundings>(*this, &FigureChart::paintOver, aboveAll);
    m_font.setPixelSize(14);
    setBackgroundVisible(false);
    setMargins({});
    legend()->hide();
    setAnimationOptions(NoAnimation);
}

FigureChart::~FigureChart() = default;

void FigureChart::setTable(const FigureTable& table) {
    m_table = table;
    m_chosen = -1;
    findTicks();
    makeBars();
    layOut();
}

void FigureChart::setTextFont(const QFont& font) {
    m_font = font;
    layOut();
}

/// @param lines  in heights of a line of text
int FigureChart::pixels(double lines) const {
    return static_cast<int>(std::lround(QFontMetricsF(m_font).height() * lines));
}

void FigureChart::makeBars() {
    removeAllSeries();
    const QList<QAbstractAxis*> old = axes();
    for (QAbstractAxis* axis : old) {
        removeAxis(axis);
        delete axis;
    }
    if (m_table.rows.empty())
        return;
    auto* turnover = new QBarSet(u"Tutar"_s);
    auto* profit = new QBarSet(u"Kazanç"_s);
    const auto add = [&](const FigureRow& row) {
        turnover->append(row.isRest ? 0 : barLength(row.amounts.turnover));
        profit->append(row.isRest ? 0 : barLength(row.amounts.profit));
    };
    turnover->setColor(roleColor(turnoverColor));
    profit->setColor(roleColor(profitColor));
    for (QBarSet* set : {turnover, profit})
        set->setBorderColor(Qt::transparent);
    QAbstractBarSeries* bars = nullptr;
    if (isLying()) {
        // Counted from below: the last row, and in each the profit, comes first.
        std::for_each(m_table.rows.rbegin(), m_table.rows.rend(), add);
        bars = new QHorizontalBarSeries;
        bars->append({profit, turnover});
    } else {
        std::ranges::for_each(m_table.rows, add);
        bars = new QBarSeries;
        bars->append({turnover, profit});
    }
    bars->setBarWidth(barShare);
    addSeries(bars);

    auto* amounts = new QValueAxis;
    amounts->setRange(m_ticks.least, m_ticks.most());
    auto* places = new QValueAxis;
    places->setRange(-0.5, static_cast<double>(m_table.rows.size()) - 0.5);
    for (QValueAxis* axis : {amounts, places}) {
        axis->setLabelsVisible(false);
        axis->setLineVisible(false);
        axis->setGridLineVisible(false);
    }
    addAxis(amounts, isLying() ? Qt::AlignBottom : Qt::AlignLeft);
    addAxis(places, isLying() ? Qt::AlignLeft : Qt::AlignBottom);
    bars->attachAxis(amounts);
    bars->attachAxis(places);
}

/// Round amounts along the axis, zero among them.
void FigureChart::findTicks() {
    double least = 0;
    double most = 0;
    for (const FigureRow& row : m_table.rows) {
        if (row.isRest)
            continue;
        for (const Sum* sum : {&row.amounts.turnover, &row.amounts.profit}) {
            least = std::min(least, barLength(*sum));
            most = std::max(most, barLength(*sum));
        }
    }
    if (most == least)
        most = 1;  // an empty chart stands on its zero line
    constexpr double smallestStep = 0.01;
    const double step = std::max(smallestStep, roundStep((most - least) / ticksWanted));
    const double first = std::floor(least / step * (1 + 1e-9));
    const double last = std::ceil(most / step * (1 - 1e-9));
    m_ticks = {first * step, step, static_cast<int>(last - first) + 1};
}

QString FigureChart::tickText(int tick) const {
    const double amount = m_ticks.least + m_ticks.step * tick;
    return format(amount, m_ticks.step < 1 ? u"#,##0.00" : u"#,##0");
}

void FigureChart::resizeEvent(QGraphicsSceneResizeEvent* event) {
    QChart::resizeEvent(event);
    for (const auto& item : {m_under.get(), m_over.get()})
        item->changeSize();
    layOut();
}

void FigureChart::layOut() {
    const QFontMetricsF metrics(m_font);
    const double line = metrics.height() * lineHeight;
    double left = 0;
    if (isLying()) {
        double names = 0;
        for (const FigureRow& row : m_table.rows)
            names = std::max(names, metrics.horizontalAdvance(row.label));
        constexpr double most = 0.36;
        left = std::min(names, size().width() * most);
    } else {
        for (int tick = 0; tick < m_ticks.count; ++tick)
            left = std::max(left, metrics.horizontalAdvance(tickText(tick)));
    }
    // Half an amount may stand beyond the right end of a lying axis.
    const double right = isLying() ? metrics.horizontalAdvance(tickText(m_ticks.count - 1)) / 2 : 0;
    setPlotArea(rect().adjusted(left + pixels(edge + gap), line, -right - pixels(edge), -line));
    update();
}

QRectF FigureChart::strip(int row) const {
    const QRectF area = plotArea();
    const auto count = static_cast<double>(std::max<std::size_t>(1, m_table.rows.size()));
    if (isLying()) {
        const double height = area.height() / count;
        return {area.left(), area.top() + height * row, area.width(), height};
    }
    const double width = area.width() / count;
    return {area.left() + width * row, area.top(), width, area.height()};
}

int FigureChart::rowAt(QPointF place) const {
    // Labels belong to their bars, and a thumb may fall below a low one.
    for (int row = 0; row < static_cast<int>(m_table.rows.size()); ++row) {
        QRectF touched = strip(row);
        if (isLying())
            touched.setLeft(0);
        else
            touched.setBottom(size().height());
        if (touched.contains(place))
            return row;
    }
    return -1;
}

void FigureChart::choose(int row) {
    m_chosen = row >= 0 && row < static_cast<int>(m_table.rows.size()) ? row : -1;
    update();
    m_under->update();
    m_over->update();
}

QString FigureChart::words(int row) const {
    const FigureRow& figures = m_table.rows[static_cast<std::size_t>(row)];
    return u"%1, Tutar %2, Kazanç %3, Miktar %4"_s.arg(figures.name, lira(figures.amounts.turnover),
                                                       lira(figures.amounts.profit),
                                                       quantityText(figures.amounts.quantity));
}

void FigureChart::paintUnder(QPainter& painter) const {
    if (m_chosen >= 0)
        painter.fillRect(strip(m_chosen), roleColor(ColorRole::selection));
    paintLegend(painter);
    if (m_table.rows.empty())
        return;
    paintGrid(painter);
    paintAmounts(painter);
    paintNames(painter);
}

void FigureChart::paintGrid(QPainter& painter) const {
    const QRectF area = plotArea();
    // Sums that are written stand on no scale.
    const bool hasRest = m_table.rows.back().isRest;
    const double bottom = hasRest ? strip(static_cast<int>(m_table.rows.size()) - 1).top() : area.bottom();
    painter.setPen(QPen(roleColor(ColorRole::edge), 1));
    for (int tick = 0; tick < m_ticks.count; ++tick) {
        const double share = static_cast<double>(tick) / (m_ticks.count - 1);
        const double x = area.left() + share * area.width();
        const double y = area.bottom() - share * area.height();
        if (isLying())
            painter.drawLine(QPointF(x, area.top()), QPointF(x, bottom));
        else
            painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
}

void FigureChart::paintLegend(QPainter& painter) const {
    const QFontMetricsF metrics(m_font);
    const double line = metrics.height() * lineHeight;
    const double mark = metrics.ascent();
    double x = plotArea().left();
    const auto add = [&](const QString& text, ColorRole color) {
        painter.fillRect(QRectF(x, (line - mark) / 2, mark, mark), roleColor(color));
        x += mark + pixels(0.4);
        painter.setPen(roleColor(ColorRole::ink));
        painter.drawText(QRectF(x, 0, size().width() - x, line), Qt::AlignLeft | Qt::AlignVCenter, text);
        x += metrics.horizontalAdvance(text) + pixels(1.2);
    };
    add(u"Tutar (TL)"_s, turnoverColor);
    add(u"Kazanç (TL)"_s, profitColor);
}

void FigureChart::paintAmounts(QPainter& painter) const {
    const QRectF area = plotArea();
    const QFontMetricsF metrics(m_font);
    painter.setPen(roleColor(ColorRole::mutedInk));
    double end = -1e9;  // of the last label that stands on the axis
    for (int tick = 0; tick < m_ticks.count; ++tick) {
        const QString text = tickText(tick);
        const double share = static_cast<double>(tick) / (m_ticks.count - 1);
        const double width = metrics.horizontalAdvance(text);
        if (!isLying()) {
            const double y = area.bottom() - share * area.height();
            painter.drawText(QRectF(0, y - metrics.height(), area.left() - pixels(gap), metrics.height() * 2),
                             Qt::AlignRight | Qt::AlignVCenter, text);
            continue;
        }
        const double x = area.left() + share * area.width() - width / 2;
        if (x < end)
            continue;
        painter.drawText(QRectF(x, area.bottom(), width + 1, size().height() - area.bottom()),
                         Qt::AlignCenter | Qt::TextDontClip, text);
        end = x + width + pixels(0.5);
    }
}

void FigureChart::paintNames(QPainter& painter) const {
    const QFontMetricsF metrics(m_font);
    painter.setPen(roleColor(ColorRole::ink));
    double end = -1e9;
    for (int row = 0; row < static_cast<int>(m_table.rows.size()); ++row) {
        const QRectF place = strip(row);
        const QString& label = m_table.rows[static_cast<std::size_t>(row)].label;
        if (isLying()) {
            const double room = place.left() - pixels(gap);
            painter.drawText(QRectF(0, place.top(), room, place.height()),
                             Qt::AlignRight | Qt::AlignVCenter | Qt::TextDontClip,
                             metrics.elidedText(label, Qt::ElideRight, room - pixels(edge)));
            continue;
        }
        // Every second, third … label where not all have room.
        const double width = metrics.horizontalAdvance(label);
        const double x = std::clamp(place.center().x() - width / 2, 0.0,
                                    std::max(0.0, size().width() - pixels(edge) - width));
        if (x < end)
            continue;
        painter.drawText(QRectF(x, place.bottom(), width + 1, size().height() - place.bottom()),
                         Qt::AlignCenter | Qt::TextDontClip, label);
        end = x + width + pixels(0.5);
    }
}

void FigureChart::paintOver(QPainter& painter) const {
    if (m_table.rows.empty())
        return;
    const QRectF area = plotArea();
    const double share = -m_ticks.least / (m_ticks.most() - m_ticks.least);
    painter.setPen(QPen(roleColor(ColorRole::ink), 1));
    if (isLying()) {
        const double x = area.left() + share * area.width();
        painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
    } else {
        const double y = area.bottom() - share * area.height();
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
    if (m_table.rows.back().isRest)
        paintRest(painter, static_cast<int>(m_table.rows.size()) - 1);
    if (m_chosen >= 0)
        paintCard(painter);
}

QString FigureChart::restText(const Amounts& amounts, const QFont& font, double room) {
    const QString turnover = lira(amounts.turnover);
    const QString whole = turnover + u", kazanç " + lira(amounts.profit);
    return QFontMetricsF(font).horizontalAdvance(whole) <= room ? whole : turnover;
}

void FigureChart::paintRest(QPainter& painter, int row) const {
    QRectF room = strip(row).adjusted(pixels(0.4), 0, 0, 0);
    room.setRight(size().width());
    painter.setPen(roleColor(ColorRole::ink));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                     restText(m_table.rows[static_cast<std::size_t>(row)].amounts, m_font, room.width()));
}

/// The chosen row's whole name and its figures, beside its bars.
void FigureChart::paintCard(QPainter& painter) const {
    const FigureRow& row = m_table.rows[static_cast<std::size_t>(m_chosen)];
    const double margin = pixels(0.6);
    const double width = std::min<double>(pixels(cardWidth), size().width());
    const double room = width - 2 * margin;
    QFont bold = m_font;
    bold.setWeight(QFont::Medium);
    const QFontMetricsF metrics(m_font);
    constexpr int wraps = Qt::TextWordWrap | Qt::TextWrapAnywhere;
    const QRectF name = QFontMetricsF(bold).boundingRect(QRectF(0, 0, room, 1e4), wraps, row.name);
    const double line = metrics.height() * 1.25;
    const std::array<std::pair<QString, QString>, 3> figures{
        std::pair(u"Tutar"_s, lira(row.amounts.turnover)),
        {u"Kazanç"_s, lira(row.amounts.profit)},
        {u"Miktar"_s, quantityText(row.amounts.quantity)},
    };
    const QSizeF cardSize(width, name.height() + line * figures.size() + 2 * margin);
    // At the side that has more room, so that the bars stay in sight.
    const QRectF bars = strip(m_chosen);
    QPointF place;
    if (isLying())
        place = {plotArea().right() - width, bars.bottom() + margin};
    else
        place = {
            bars.center().x() < size().width() / 2 ? bars.right() + margin : bars.left() - margin - width,
            plotArea().top()};
    if (isLying() && place.y() + cardSize.height() > size().height())
        place.setY(bars.top() - margin - cardSize.height());
    place.setX(std::clamp(place.x(), 0.0, size().width() - width));
    place.setY(std::clamp(place.y(), 0.0, std::max(0.0, size().height() - cardSize.height())));
    const QRectF card(place, cardSize);
    painter.setPen(QPen(roleColor(ColorRole::windowRim), 2));
    painter.setBrush(roleColor(ColorRole::card));
    painter.drawRoundedRect(card.adjusted(1, 1, -1, -1), margin, margin);
    painter.setPen(roleColor(ColorRole::ink));
    painter.setFont(bold);
    QRectF text = card.adjusted(margin, margin, -margin, -margin);
    painter.drawText(text, wraps, row.name);
    text.setTop(text.top() + name.height());
    text.setHeight(line);
    for (const auto& [what, amount] : figures) {
        painter.setFont(m_font);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter, what);
        painter.setFont(bold);
        painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter, amount);
        text.translate(0, line);
    }
}

}  // namespace kovanix
