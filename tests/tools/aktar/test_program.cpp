#include <QProcess>
#include <QtTest>

#include "archives.h"
#include "data/baglanmamodulu.h"
#include "kit/toolprogram.h"
#include "readonlyshop.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

struct Outcome {
    int status = -1;
    QString out;
    QString errors;
};

struct UsageRow {
    QStringList arguments;
    int status = ToolExit::wrongUsage;
    QString words;  // within what is said on standard error
};

Outcome start(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished())
        return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString builtProgram() {
    return qEnvironmentVariable("KOVANIX_BUILD_DIR") + u"/bin/kovanix-aktar"_s;
}

}  // namespace

/// The built program, as a shopkeeper or a script starts it.
class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        openShop({});
    }
    void cleanup() { m_shop.reset(); }

    void aShopThatCanOnlyBeRead_data() { addReadOnlyRows(u"gizli"_s); }
    void aShopThatCanOnlyBeRead() {
        if (ShopFixture::isOnServer())
            QSKIP("a server's shop is no file");
        QFETCH(const ReadOnlyRow, row);
        m_shop.emplace();
        openShop(row.password);
        baglantikapat();
        const ReadOnlyShop closed(*m_shop, row,
                                  u"UPDATE urunler SET urun = 'SONUNCU' WHERE barkod = 'abc'"_s);
        if (!closed.trouble().isEmpty())
            QSKIP(qPrintable(closed.trouble()));
        const QTemporaryDir target;
        ::chmod(qPrintable(target.path()), 0777);
        const QString path = target.filePath(u"urunler.csv"_s);
        {
            const auto user = closed.enter();
            const Outcome outcome = start(builtProgram(), {u"--folder"_s, closed.folder(), u"--disa"_s,
                                                           u"urunler"_s, u"--dosya"_s, path});
            QCOMPARE(outcome.errors, QString());
            QCOMPARE(outcome.status, ToolExit::done);
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QVERIFY2(text.contains("SONUNCU"), text.constData());
        QVERIFY(closed.leftNothing());
    }

    void whatGoesOutComesInUnchanged_data() {
        QTest::addColumn<QString>("ending");
        QTest::addColumn<QString>("password");
        for (const QString& ending : {u"csv"_s, u"xlsx"_s}) {
            QTest::addRow("%s", qPrintable(ending)) << ending << QString();
            QTest::addRow("%s, shop with a password", qPrintable(ending)) << ending << u"gizli"_s;
        }
    }
    void whatGoesOutComesInUnchanged() {
        QFETCH(const QString, ending);
        QFETCH(const QString, password);
        if (!password.isEmpty()) {
            m_shop.emplace();
            openShop(password);
        }
        const auto before = m_shop->tables();
        const QString products = m_shop->file(u"ürün listesi."_s + ending);
        Outcome outcome = run({u"--disa"_s, u"urunler"_s, u"--dosya"_s, products});
        QCOMPARE(outcome.status, ToolExit::done);
        outcome = run({u"--ice"_s, u"urunler"_s, u"--dosya"_s, products, u"--stok"_s});
        QVERIFY2(outcome.out.contains(u"yeni 0, değişen 0, aynı 4, reddedilen 0"_s), qPrintable(outcome.out));
        QCOMPARE(outcome.status, ToolExit::done);
        const QString customers = m_shop->file(u"musteri."_s + ending);
        QCOMPARE(run({u"--disa"_s, u"musteriler"_s, u"--dosya"_s, customers}).status, ToolExit::done);
        outcome = run({u"--ice"_s, u"musteriler"_s, u"--dosya"_s, customers});
        QVERIFY2(outcome.out.contains(u"yeni 0, değişen 0, aynı 3, reddedilen 0"_s), qPrintable(outcome.out));
        QCOMPARE(m_shop->tables(), before);
    }

    void aTextFileSuitsASpreadsheet() {
        const QString path = m_shop->file(u"u.csv"_s);
        run({u"--disa"_s, u"urunler"_s, u"--dosya"_s, path});
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.read(3), "\xEF\xBB\xBF");
        QCOMPARE(read(path),
                 u"Barkod;Ürün adı;Alış fiyatı;Satış fiyatı;Stok\r\n"
                 "\"\t8690000000001\";SÜT;10,00;12,50;5\r\n"
                 "\"\t0012\";'=1+1;0,10;0,125;-3,5\r\n"
                 "abc;\"12\"\" TABAK; MAVİ\";1234,00;2000,00;0\r\n"
                 "1001;ŞEKER;;;\r\n"_s);
        run({u"--disa"_s, u"urunler"_s, u"--dosya"_s, path, u"--uzerine-yaz"_s, u"--duz"_s});
        QVERIFY(read(path).contains(u"\r\n0012;=1+1;"_s));
    }

    void salesGoOutByTheirDays() {
        const auto rows = [&](const QStringList& range) {
            const QString path = m_shop->file(u"s.csv"_s);
            run(QStringList{u"--disa"_s, u"satislar"_s, u"--dosya"_s, path, u"--uzerine-yaz"_s} + range);
            return read(path).split(u"\r\n"_s).mid(1, -1).join(u'/');
        };
        const QString first = u"02.05.2026 23:59:59;1001;ŞEKER;1;2,00;2,00;1,00;1,00"_s;
        const QString second = u"03.05.2026 00:00:00;1001;ŞEKER;1;2,00;2,00;1,00;1,00"_s;
        QCOMPARE(rows({}), first + u'/' + second + u'/');
        QCOMPARE(rows({u"--bitis"_s, u"02.05.2026"_s}), first + u'/');
        QCOMPARE(rows({u"--baslangic"_s, u"2026-05-03"_s, u"--bitis"_s, u"03.05.2026"_s}), second + u'/');
        QCOMPARE(rows({u"--baslangic"_s, u"04.05.2026"_s}), QString());
    }

    void theTillsOwnListsComeIn() {
        const QString path = m_shop->file(u"urun raporu.xls"_s);
        {
            TDBGrid grid;
            Adodc data;
            data.setConnectionString(baglantimetnial());
            data.setCommandType(Adodc::CommandType::table);
            data.setRecordSource(u"urunler"_s);
            data.refresh();
            const QList<std::pair<QString, QString>> columns{
                {u"NO"_s, u"no"_s},           {u"BARKOD"_s, u"barkod"_s},      {u"ÜRÜN ADI"_s, u"urun"_s},
                {u"ALIş FİYAT"_s, u"alis"_s}, {u"SATIş FİYATI"_s, u"satis"_s}, {u"STOK"_s, u"stok"_s}};
            for (const auto& [caption, field] : columns)
                grid.addColumn(caption, field);
            grid.setDataSource(data);
            grid.exportToFile(path, false);
        }
        m_shop->run(u"DELETE FROM urunler WHERE barkod = '0012'"_s);
        m_shop->run(u"UPDATE urunler SET satis = 1 WHERE barkod = 'abc'"_s);
        const Outcome outcome = run({u"--ice"_s, u"urunler"_s, u"--dosya"_s, path, u"--stok"_s});
        QVERIFY2(outcome.out.contains(u"yeni 1, değişen 1, aynı 2, reddedilen 0"_s), qPrintable(outcome.out));
        QCOMPARE(
            m_shop->rows(
                u"SELECT urun, alis, satis, stok FROM urunler WHERE barkod IN ('0012', 'abc') ORDER BY satis"_s),
            (QList<QVariantList>{{u"=1+1"_s, 0.1, 0.125, -3.5},
                                 {u"12\" TABAK; MAVİ"_s, 1234.0, 2000.0, 0.0}}));
    }

    void aTrialWritesNothing() {
        const auto before = m_shop->tables();
        const QString path = write("barkod;urun;satis\n5;YENİ;1\n");
        const Outcome trial = run({u"--ice"_s, u"urunler"_s, u"--dosya"_s, path, u"--deneme"_s});
        QCOMPARE(trial.status, ToolExit::done);
        QVERIFY(trial.out.contains(u"yeni 1, "_s));
        QCOMPARE(m_shop->tables(), before);
        QCOMPARE(run({u"--ice"_s, u"urunler"_s, u"--dosya"_s, path}).status, ToolExit::done);
        QCOMPARE(m_shop->tables()[u"urunler"_s].size(), before[u"urunler"_s].size() + 1);
    }

    void refusedLinesHoldTheOthersBack() {
        const auto before = m_shop->tables();
        const QString path = write("barkod;urun;satis\n5;YENİ;1\n6;;1\n7;A;bir\n");
        const QStringList arguments{u"--ice"_s, u"urunler"_s, u"--dosya"_s, path};
        const Outcome trial = run(arguments + QStringList{u"--deneme"_s});
        QCOMPARE(trial.status, ToolExit::refused);
        QVERIFY2(trial.out.contains(
                     u"  3. satır  6  Ürün adı boş\n  4. satır  7  Satış fiyatı: sayı değil (bir)\n"_s),
                 qPrintable(trial.out));
        QCOMPARE(run(arguments).status, ToolExit::refused);
        QCOMPARE(m_shop->tables(), before);
        QCOMPARE(run(arguments + QStringList{u"--reddedilenleri-atla"_s}).status, ToolExit::done);
        QCOMPARE(m_shop->rows(u"SELECT barkod FROM urunler WHERE barkod IN ('5', '6', '7')"_s),
                 (QList<QVariantList>{{u"5"_s}}));
    }

    void columnsCanBeTold() {
        const QString path = write("A;B;C;D\n5;x;YENİ;1,5\n");
        const QStringList arguments{u"--ice"_s, u"urunler"_s, u"--dosya"_s, path};
        QCOMPARE(run(arguments).status, ToolExit::refused);
        const QStringList told = arguments + QStringList{u"--sutunlar"_s, u"barkod,-,urun,satis"_s};
        // The heading that nobody knows is a line like any other, and no price.
        QCOMPARE(run(told).status, ToolExit::refused);
        QCOMPARE(run(told + QStringList{u"--reddedilenleri-atla"_s}).status, ToolExit::done);
        QCOMPARE(m_shop->rows(u"SELECT urun, satis FROM urunler WHERE barkod = '5'"_s),
                 (QList<QVariantList>{{u"YENİ"_s, 1.5}}));
    }

    void aSheetCanBeTold() {
        const QByteArray heading = rowOf({"Barkod", "Ürün adı", "Fiyat"});
        const QString path = write(
            archiveOf(workbookOf(heading + rowOf({"5", "ELMA", "1"}), heading + rowOf({"6", "ARMUT", "2"}))));
        const QStringList arguments{u"--ice"_s, u"urunler"_s, u"--dosya"_s, path};
        const Outcome first = run(arguments + QStringList{u"--deneme"_s});
        QVERIFY2(
            first.out.contains(u"\n“A” sayfası okundu; okunmayan: “B” (--sayfa ile söyleyebilirsiniz)\n"_s),
            qPrintable(first.out));
        QCOMPARE(run(arguments + QStringList{u"--sayfa"_s, u"b"_s}).status, ToolExit::done);
        QCOMPARE(m_shop->rows(u"SELECT urun FROM urunler WHERE barkod IN ('5', '6')"_s),
                 (QList<QVariantList>{{u"ARMUT"_s}}));
        const Outcome none = run(arguments + QStringList{u"--sayfa"_s, u"C"_s});
        QCOMPARE(none.status, ToolExit::failed);
        QCOMPARE(none.errors, u"“C” adlı sayfa yok; dosyadaki sayfalar: “A”, “B”\n"_s);
    }

    void settledBarcodesAreTold() {
        const QString path = write("barkod;urun;satis\n'5;ELMA;1 234,50\n");
        const Outcome outcome = run({u"--ice"_s, u"urunler"_s, u"--dosya"_s, path});
        QCOMPARE(outcome.status, ToolExit::done);
        QVERIFY2(outcome.out.contains(
                     u"Düzeltilen barkodlar:\n  2. satır  5  Barkod düzeltildi, dosyada yazan: '5\n"_s),
                 qPrintable(outcome.out));
        QCOMPARE(m_shop->rows(u"SELECT barkod, satis FROM urunler WHERE urun = 'ELMA'"_s),
                 (QList<QVariantList>{{u"5"_s, 1234.5}}));
    }

    void usage_data() {
        addRows<UsageRow>({
            {"a stray word alone", {{u"elma"_s}, ToolExit::wrongUsage, u"--disa ya da --ice"_s}},
            {"a trial of nothing", {{u"--deneme"_s}, ToolExit::wrongUsage, u"--disa ya da --ice"_s}},
            {"nothing to do", {{u"--dosya"_s, u"a.csv"_s}, ToolExit::wrongUsage, u"--disa ya da --ice"_s}},
            {"both",
             {{u"--disa"_s, u"urunler"_s, u"--ice"_s, u"urunler"_s, u"--dosya"_s, u"a.csv"_s},
              ToolExit::wrongUsage,
              u"--disa ya da --ice"_s}},
            {"no file", {{u"--disa"_s, u"urunler"_s}, ToolExit::wrongUsage, u"--dosya gerekli"_s}},
            {"unknown kind",
             {{u"--disa"_s, u"elma"_s, u"--dosya"_s, u"a.csv"_s}, ToolExit::wrongUsage, u"--disa: "_s}},
            {"sales don't come in",
             {{u"--ice"_s, u"satislar"_s, u"--dosya"_s, u"a.csv"_s}, ToolExit::wrongUsage, u"--ice: "_s}},
            {"unknown ending",
             {{u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"a.doc"_s},
              ToolExit::wrongUsage,
              u".csv ya da .xlsx"_s}},
            {"no day",
             {{u"--disa"_s, u"satislar"_s, u"--dosya"_s, u"a.csv"_s, u"--bitis"_s, u"31.02.2026"_s},
              ToolExit::wrongUsage,
              u"GG.AA.YYYY"_s}},
            {"days turned round",
             {{u"--disa"_s, u"satislar"_s, u"--dosya"_s, u"a.csv"_s, u"--baslangic"_s, u"02.02.2026"_s,
               u"--bitis"_s, u"01.02.2026"_s},
              ToolExit::wrongUsage,
              u"önce"_s}},
            {"days of products",
             {{u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"a.csv"_s, u"--bitis"_s, u"01.02.2026"_s},
              ToolExit::wrongUsage,
              u"yalnız satışlar"_s}},
            {"a trial of going out",
             {{u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"a.csv"_s, u"--deneme"_s},
              ToolExit::wrongUsage,
              u"--deneme, --disa ile kullanılmaz"_s}},
            {"a sheet of what goes out",
             {{u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"a.xlsx"_s, u"--sayfa"_s, u"A"_s},
              ToolExit::wrongUsage,
              u"--sayfa, --disa ile kullanılmaz"_s}},
            {"a sheet of a text file",
             {{u"--ice"_s, u"urunler"_s, u"--dosya"_s, u"@veri.csv"_s, u"--sayfa"_s, u"A"_s},
              ToolExit::failed,
              u"Bu dosyada sayfa yok"_s}},
            {"overwriting what comes in",
             {{u"--ice"_s, u"urunler"_s, u"--dosya"_s, u"a.csv"_s, u"--uzerine-yaz"_s},
              ToolExit::wrongUsage,
              u"--uzerine-yaz, --ice ile kullanılmaz"_s}},
            {"something behind",
             {{u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"a.csv"_s, u"b"_s},
              ToolExit::wrongUsage,
              u"Anlaşılmadı: b"_s}},
            {"unknown column",
             {{u"--ice"_s, u"urunler"_s, u"--dosya"_s, u"@veri.csv"_s, u"--sutunlar"_s, u"barkod,x"_s},
              ToolExit::wrongUsage,
              u"Böyle bir sütun yok: x"_s}},
            {"no such file",
             {{u"--ice"_s, u"urunler"_s, u"--dosya"_s, u"/yok/a.csv"_s},
              ToolExit::failed,
              u"Dosya yok: /yok/a.csv"_s}},
            {"no such folder",
             {{u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"/yok/a.csv"_s},
              ToolExit::failed,
              u"/yok/a.csv yazılamadı: klasör yok"_s}},
            {"no shop",
             {{u"--folder"_s, u"/yok"_s, u"--disa"_s, u"urunler"_s, u"--dosya"_s, u"a.csv"_s},
              ToolExit::failed,
              u"Bu klasörde dükkân yok"_s}},
        });
    }
    void usage() {
        QFETCH(const UsageRow, row);
        write("barkod;ad\n1;a\n");
        QStringList arguments = row.arguments;
        arguments.replaceInStrings(u"@"_s, m_shop->folder() + u'/');
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.status, row.status);
        QVERIFY2(outcome.errors.contains(row.words), qPrintable(outcome.errors));
    }

    void whatIsThereIsNotOverwritten() {
        const QString path = write("benim");
        const Outcome outcome = run({u"--disa"_s, u"urunler"_s, u"--dosya"_s, path});
        QCOMPARE(outcome.status, ToolExit::failed);
        QCOMPARE(outcome.errors, u"Bu adla bir dosya zaten var: %1\n"_s.arg(path));
        QCOMPARE(read(path), u"benim"_s);
    }

    /// As on a full disk: no file may grow beyond 8 KB.
    void aFullDiskLeavesNothing_data() {
        QTest::addColumn<QString>("ending");
        QTest::newRow("csv") << u"csv"_s;
        QTest::newRow("xlsx") << u"xlsx"_s;
    }
    void aFullDiskLeavesNothing() {
        QFETCH(const QString, ending);
        QString rows;
        for (int row = 0; row < 3000; ++row)
            rows += u"%1('%2','ÜRÜN %2',1,2,3)"_s.arg(row == 0 ? u""_s : u","_s).arg(row * 7919 % 100'003);
        m_shop->run(u"INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES "_s + rows);
        const QDir folder(m_shop->folder());
        QVERIFY(folder.mkdir(u"dolu"_s));
        const QString path = folder.filePath(u"dolu/a."_s + ending);
        const Outcome outcome = start(
            u"bash"_s, {u"-c"_s, u"trap '' XFSZ; ulimit -f 8; exec \"$@\""_s, u"-"_s, builtProgram(),
                        u"--folder"_s, m_shop->folder(), u"--disa"_s, u"urunler"_s, u"--dosya"_s, path});
        QCOMPARE(outcome.errors, path + u" yazılamadı: diskte yer kalmadı\n"_s);
        QCOMPARE(outcome.status, ToolExit::failed);
        QCOMPARE(QDir(folder.filePath(u"dolu"_s)).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    /// Whoever presses Ctrl-C finds the folder as it was.
    void whatIsStoppedLeavesNothing() {
        m_shop->run(
            u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300000) "
            "INSERT INTO urunler (barkod, urun, alis, satis, stok) SELECT i, 'X', 1, 2, 3 FROM n"_s);
        const QDir folder(m_shop->folder());
        QVERIFY(folder.mkdir(u"dur"_s));
        QProcess process;
        process.start(builtProgram(), {u"--folder"_s, m_shop->folder(), u"--disa"_s, u"urunler"_s,
                                       u"--dosya"_s, folder.filePath(u"dur/a.xlsx"_s)});
        const auto files = [&] {
            return QDir(folder.filePath(u"dur"_s)).entryList(QDir::Files | QDir::Hidden);
        };
        QTRY_VERIFY(!files().isEmpty());
        process.terminate();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), ToolExit::cancelled);
        QCOMPARE(files(), QStringList());
    }

private:
    void openShop(const QString& password) {
        m_shop->openShop(password);
        m_shop->addProduct(u"8690000000001"_s, u"SÜT"_s, 10, 12.5, 5.0);
        m_shop->addProduct(u"0012"_s, u"=1+1"_s, 0.1, 0.125, -3.5);
        m_shop->addProduct(u"abc"_s, u"12\" TABAK; MAVİ"_s, 1234, 2000, 0.0);
        m_shop->run(u"INSERT INTO urunler (barkod, urun) VALUES ('1001', 'ŞEKER')"_s);
        m_shop->run(
            u"INSERT INTO musteri (adi, telefon, adres) VALUES ('Ali', '0500 000 00 01', 'Gül Sk.'), "
            "('Ali', '+90 500', '1/2'), ('Ayşe', NULL, '')"_s);
        for (const QString& moment : {u"2026-05-02 23:59:59"_s, u"2026-05-03 00:00:00"_s})
            m_shop->run(
                u"INSERT INTO satislar (tarih, barkod, urun, adet, fiyat, alis, kar, toplam) VALUES "
                "('%1', '1001', 'ŞEKER', 1, 2, 1, 1, 2)"_s.arg(moment));
    }
    Outcome run(QStringList arguments) const {
        if (!arguments.contains(u"--folder"_s))
            arguments = QStringList{u"--folder"_s, m_shop->folder()} + arguments;
        return start(builtProgram(), arguments);
    }
    QString write(const QByteArray& bytes) const {
        QFile file(m_shop->file(u"veri.csv"_s));
        const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        return written ? file.fileName() : QString();
    }
    static QString read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"?"_s;
    }

    std::optional<ShopFixture> m_shop;
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::UsageRow)

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::aktar::ProgramTest>(argc, argv);
}
#include "test_program.moc"
