#include "printing/printer.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPageSize>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "printing/printjob.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr double fontSize = 10.0;  // points
constexpr int charactersPerTab = 8;

constexpr double twipsPerInch = 1440;
constexpr double pixelsPerInch = 600;  // of a printer, whichever there is

// The slip of the PDF folder: a receipt roll, cut where the text ends.
constexpr double rollWidth = 80.0;  // millimetres, as all below
constexpr double rollMargin = 4.0;
constexpr double shortestSlip = 80.0;
constexpr double longestSlip = 297.0;
constexpr double millimetresPerInch = 25.4;

QFont printingFont() {
    QFont font;
    font.setFamilies({u"Roboto"_s, u"sans-serif"_s});
    font.setStyleHint(QFont::SansSerif);
    font.setPointSizeF(fontSize);
    // The least spacing there is keeps the toolkit from joining "fi" into one glyph, which would be another
    // letter to whoever copies or searches the text of the page.
    font.setLetterSpacing(QFont::AbsoluteSpacing, 1.0 / 64);
    return font;
}

QStringList linesOf(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    // The last break ends a line and begins none.
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    QStringList lines = text.split(QLatin1Char('\n'));
    // Blank lines at the end would only ever feed paper.
    while (lines.size() > 1 && lines.last().trimmed().isEmpty())
        lines.removeLast();
    return lines;
}

/// Text broken to the width of a device's page, in that device's units.
class SetText {
public:
    SetText(const QStringList& lines, QPagedPaintDevice& device) {
        const QFont font = printingFont();
        const QFontMetricsF metrics(font, &device);
        m_lineHeight = metrics.lineSpacing();
        QTextOption option(Qt::AlignLeft);
        // A product's name in another script must not move a line to the other side of the receipt.
        option.setTextDirection(Qt::LeftToRight);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        const double width = device.width();
        const double digit = metrics.horizontalAdvance(u"0123456789"_s) / 10;
        // The toolkit scales tab stops by some ratio of resolutions that it keeps to itself: measure it.
        constexpr double probe = 10.0;
        option.setTabStopDistance(probe);
        const double scale = broken(u"\t."_s, font, option, width, device)->lineAt(0).cursorToX(1) / probe;
        option.setTabStopDistance(charactersPerTab * digit / scale);
        for (const QString& line : lines)
            m_paragraphs.push_back(broken(line, font, option, width, device));
    }

    double height() const {
        int count = 0;
        for (const auto& paragraph : m_paragraphs)
            count += std::max(1, paragraph->lineCount());
        return count * m_lineHeight;
    }

    /// Paints line after line, turning the page where the next one has no room.
    void paint(QPainter& painter, PrintJob& job) const {
        const double pageHeight = job.device().height();
        double top = 0;
        for (const auto& paragraph : m_paragraphs) {
            for (int i = 0; i < std::max(1, paragraph->lineCount()); ++i) {
                if (top > 0 && top + m_lineHeight > pageHeight) {
                    job.nextPage();
                    top = 0;
                }
                if (i < paragraph->lineCount())
                    paragraph->lineAt(i).draw(&painter, QPointF(0, top));
                top += m_lineHeight;
            }
        }
    }

private:
    static std::unique_ptr<QTextLayout> broken(const QString& text, const QFont& font,
                                               const QTextOption& option, double width,
                                               QPagedPaintDevice& device) {
        auto layout = std::make_unique<QTextLayout>(text, font, &device);
        layout->setTextOption(option);
        layout->beginLayout();
        for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine())
            line.setLineWidth(width);
        layout->endLayout();
        return layout;
    }

    std::vector<std::unique_ptr<QTextLayout>> m_paragraphs;
    double m_lineHeight{};
};

void setRollPage(QPagedPaintDevice& device, double length) {
    device.setPageLayout(QPageLayout(
        QPageSize(QSizeF(rollWidth, length), QPageSize::Millimeter, u"Receipt"_s, QPageSize::ExactMatch),
        QPageLayout::Portrait, QMarginsF(rollMargin, rollMargin, rollMargin, rollMargin),
        QPageLayout::Millimeter));
}

/// Makes the roll as long as the text.
void cutRoll(QPagedPaintDevice& device, const SetText& text) {
    const double needed =
        std::ceil(text.height() / device.logicalDpiY() * millimetresPerInch) + 2 * rollMargin + 1;
    setRollPage(device, std::clamp(needed, shortestSlip, longestSlip));
}

}  // namespace

Printer::Printer() = default;
Printer::~Printer() = default;

void Printer::print(const QString& text) {
    m_pending += text + QLatin1Char('\n');
}

double Printer::twipsPerPixelX() {
    return twipsPerInch / pixelsPerInch;
}

double Printer::twipsPerPixelY() {
    return twipsPerInch / pixelsPerInch;
}

void Printer::endDocument() {
    const QString pending = std::exchange(m_pending, {});
    if (pending.isEmpty())
        return;
    const QStringList lines = linesOf(pending);
    PrintJob job;
    if (job.isFile())
        setRollPage(job.device(), longestSlip);
    const SetText text(lines, job.device());
    if (job.isFile())
        cutRoll(job.device(), text);
    text.paint(job.begin(), job);
    job.finish();
}

}  // namespace kovanix
