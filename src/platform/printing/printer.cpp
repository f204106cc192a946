#include "printing/printer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontMetricsF>
#include <QLibrary>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScopeGuard>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr double fontSize = 10.0;  // points
constexpr int charactersPerTab = 8;

// The slip of the PDF folder: a receipt roll, cut where the text ends.
constexpr double rollWidth = 80.0;  // millimetres, as all below
constexpr double rollMargin = 4.0;
constexpr double shortestSlip = 80.0;
constexpr double longestSlip = 297.0;
constexpr int rollResolution = 600;  // dots an inch
constexpr double millimetresPerInch = 25.4;

constexpr int highestJobNumber = 9999;

[[noreturn]] void fail(const QString& description) {
    throw RuntimeError(RuntimeError::printerError, description, u"Printer"_s);
}

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
    void paint(QPainter& painter, QPagedPaintDevice& device) const {
        const double pageHeight = device.height();
        double top = 0;
        for (const auto& paragraph : m_paragraphs) {
            for (int i = 0; i < std::max(1, paragraph->lineCount()); ++i) {
                if (top > 0 && top + m_lineHeight > pageHeight) {
                    if (!device.newPage())
                        fail(u"The printer gives no further page."_s);
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

void paintOn(QPagedPaintDevice& device, const SetText& text) {
    QPainter painter;
    if (!painter.begin(&device))
        fail(u"The printer takes no job."_s);
    text.paint(painter, device);
    if (!painter.end())
        fail(u"The printer did not finish the job."_s);
}

void setRollPage(QPdfWriter& writer, double length) {
    writer.setPageLayout(QPageLayout(
        QPageSize(QSizeF(rollWidth, length), QPageSize::Millimeter, u"Receipt"_s, QPageSize::ExactMatch),
        QPageLayout::Portrait, QMarginsF(rollMargin, rollMargin, rollMargin, rollMargin),
        QPageLayout::Millimeter));
}

/// Opens the file of the next free number; two programs that print into one folder never share one.
void openNextJob(QFile& file, const QString& folder) {
    const QDir dir(folder);
    if (!dir.mkpath(u"."_s))
        fail(u"The folder %1 can't be made."_s.arg(folder));
    int number = 1;
    const QStringList present = dir.entryList({u"????.pdf"_s}, QDir::Files | QDir::System | QDir::Hidden);
    for (const QString& name : present)
        number = std::max(number, name.left(4).toInt() + 1);
    for (; number <= highestJobNumber; ++number) {
        file.setFileName(dir.filePath(u"%1.pdf"_s.arg(number, 4, 10, QLatin1Char('0'))));
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            return;
        if (!file.exists())
            fail(file.errorString());
    }
    fail(u"The folder %1 is full."_s.arg(folder));
}

void writePdf(const QStringList& lines, const QString& folder) {
    QFile file;
    openNextJob(file, folder);
    // Half a receipt is worse than none.
    auto discard = qScopeGuard([&file] { file.remove(); });
    {
        QPdfWriter writer(&file);
        writer.setTitle(QCoreApplication::applicationName());
        writer.setCreator(QCoreApplication::applicationName());
        writer.setResolution(rollResolution);
        setRollPage(writer, longestSlip);
        const SetText text(lines, writer);
        const double needed =
            std::ceil(text.height() / rollResolution * millimetresPerInch) + 2 * rollMargin + 1;
        setRollPage(writer, std::clamp(needed, shortestSlip, longestSlip));
        paintOn(writer, text);
    }
    if (!file.flush() || file.error() != QFileDevice::NoError)
        fail(file.errorString());
    discard.dismiss();
}

/// What the print server said to the last request of this thread, when it was a refusal. The toolkit doesn't
/// pass that on, so its own client library is asked (status codes of RFC 8011; 0x400 and above are errors).
std::optional<QString> refusal() {
    constexpr int firstError = 0x400;
    QLibrary client(u"cups"_s, 2);
    const auto lastError = reinterpret_cast<int (*)()>(client.resolve("cupsLastError"));
    const auto lastErrorString = reinterpret_cast<const char* (*)()>(client.resolve("cupsLastErrorString"));
    if (!lastError || !lastErrorString || lastError() < firstError)
        return std::nullopt;
    return QString::fromUtf8(lastErrorString());
}

void sendToDefaultPrinter(const QStringList& lines) {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        fail(u"There is no default printer."_s);
    QPrinter printer(info, QPrinter::HighResolution);
    if (!printer.isValid())
        fail(u"The printer %1 can't be used."_s.arg(info.printerName()));
    printer.setDocName(QCoreApplication::applicationName());
    printer.setCreator(QCoreApplication::applicationName());
    paintOn(printer, SetText(lines, printer));
    if (const auto reason = refusal())
        fail(*reason);
}

}  // namespace

Printer::Printer() = default;
Printer::~Printer() = default;

void Printer::print(const QString& text) {
    m_pending += text + QLatin1Char('\n');
}

void Printer::endDocument() {
    const QString pending = std::exchange(m_pending, {});
    if (pending.isEmpty())
        return;
    const QStringList lines = linesOf(pending);
    const QString target = qEnvironmentVariable("KOVANIX_PRINTER");
    const QLatin1String pdf("pdf:");
    if (target.startsWith(pdf))
        writePdf(lines, target.mid(pdf.size()));
    else
        sendToDefaultPrinter(lines);
}

}  // namespace kovanix
