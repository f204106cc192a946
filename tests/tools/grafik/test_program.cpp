#include <sys/stat.h>

#include <QImage>
#include <QProcess>
#include <QtTest>

#include "data/baglanmamodulu.h"
#include "readonlyshop.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct RunRow {
    QStringList arguments;
    int status;
    QString told;  ///< what standard error begins with
};

struct FileRow {
    QString password;
};

}  // namespace

/// The program as it is built, without a display.
class ProgramTest : public QObject {
    Q_OBJECT

    struct Run {
        int status;
        QByteArray output;
        QString errors;
    };
    Run run(const QStringList& arguments, const QString& where = {}) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& display : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
            environment.remove(display);
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(where.isEmpty() ? m_shop->folder() : where);
        process.start(qEnvironmentVariable("KOVANIX_BUILD_DIR") + u"/bin/kovanix-grafik", arguments);
        if (!process.waitForFinished())
            qFatal("kovanix-grafik doesn't end");
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), QString::fromUtf8(process.readAllStandardError())};
    }
    QStringList withShop(QStringList arguments) const {
        return arguments << u"--folder"_s << m_shop->folder();
    }
    void sell() const {
        m_shop->run(
            u"INSERT INTO satislar (tarih, barkod, urun, adet, toplam, kar) VALUES "
            "('2026-11-05 10:00:00', '8690000000011', 'Süt; 1 L', 2, 65.5, 12.345), "
            "('2026-11-06 23:59:59', NULL, '=1+1', 1.25, %1, -3)"_s
                // A text in a column of numbers, which a server doesn't take: it counts as 12.
                .arg(ShopFixture::isOnServer() ? u"12"_s : u"'12,5'"_s));
    }

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        m_shop->openShop();
    }
    void cleanup() { m_shop.reset(); }

    void figures_data() { addRows<FileRow>({{"plain file", {}}, {"file with a password", {u"gizli"_s}}}); }
    void figures() {
        QFETCH(const FileRow, row);
        m_shop.reset();
        m_shop.emplace();
        m_shop->openShop(row.password);
        sell();
        const auto before = m_shop->tables();
        const QByteArray config = m_shop->config();
        const QStringList november{u"--ilk"_s, u"2026-11-05"_s, u"--son"_s, u"2026-11-06"_s};
        Run made = run(withShop(november + QStringList{u"--csv"_s}));
        QCOMPARE(made.status, 0);
        QCOMPARE(made.output,
                 "\uFEFFGün;Miktar;Tutar;Kazanç\r\n05.11.2026 Perşembe;2;65,50;12,35\r\n"
                 "06.11.2026 Cuma;1,25;12,00;-3,00\r\nToplam;3,25;77,50;9,35\r\n"_ba);
        made = run(withShop(november + QStringList{u"--csv"_s, u"--tur"_s, u"urun"_s}));
        QCOMPARE(made.output,
                 "\uFEFFÜrün;Barkod;Miktar;Tutar;Kazanç\r\n"
                 "\"Süt; 1 L\";\"=\"\"8690000000011\"\"\";2;65,50;12,35\r\n"
                 "'=1+1;;1,25;12,00;-3,00\r\nToplam;;3,25;77,50;9,35\r\n"_ba);
        made = run(withShop(november + QStringList{u"--csv"_s, u"--tur"_s, u"saat"_s}));
        QCOMPARE(made.output.count("\r\n"), 26);
        QCOMPARE(m_shop->tables(), before);
        QCOMPARE(m_shop->config(), config);
    }

    void aShopThatCanOnlyBeRead_data() { addReadOnlyRows(u"gizli"_s); }
    void aShopThatCanOnlyBeRead() {
        if (ShopFixture::isOnServer())
            QSKIP("a server's shop is no file");
        QFETCH(const ReadOnlyRow, row);
        m_shop.reset();
        m_shop.emplace();
        m_shop->openShop(row.password);
        sell();
        baglantikapat();
        const ReadOnlyShop closed(*m_shop, row, u"UPDATE satislar SET toplam = 47.11 WHERE adet = 2"_s);
        if (!closed.trouble().isEmpty())
            QSKIP(qPrintable(closed.trouble()));
        const QTemporaryDir target;
        ::chmod(qPrintable(target.path()), 0777);
        const QString png = target.filePath(u"grafik.png"_s);
        const auto user = closed.enter();
        const Run made = run({u"--folder"_s, closed.folder(), u"--csv"_s, u"--png"_s, png, u"--ilk"_s,
                              u"05.11.2026"_s, u"--son"_s, u"05.11.2026"_s},
                             target.path());
        QVERIFY2(!made.errors.contains(u"yazılam"_s), qPrintable(made.errors));
        QCOMPARE(made.status, 0);
        QVERIFY(made.output.contains(";47,11;"));
        QCOMPARE(QImage(png).size(), QSize(1600, 1000));
        QVERIFY(closed.leftNothing());
    }

    void picture() {
        sell();
        const QString path = m_shop->file(u"grafik.png"_s);
        QList<QImage> images;
        for (const QString& kind : {u"gun"_s, u"saat"_s, u"urun"_s}) {
            const Run made = run(withShop({u"--png"_s, path, u"--tur"_s, kind, u"--ilk"_s, u"2026-11-01"_s,
                                           u"--son"_s, u"2026-11-30"_s}));
            QCOMPARE(made.status, 0);
            images << QImage(path);
            QCOMPARE(images.back().size(), QSize(1600, 1000));
        }
        QVERIFY(images[0] != images[1] && images[1] != images[2]);
    }

    void ends_data() {
        const QString folder = u"--folder"_s;
        addRows<RunRow>(
            {{"help", {{u"--help"_s}, 0, {}}},
             {"version", {{u"--version"_s}, 0, {}}},
             {"unknown option", {{u"--olmaz"_s}, 2, u"kovanix-grafik: Bilinmeyen seçenek"_s}},
             {"unknown kind", {{u"--csv"_s, u"--tur"_s, u"ay"_s}, 2, u"--png DOSYA"_s}},
             {"nothing to make", {{u"--tur"_s, u"gun"_s}, 2, u"--png DOSYA"_s}},
             {"a stray word", {{u"--csv"_s, u"gun"_s}, 2, u"--png DOSYA"_s}},
             {"a day with dots", {{u"--csv"_s, u"--son"_s, u"05.11.2026"_s}, 0, {}}},
             {"a day with dashes", {{u"--csv"_s, u"--son"_s, u"2026-11-05"_s}, 0, {}}},
             {"no day", {{u"--csv"_s, u"--ilk"_s, u"11/05/2026"_s}, 2, u"--ilk ve --son"_s}},
             {"words behind a day", {{u"--csv"_s, u"--ilk"_s, u"2026-11-05x"_s}, 2, u"--ilk ve --son"_s}},
             {"a day with dots there isn't",
              {{u"--csv"_s, u"--son"_s, u"31.11.2026"_s}, 2, u"--ilk ve --son"_s}},
             {"a day there isn't", {{u"--csv"_s, u"--son"_s, u"2026-11-31"_s}, 2, u"--ilk ve --son"_s}},
             {"backwards",
              {{u"--csv"_s, u"--ilk"_s, u"2026-11-06"_s, u"--son"_s, u"2026-11-05"_s},
               2,
               u"--ilk ve --son"_s}},
             {"no shop", {{u"--csv"_s, folder, u"yok"_s}, 1, u"Dükkân bulunamadı: "_s}},
             {"no shop to draw", {{u"--png"_s, u"a.png"_s, folder, u"yok"_s}, 1, u"Dükkân bulunamadı: "_s}},
             {"no such folder", {{u"--png"_s, u"yok/a.png"_s}, 1, u"yok/a.png yazılamadı: "_s}}});
    }
    void ends() {
        QFETCH(const RunRow, row);
        sell();
        const bool hasFolder = row.arguments.contains(u"--folder"_s);
        const Run made = run(hasFolder ? row.arguments : withShop(row.arguments));
        QCOMPARE(made.status, row.status);
        const QString told =
            made.errors.section(u"\n"_s, made.errors.startsWith(u"QStandardPaths"_s) ? 1 : 0);
        QVERIFY2(told.startsWith(row.told), qPrintable(made.errors));
        QVERIFY(!QFileInfo::exists(m_shop->file(u"yok"_s)));
        QVERIFY(!QFileInfo::exists(m_shop->file(u"a.png"_s)));
    }

    void aPictureReplacesNoDevice() {
        sell();
        const QString pipe = m_shop->file(u"pipe.png"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const Run made = run(withShop({u"--png"_s, pipe}));
        QCOMPARE(made.status, 1);
        QVERIFY2(made.errors.contains(pipe + u" yazılamadı: "_s), qPrintable(made.errors));
        QVERIFY(!QFileInfo(pipe).isFile());
    }

    /// A program whose output is lost mustn't end as if it were there.
    void outputThatCantBeWritten() {
        sell();
        QProcess process;
        process.setStandardOutputFile(u"/dev/full"_s);
        process.start(qEnvironmentVariable("KOVANIX_BUILD_DIR") + u"/bin/kovanix-grafik",
                      withShop({u"--csv"_s}));
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(process.readAllStandardError().contains("Standart çıktıya yazılamadı."));
    }

    void damagedFile() {
        if (ShopFixture::isOnServer())
            QSKIP("a server's shop is no file");
        m_shop.reset();
        m_shop.emplace();
        QFile file(m_shop->databaseFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(8192, 'x'));
        file.close();
        const Run made = run(withShop({u"--csv"_s}));
        QCOMPARE(made.status, 1);
        QVERIFY(!made.errors.isEmpty());
        QVERIFY(made.output.isEmpty());
    }

private:
    std::optional<ShopFixture> m_shop;
};

int main(int argc, char** argv) {
    return runTests<ProgramTest>(argc, argv);
}
#include "test_program.moc"
