#include "grafik/figuresheet.h"

#include <QApplication>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QPainter>
#include <QSaveFile>
#include <memory>

#include "grafik/figurechart.h"
#include "printing/gridpages.h"
#include "printing/printjob.h"
#include "runtime/runtimeerror.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int notWritten = 75;  // as any program that can't reach a file
constexpr QSize imageSize(1600, 1000);
constexpr int margin = 40;
constexpr double twipsPerPoint = 20;
constexpr double pageMargin = 36;    // points
constexpr double sheetHeight = 400;  // of the drawing on a printed page, in points

/// Paints title, range, sums and chart into a rectangle as wide as imageSize, whatever its height.
void paintSheet(QPainter& painter, const SalesPicture& picture, Division division, QSize size) {
    constexpr int titleSize = 44;
    constexpr int textSize = 26;
    constexpr int lineHeight = 60;
    QFont font = QApplication::font();
    const auto line = [&](int top, int pixels, QFont::Weight weight, ColorRole ink, const QString& text,
                          Qt::Alignment side) {
        font.setPixelSize(pixels);
        font.setWeight(weight);
        painter.setFont(font);
        painter.setPen(roleColor(ink));
        painter.drawText(QRect(margin, top, size.width() - 2 * margin, lineHeight), side | Qt::AlignVCenter,
                         text);
    };
    line(margin / 2, titleSize, QFont::Medium, ColorRole::ink, drawingTitle(division), Qt::AlignLeft);
    line(margin / 2, textSize, QFont::Normal, ColorRole::mutedInk, rangeText(picture.range), Qt::AlignRight);
    line(margin / 2 + lineHeight, textSize, QFont::Medium, ColorRole::ink,
         u"Tutar %1 TL   Kazanç %2 TL   Miktar %3"_s.arg(moneyText(picture.total.turnover),
                                                         moneyText(picture.total.profit),
                                                         quantityText(picture.total.quantity)),
         Qt::AlignLeft);
    const int top = margin / 2 + 2 * lineHeight + margin / 2;
    const QRect place(margin, top, size.width() - 2 * margin, size.height() - top - margin / 2);
    if (picture.total.lines == 0) {
        font.setPixelSize(titleSize);
        painter.setFont(font);
        painter.setPen(roleColor(ColorRole::mutedInk));
        painter.drawText(place, Qt::AlignCenter, u"Bu aralıkta satış yok"_s);
        return;
    }
    QGraphicsScene scene;
    auto* chart = new FigureChart;
    scene.addItem(chart);
    font.setPixelSize(textSize);
    font.setWeight(QFont::Normal);
    chart->setTextFont(font);
    chart->resize(place.size());
    chart->setTable(drawnTable(picture, division));
    scene.render(&painter, place, QRectF(QPointF(), place.size()), Qt::IgnoreAspectRatio);
}

PrintTable printTable(const SalesPicture& picture, FigureTable table) {
    constexpr double nameWidth = 2.4;
    PrintTable printed;
    printed.columns = {{table.heading, nameWidth, false, false},
                       {u"Miktar"_s, 1, true, false},
                       {u"Tutar (TL)"_s, 1, true, false},
                       {u"Kazanç (TL)"_s, 1, true, false}};
    printed.rowCount = static_cast<qsizetype>(table.rows.size());
    printed.footers = {u"Toplam"_s, quantityText(picture.total.quantity), moneyText(picture.total.turnover),
                       moneyText(picture.total.profit)};
    printed.text = [table = std::move(table)](qsizetype row, std::size_t column) {
        const FigureRow& figures = table.rows[static_cast<std::size_t>(row)];
        switch (column) {
            case 0:
                return figures.name;
            case 1:
                return quantityText(figures.amounts.quantity);
            case 2:
                return moneyText(figures.amounts.turnover);
            default:
                return moneyText(figures.amounts.profit);
        }
    };
    return printed;
}

PrintInfo printInfo(double top, const QString& header) {
    PrintInfo info;
    info.pageHeader = header;
    info.repeatColumnHeaders = true;
    info.margins = QMarginsF(pageMargin, top, pageMargin, pageMargin) * twipsPerPoint;
    return info;
}

}  // namespace

FigureTable drawnTable(const SalesPicture& picture, Division division) {
    const FigureTable& table = picture.table(division);
    return division == Division::product ? withRest(table, bestSellers) : table;
}

QString drawingTitle(Division division) {
    switch (division) {
        case Division::hour:
            return u"Saatlere göre satışlar"_s;
        case Division::product:
            return u"Ürünlere göre satışlar"_s;
        default:
            return u"Günlere göre satışlar"_s;
    }
}

QImage drawnImage(const SalesPicture& picture, Division division) {
    QImage image(imageSize, QImage::Format_RGB32);
    image.fill(roleColor(ColorRole::card));
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    paintSheet(painter, picture, division, imageSize);
    return image;
}

void writeImage(const SalesPicture& picture, Division division, const QString& path) {
    // What is no file, a device for one, would be replaced by one.
    if (const QFileInfo there(path); there.exists() && !there.isFile())
        throw RuntimeError(notWritten, u"%1 yazılamadı: bu bir dosya değil"_s.arg(path));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !drawnImage(picture, division).save(&file, "PNG") ||
        !file.commit())
        throw RuntimeError(notWritten, u"%1 yazılamadı: %2"_s.arg(path, file.errorString()));
}

void printSheet(const SalesPicture& picture, Division division) {
    PrintJob job;
    const QPageSize paper = PrintJob::paper();
    const QSizeF points = paper.size(QPageSize::Point);
    job.setWholePages(paper);
    QPainter& painter = job.begin();
    const double dotsPerPoint = job.device().logicalDpiX() / 72.0;

    painter.save();
    // Its title and its bars stand above the table's edges.
    const double scale = (points.width() - 2 * pageMargin) / (imageSize.width() - 2 * margin);
    painter.scale(dotsPerPoint, dotsPerPoint);
    painter.translate(pageMargin - margin * scale, pageMargin);
    painter.scale(scale, scale);
    paintSheet(painter, picture, division, QSize(imageSize.width(), static_cast<int>(sheetHeight / scale)));
    painter.restore();

    const PrintTable table = printTable(picture, drawnTable(picture, division));
    GridPages pages(table, printInfo(pageMargin + sheetHeight, {}), points);
    const bool onePage = pages.pageCount() == 1;
    if (!onePage)
        pages = GridPages(
            table, printInfo(pageMargin, drawingTitle(division) + u"\\t\\t" + rangeText(picture.range)),
            points);
    for (int page = 0; page < pages.pageCount(); ++page) {
        if (!onePage)
            job.nextPage();
        pages.paint(painter, page, job.device().logicalDpiX());
    }
    job.finish();
}

}  // namespace kovanix
