// Turnover and profit as bars: a window, or a picture and figures by the command line.

#include <QDate>
#include <QTextStream>
#include <optional>

#include "grafik/figuresheet.h"
#include "grafik/grafikwindow.h"
#include "kit/toolprogram.h"
#include "runtime/clock.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

std::optional<Division> divisionOf(const QString& word) {
    if (word == u"gun")
        return Division::day;
    if (word == u"saat")
        return Division::hour;
    return word == u"urun" ? std::optional(Division::product) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    ToolCommandLine commandLine(u"kovanix-grafik"_s,
                                u"Satışları ve kazancı gün, saat ve ürünlere göre çizer."_s);
    const QCommandLineOption png(u"png"_s, u"Grafiği resim olarak DOSYA’ya yazar."_s, u"DOSYA"_s);
    const QCommandLineOption csv(u"csv"_s, u"Rakamları standart çıktıya yazar."_s);
    const QCommandLineOption kind(u"tur"_s, u"gun (varsayılan), saat ya da urun."_s, u"TUR"_s, u"gun"_s);
    const QCommandLineOption first(u"ilk"_s, u"İlk gün (GG.AA.YYYY); verilmezse son günden 30 gün öncesi."_s,
                                   u"GUN"_s);
    const QCommandLineOption last(u"son"_s, u"Son gün (GG.AA.YYYY); verilmezse bugün."_s, u"GUN"_s);
    commandLine.addOptions({png, csv, kind, first, last});

    const auto draws = [&] { return commandLine.isSet(png); };
    const auto wantsWindow = [&] {
        commandLine.findShop();  // where there is none, reading says so
        return !commandLine.isSet(png) && !commandLine.isSet(csv) && !commandLine.isSet(kind) &&
               !commandLine.isSet(first) && !commandLine.isSet(last) &&
               commandLine.positionalArguments().isEmpty();
    };
    const auto run = [&]() -> int {
        const std::optional<Division> division = divisionOf(commandLine.value(kind));
        if (!commandLine.positionalArguments().isEmpty() || !division ||
            (!commandLine.isSet(png) && !commandLine.isSet(csv))) {
            tellError(u"--png DOSYA ya da --csv; --tur gun, saat ya da urun. --help hepsini anlatır."_s);
            return ToolExit::wrongUsage;
        }
        DayRange range;
        range.last = commandLine.isSet(last) ? writtenDay(commandLine.value(last)) : Clock::now().date();
        range.first = commandLine.isSet(first) ? writtenDay(commandLine.value(first))
                                               : presetRange(Preset::thirtyOneDays, range.last).first;
        if (range.isEmpty()) {
            tellError(
                u"--ilk ve --son 30.11.2026 ya da 2026-11-30 gibi yazılan günlerdir; son gün ilk günden önce olamaz."_s);
            return ToolExit::wrongUsage;
        }
        heedRequestsToEnd();
        SalesPicture picture;
        try {
            picture = readShop(range, WorkProgress([](const QString&, qint64, qint64) { endIfAsked(); }));
        } catch (const WorkProgress::Cancelled&) {
            tellError(u"Vazgeçildi"_s);
            return ToolExit::cancelled;
        }
        if (commandLine.isSet(png))
            writeImage(picture, *division, commandLine.value(png));
        if (commandLine.isSet(csv)) {
            // With the mark by which a spreadsheet knows UTF-8.
            QTextStream(stdout) << QChar(QChar::ByteOrderMark)
                                << csvText(picture.table(*division), picture.total);
        }
        return ToolExit::done;
    };
    return runTool(
        argc, argv, commandLine, wantsWindow, [] { return std::make_unique<GrafikWindow>(); }, run, draws);
}
