#include "aktar/commands.h"

#include <algorithm>

#include "aktar/exporter.h"
#include "aktar/failure.h"
#include "aktar/importer.h"
#include "aktar/sheetfile.h"
#include "aktar/shopstore.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "kit/backgroundwork.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

int wrong(const QString& words) {
    tellError(words);
    return ToolExit::wrongUsage;
}

void tellNotes(const QString& heading, const std::vector<LineNote>& notes) {
    if (notes.empty())
        return;
    tellLine(heading);
    for (const LineNote& note : notes)
        tellLine(
            u"  %1. satır  %2  %3"_s.arg(note.line).arg(note.key.isEmpty() ? u"-"_s : note.key, note.words));
}

void tellPlan(const ImportPlan& plan) {
    tellLine(u"yeni %1, değişen %2, aynı %3, reddedilen %4"_s.arg(plan.added.size())
                 .arg(plan.changed.size())
                 .arg(plan.unchanged)
                 .arg(plan.refused.size()));
    tellNotes(u"Reddedilen satırlar:"_s, plan.refused);
    tellNotes(u"Düzeltilen barkodlar:"_s, plan.settled);
    tellNotes(u"Kısaltılan yazılar:"_s, plan.cut);
}

}  // namespace

Commands::Commands()
    : ToolCommandLine(
          u"kovanix-aktar"_s,
          u"Ürünleri, müşterileri ve satışları dosyaya verir; ürünleri ve müşterileri dosyadan alır."_s),
      m_out(u"disa"_s, u"Dosyaya verir: urunler, musteriler ya da satislar"_s, u"NE"_s),
      m_in(u"ice"_s, u"Dosyadan alır: urunler ya da musteriler"_s, u"NE"_s),
      m_file(u"dosya"_s, u"Dosya: .csv ya da .xlsx; alırken kasanın .xls dökümü de olur"_s, u"DOSYA"_s),
      m_from(u"baslangic"_s, u"Satışların ilk günü (GG.AA.YYYY)"_s, u"GÜN"_s),
      m_to(u"bitis"_s, u"Satışların son günü (GG.AA.YYYY)"_s, u"GÜN"_s),
      m_overwrite(u"uzerine-yaz"_s, u"Aynı adlı dosyanın yerine geçer"_s),
      m_plain(u"duz"_s, u"CSV'yi başka programlar için yazar: tablo programına karşı işaret koymaz"_s),
      m_dryRun(u"deneme"_s, u"Ne olacağını söyler, hiçbir şey yazmaz"_s),
      m_stock(u"stok"_s, u"Dosyadaki stok sütununu da alır"_s),
      m_sheet(u"sayfa"_s, u"XLSX dosyasının hangi sayfası; söylenmezse satırı olan ilki"_s, u"AD"_s),
      m_columns(u"sutunlar"_s, u"Sütunlar sırasıyla: barkod,urun,-,satis"_s, u"ADLAR"_s),
      m_noHeading(u"basliksiz"_s, u"İlk satır başlık değildir (--sutunlar ile)"_s),
      m_skipRefused(u"reddedilenleri-atla"_s, u"Reddedilen satır olsa da ötekileri yazar"_s) {
    addOptions({m_out, m_in, m_file, m_from, m_to, m_overwrite, m_plain, m_dryRun, m_stock, m_sheet,
                m_columns, m_noHeading, m_skipRefused});
}

bool Commands::wantsWindow() const {
    const QStringList options = optionNames();
    return positionalArguments().isEmpty() &&
           std::all_of(options.begin(), options.end(),
                       [this](const QString& name) { return folder.names().contains(name); });
}

int Commands::run() const {
    if (isSet(m_out) == isSet(m_in))
        return wrong(u"--disa ya da --ice: biri gerekli"_s);
    if (!isSet(m_file) || value(m_file).isEmpty())
        return wrong(u"--dosya gerekli"_s);
    if (!positionalArguments().isEmpty())
        return wrong(u"Anlaşılmadı: "_s + positionalArguments().first());
    const bool out = isSet(m_out);
    const auto foreign = out ? std::vector{m_dryRun, m_stock, m_sheet, m_columns, m_noHeading, m_skipRefused}
                             : std::vector{m_from, m_to, m_overwrite, m_plain};
    for (const QCommandLineOption& option : foreign) {
        if (isSet(option))
            return wrong(
                u"--%1, %2 ile kullanılmaz"_s.arg(option.names().first(), out ? u"--disa"_s : u"--ice"_s));
    }
    heedRequestsToEnd();
    try {
        return out ? send() : take();
    } catch (const WorkProgress::Cancelled&) {
        tellError(u"Vazgeçildi, hiçbir şey yazılmadı"_s);
        return ToolExit::cancelled;
    }
}

int Commands::send() const {
    const std::optional<Kind> kind = kindNamed(value(m_out));
    if (!kind)
        return wrong(u"--disa: urunler, musteriler ya da satislar olmalı"_s);
    ExportOrder order{
        *kind,         value(m_file), writtenDay(value(m_from)), writtenDay(value(m_to)), isSet(m_overwrite),
        isSet(m_plain)};
    if ((isSet(m_from) && !order.from.isValid()) || (isSet(m_to) && !order.to.isValid()))
        return wrong(u"Gün GG.AA.YYYY biçiminde olmalı"_s);
    if (const QString fault = faultOf(order); !fault.isEmpty())
        return wrong(fault);
    if (!findShop()) {
        tellError(u"Bu klasörde dükkân yok"_s);
        return ToolExit::failed;
    }
    Connection connection;
    connection.openToRead(baglantimetnial(),
                          [](qint64 done, qint64 total) { tellWork(u"Dükkân okunuyor"_s, done, total); });
    const qint64 rows =
        exportRows(connection, order, [](qint64 done) { tellWork(u"%1 satır yazıldı"_s.arg(done), 0, 0); });
    tellLine(u"%1 satır yazıldı: %2"_s.arg(rows).arg(order.path));
    return ToolExit::done;
}

int Commands::take() const {
    const std::optional<Kind> kind = kindNamed(value(m_in));
    if (!kind || *kind == Kind::sales)
        return wrong(u"--ice: urunler ya da musteriler olmalı"_s);
    if (isSet(m_noHeading) && !isSet(m_columns))
        return wrong(u"--basliksiz yalnız --sutunlar ile kullanılır"_s);
    if (!findShop()) {
        tellError(u"Bu klasörde dükkân yok"_s);
        return ToolExit::failed;
    }
    const SheetFile file = readSheetFile(value(m_file), value(m_sheet), [](qint64 done, qint64 total) {
        tellWork(u"Okunuyor"_s, done, total);
    });
    Mapping mapping;
    if (isSet(m_columns)) {
        try {
            mapping = mapByNames(value(m_columns), file.table, *kind);
        } catch (const Refused& names) {
            return wrong(names.description());
        }
        if (isSet(m_noHeading))
            mapping.headingRow = -1;
    } else {
        mapping = mapByHeadings(file.table, *kind, isSet(m_stock));
    }
    tellLine(u"%1; sütunlar: %2"_s.arg(file.description, namesOf(mapping, *kind)));
    if (const QString sheets = wordsOfSheets(file); !sheets.isEmpty())
        tellLine(sheets + u" (--sayfa ile söyleyebilirsiniz)"_s);
    if (const QString fault = faultOf(mapping, *kind); !fault.isEmpty()) {
        tellError(fault + u" (--sutunlar ile söyleyebilirsiniz)"_s);
        return ToolExit::refused;
    }
    Connection connection;
    connection.open(baglantimetnial());
    const ImportPlan plan = planImport(connection, file.table, *kind, mapping, tellWork);
    tellPlan(plan);
    const bool spotless = plan.refused.empty();
    if (isSet(m_dryRun))
        return spotless ? ToolExit::done : ToolExit::refused;
    if (!spotless && !isSet(m_skipRefused)) {
        tellError(
            u"Reddedilen satır var, hiçbir şey yazılmadı. Ötekileri yazmak için: --reddedilenleri-atla"_s);
        return ToolExit::refused;
    }
    try {
        applyPlan(connection, plan, [](qint64 done, qint64 total) { tellWork(u"Yazılıyor"_s, done, total); });
    } catch (const Refused& refused) {
        tellError(refused.description());
        return ToolExit::refused;
    }
    tellLine(u"Aktarıldı"_s);
    return ToolExit::done;
}

}  // namespace kovanix::aktar
