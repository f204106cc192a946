#include "printing/gridpages.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "printing/printjob.h"
#include "widgets/gridcell.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// Pages are laid out in dots fine enough for whole numbers; every device scales them.
constexpr int dotsPerInch = 600;
constexpr double pointsPerInch = 72;
constexpr double twipsPerInch = 1440;

constexpr int dots(double points) {
    return qRound(points * dotsPerInch / pointsPerInch);
}

constexpr double rowText = 8.5;  // points
constexpr int rowHeight = dots(18);
constexpr int cellPadding = dots(3);
constexpr int bandGap = dots(6);  // between header and headings, and between rows and footer
constexpr int thinLine = dots(0.4);
constexpr int strongLine = dots(1);
constexpr int smallestNumber = dots(3);
// What a text may come out wider than it was measured.
constexpr int roundingSlack = dots(1);
// How much of the page headings and sums may ask for.
constexpr double mostFixed = 0.9;
constexpr int leastWidth = dots(72);
// How many rows tell how wide the columns have to be.
constexpr qsizetype sampledRows = 50;
constexpr QRgb lineColor = 0xFF8894A2;

QFont printedFont(const PrintFont& wanted) {
    QFont font;
    font.setFamilies({wanted.name, u"Liberation Serif"_s});
    if (wanted.name == PrintFont().name)
        font.setFamilies({wanted.name, u"sans-serif"_s});
    font.setPixelSize(std::max(1, dots(wanted.size)));
    font.setBold(wanted.bold);
    font.setItalic(wanted.italic);
    // One layout for all devices.
    font.setHintingPreference(QFont::PreferNoHinting);
    // The least spacing there is keeps the toolkit from joining "fi" into one glyph, which would be another
    // letter to whoever searches the text of the page.
    font.setLetterSpacing(QFont::AbsoluteSpacing, 1.0 / 64);
    return font;
}

int bandHeight(const PrintFont& font) {
    return static_cast<int>(std::ceil(QFontMetricsF(printedFont(font)).height()));
}

/// The font in which a text is no wider than that, though no smaller than anyone could read.
QFont shrunk(const QFont& font, const QString& text, int width) {
    const double needed = QFontMetricsF(font).horizontalAdvance(text);
    QFont smaller = font;
    if (needed > width)
        smaller.setPixelSize(std::max(smallestNumber, static_cast<int>(font.pixelSize() * width / needed)));
    return smaller;
}

/// The paper within its margins; without them where they leave less than it takes to print anything.
QRect roomOn(QSizeF paper, const QMarginsF& margins) {
    const auto fromTwips = [](double twips) {
        return static_cast<int>(std::lround(twips * dotsPerInch / twipsPerInch));
    };
    const QRect whole(0, 0, dots(paper.width()), dots(paper.height()));
    const QRect inside = whole.adjusted(fromTwips(margins.left()), fromTwips(margins.top()),
                                        -fromTwips(margins.right()), -fromTwips(margins.bottom()));
    const bool usable =
        whole.contains(inside) && inside.width() >= leastWidth && inside.height() >= leastWidth;
    return usable ? inside : whole;
}

/// The columns' widths, which fill the room. Each is as wide as what stands in its first rows, its heading
/// and its sum; where that is too much for the paper, the widest give way first, which are the names, and
/// break into two lines. Where even headings and sums don't fit, the widths are in proportion to those of the
/// grid.
std::vector<double> columnWidths(const PrintTable& table, double room) {
    const QFontMetricsF bold(printedFont({.size = rowText, .bold = true}));
    const QFontMetricsF regular(printedFont({.size = rowText}));
    std::vector<double> own;
    std::vector<double> least;
    std::vector<double> wanted;
    for (std::size_t index = 0; index < table.columns.size(); ++index) {
        const PrintColumn& column = table.columns[index];
        const QString sum = column.number ? table.footers.value(static_cast<qsizetype>(index)) : QString();
        double widest = std::max(bold.horizontalAdvance(column.heading), bold.horizontalAdvance(sum));
        own.push_back(column.width);
        least.push_back(widest + 2 * cellPadding + roundingSlack);
        for (qsizetype row = 0; row < std::min(table.rowCount, sampledRows); ++row)
            widest = std::max(widest, regular.horizontalAdvance(table.text(row, index)));
        wanted.push_back(widest + 2 * cellPadding + roundingSlack);
    }
    const auto filling = [room](std::vector<double> widths) {
        const double sum = std::accumulate(widths.begin(), widths.end(), 0.0);
        for (double& width : widths)
            width *= room / sum;
        return widths;
    };
    if (std::accumulate(least.begin(), least.end(), 0.0) >= room * mostFixed)
        return filling(own);
    const auto cutTo = [&](double most) {
        std::vector<double> widths;
        for (std::size_t index = 0; index < wanted.size(); ++index)
            widths.push_back(std::max(least[index], std::min(wanted[index], most)));
        return widths;
    };
    double tooNarrow = 0;
    double enough = room;
    for (int halving = 0; halving < 30; ++halving) {
        const double most = (tooNarrow + enough) / 2;
        const std::vector<double> widths = cutTo(most);
        (std::accumulate(widths.begin(), widths.end(), 0.0) < room ? tooNarrow : enough) = most;
    }
    return filling(cutTo(tooNarrow));
}

}  // namespace

GridPages::GridPages(PrintTable table, PrintInfo info, QSizeF paper)
    : m_table(std::move(table)), m_info(std::move(info)), m_paper(paper) {
    m_room = roomOn(paper, m_info.margins);
    m_body = m_room;
    if (!m_info.pageHeader.isEmpty()) {
        m_header = m_room;
        m_header.setHeight(bandHeight(m_info.pageHeaderFont));
        m_body.setTop(m_header.bottom() + 1 + bandGap);
    }
    if (!m_info.pageFooter.isEmpty()) {
        m_footer = m_room;
        m_footer.setTop(m_room.bottom() + 1 - bandHeight(m_info.pageFooterFont));
        m_body.setBottom(m_footer.top() - 1 - bandGap);
    }
    const std::vector<double> widths = columnWidths(m_table, m_room.width());
    double edge = m_room.left();
    m_edges.push_back(m_room.left());
    for (const double width : widths)
        m_edges.push_back(static_cast<int>(std::lround(edge += width)));
}

bool GridPages::hasHeadings(int page) const {
    return page == 0 || m_info.repeatColumnHeaders;
}

/// How many lines of rows there is room for.
int GridPages::rowsOn(int page) const {
    return std::max(1, m_body.height() / rowHeight - (hasHeadings(page) ? 1 : 0));
}

qsizetype GridPages::firstLine(int page) const {
    return page == 0 ? 0 : rowsOn(0) + qsizetype{page - 1} * rowsOn(1);
}

double GridPages::rowsEnd(int page) const {
    const qsizetype shown = std::min<qsizetype>(lines() - firstLine(page), rowsOn(page));
    const qsizetype bands = shown + (hasHeadings(page) ? 1 : 0);
    return static_cast<double>(m_body.top() + bands * rowHeight) / dots(m_paper.height());
}

/// The rows and the line of footers.
qsizetype GridPages::lines() const {
    return m_table.rowCount + (m_table.footers.isEmpty() ? 0 : 1);
}

int GridPages::pageCount() const {
    const qsizetype behindFirst = std::max<qsizetype>(0, lines() - rowsOn(0));
    const qsizetype each = rowsOn(1);
    return static_cast<int>(1 + (behindFirst + each - 1) / each);
}

QString GridPages::withNumbers(const QString& text, int page) const {
    QString numbered = text;
    numbered.replace(u"\\p"_s, QString::number(page + 1), Qt::CaseSensitive);
    numbered.replace(u"\\P"_s, QString::number(pageCount()), Qt::CaseSensitive);
    return numbered;
}

void GridPages::paint(QPainter& painter, int page, double deviceDots) const {
    painter.save();
    painter.scale(deviceDots / dotsPerInch, deviceDots / dotsPerInch);
    paintBand(painter, m_header, m_info.pageHeader, m_info.pageHeaderFont, page);
    paintBand(painter, m_footer, m_info.pageFooter, m_info.pageFooterFont, page);
    int top = m_body.top();
    if (hasHeadings(page)) {
        paintHeadings(painter, top);
        top += rowHeight;
    }
    paintRows(painter, top, page);
    painter.restore();
}

/// The three parts of a header or footer, all smaller where they would meet.
void GridPages::paintBand(QPainter& painter, const QRect& band, const QString& text, const PrintFont& wanted,
                          int page) const {
    if (text.isEmpty())
        return;
    constexpr std::array alignments{Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    const QStringList parts = text.split(u"\\t"_s);
    std::array<QString, alignments.size()> shown;
    std::array<double, alignments.size()> widths{};
    QFont font = printedFont(wanted);
    const QFontMetricsF metrics(font);
    for (std::size_t i = 0; i < alignments.size(); ++i) {
        shown[i] = withNumbers(parts.value(static_cast<qsizetype>(i)), page);
        widths[i] = metrics.horizontalAdvance(shown[i]);
    }
    const double sides = widths[1] > 0 ? 2 * std::max(widths[0], widths[2]) : widths[0] + widths[2];
    const double gaps = sides > 0 ? (widths[1] > 0 ? 2 : 1) * bandGap : 0;
    const double needed = widths[1] + sides + gaps;
    if (needed > band.width())
        font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * band.width() / needed)));
    painter.setFont(font);
    painter.setPen(Qt::black);
    for (std::size_t i = 0; i < alignments.size(); ++i)
        painter.drawText(band, alignments[i] | Qt::AlignVCenter | Qt::TextSingleLine, shown[i]);
}

template <class Text>
void GridPages::paintCells(QPainter& painter, int top, const Text& text, bool headings) const {
    painter.setPen(Qt::black);
    const QFont font = painter.font();
    const int digit = QFontMetrics(font).horizontalAdvance(u'0');
    for (std::size_t index = 0; index < m_table.columns.size(); ++index) {
        const PrintColumn& column = m_table.columns[index];
        const QString shown = text(index);
        const QRect cell(m_edges[index] + cellPadding, top,
                         m_edges[index + 1] - m_edges[index] - 2 * cellPadding, rowHeight - strongLine);
        const CellText kind = headings        ? CellText::name
                              : column.number ? CellText::number
                              : column.code   ? CellText::code
                                              : CellText::name;
        // Paper can be held nearer than a display: a sum that is too wide gets as small as it has to.
        if (kind == CellText::number && shown.size() * digit > cell.width())
            painter.setFont(shrunk(font, shown, cell.width()));
        paintCellText(painter, cell, shown, column.number ? Qt::AlignRight : Qt::AlignLeft, kind);
        painter.setFont(font);
    }
}

void GridPages::paintHeadings(QPainter& painter, int top) const {
    painter.setFont(printedFont({.size = rowText, .bold = true}));
    paintCells(
        painter, top, [this](std::size_t column) { return m_table.columns[column].heading; }, true);
    painter.fillRect(m_room.left(), top + rowHeight - strongLine, m_room.width(), strongLine, Qt::black);
}

void GridPages::paintRows(QPainter& painter, int top, int page) const {
    const qsizetype first = firstLine(page);
    const qsizetype end = std::min(lines(), first + rowsOn(page));
    painter.setFont(printedFont({.size = rowText}));
    for (qsizetype line = first; line < end; ++line, top += rowHeight) {
        if (line < m_table.rowCount) {
            paintCells(
                painter, top, [&](std::size_t column) { return m_table.text(line, column); }, false);
            painter.fillRect(m_room.left(), top + rowHeight - thinLine, m_room.width(), thinLine,
                             QColor::fromRgb(lineColor));
            continue;
        }
        painter.fillRect(m_room.left(), top, m_room.width(), strongLine, Qt::black);
        painter.setFont(printedFont({.size = rowText, .bold = true}));
        paintCells(
            painter, top,
            [&](std::size_t column) { return m_table.footers.value(static_cast<qsizetype>(column)); }, false);
    }
}

void printPages(const GridPages& pages, const std::function<void(int count)>& printed) {
    PrintJob job;
    job.setWholePages(QPageSize(pages.paper(), QPageSize::Point));
    QPainter& painter = job.begin();
    const int count = pages.pageCount();
    for (int page = 0; page < count; ++page) {
        if (page > 0)
            job.nextPage();
        pages.paint(painter, page, job.device().logicalDpiX());
        if (printed)
            printed(page + 1);
    }
    job.finish();
}

}  // namespace kovanix
