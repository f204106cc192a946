#include "commandline.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <optional>

#include "handover.h"
#include "passwords.h"
#include "profile/profilefile.h"
#include "server.h"
#include "servershop.h"
#include "stop.h"
#include "tofile.h"
#include "toserver.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;
using Step = Progress::Step;

namespace {

constexpr qint64 pauseBetweenLines = 1000;  // milliseconds
constexpr qint64 pauseBetweenNumbers = 200;

struct Options {
    QCommandLineOption toServer{u"sunucuya"_s, u"DOSYA'yı SUNUCU dosyasının gösterdiği sunucuya taşır."_s};
    QCommandLineOption toFile{u"dosyaya"_s, u"Sunucudaki dükkânı yeni bir DOSYA'ya kopyalar."_s};
    QCommandLineOption copy{u"kopya"_s,
                            u"--dosyaya gibi, başka programlar için: ilerlemeyi sayılarla yazar."_s};
    QCommandLineOption join{u"bagla"_s, u"Bir kasayı (--klasor) taşınmış dükkâna bağlar."_s};
    QCommandLineOption hosts{u"adres"_s, u"Sunucunun adresi; birden çoksa virgülle."_s, u"ADRES"_s};
    QCommandLineOption port{u"port"_s, u"Sunucunun portu (5432)."_s, u"PORT"_s};
    QCommandLineOption database{u"veritabani"_s, u"Veritabanının adı."_s, u"AD"_s};
    QCommandLineOption user{u"kullanici"_s, u"Bu kasanın sunucudaki kullanıcısı."_s, u"AD"_s};
    QCommandLineOption tls{u"tls"_s, u"tam (sertifika sınanır), var (şifreli) ya da yok; verilmezse tam."_s,
                           u"TLS"_s};
    QCommandLineOption root{u"kok"_s, u"Sunucunun sertifikasını sınayacak kök sertifika."_s, u"YOL"_s};
    QCommandLineOption folder{
        u"klasor"_s, u"Ayarları (Kovanix.config) değiştirilecek kasa klasörü; birden çok verilebilir."_s,
        u"KLASÖR"_s};
    QCommandLineOption filePassword{u"parola"_s, u"Dosyanın parolasını uçbirimde sorar."_s};
    QCommandLineOption serverPassword{u"sunucu-parola"_s, u"Sunucudaki kullanıcının parolasını sorar."_s};
    QCommandLineOption help{{u"yardim"_s, u"h"_s, u"help"_s}, u"Bu yazıyı gösterir."_s};
    QCommandLineOption version{{u"surum"_s, u"version"_s}, u"Sürümü yazar."_s};

    QList<QCommandLineOption> all() const {
        return {toServer, toFile, copy,   join,         hosts,          port, database, user,
                tls,      root,   folder, filePassword, serverPassword, help, version};
    }
};

QString helpText(const QCommandLineParser& parser) {
    return parser.helpText() +
           uR"(
Kullanım:
  kovanix-tasi --sunucuya kovanix.data dukkan.sunucu --adres 192.168.1.10 --veritabani dukkan
               --kullanici kasa1 --klasor ~/.local/share/kovanix
  kovanix-tasi --dosyaya dukkan.sunucu /media/usb/dukkan-2026-05-03.data
  kovanix-tasi --kopya dukkan.sunucu /var/tmp/dukkan.data
  kovanix-tasi --bagla dukkan.sunucu --klasor ~/.local/share/kovanix

Parolalar komut satırına yazılmaz: ya KOVANIX_DOSYA_PAROLA ve KOVANIX_SUNUCU_PAROLA değişkenlerinden
okunur ya da --parola ve --sunucu-parola ile sorulur. --sunucuya, dosyanın parolasını --klasor içindeki
ayarlardan da bulur.

--kopya, dosyanın yanına rapor yazmaz; satırları:
  ilerleme YAPILAN TOPLAM        yazılan ve karşılaştırılan satırlar, saniyede birkaç kez
  bitti SATIR DEĞER NOT          satırlar, düzeltilen değerler, notlar
SIGTERM ya da çıktısının kapanması onu durdurur.

Çıkış kodları:
  0  bitti
  1  yarıda kaldı; hiçbir şey değişmedi, yeniden çalıştırın
  2  komut satırı yanlış
  3  sunucuya bağlanılamadı ya da veritabanı uygun değil
  4  dosya kullanımda, bozuk, zaten var ya da parolası yanlış
  5  geri okunan değerler farklı; hiçbir şey değişmedi
  6  dükkân sunucuda, ama dosyalar bitmedi; yeniden çalıştırın
  7  bağlantı tam kaydedilirken koptu; yeniden çalıştırın
  8  durduruldu; hiçbir şey değişmedi
)"_s;
}

class Command {
public:
    Command(const QStringList& arguments, QTextStream& out) : m_out(out) {
        m_parser.addOptions(m_options.all());
        m_parser.addPositionalArgument(u"DOSYA"_s, u"Veritabanı dosyası."_s);
        m_parser.addPositionalArgument(u"SUNUCU"_s, u"Sunucu dosyası (.sunucu)."_s);
        m_parser.setApplicationDescription(
            u"Kovanix dükkânını dosyadan PostgreSQL sunucusuna taşır ve geri kopyalar."_s);
        if (!m_parser.parse(arguments))
            refuse(m_parser.errorText());
    }

    void run() {
        if (isSet(m_options.help)) {
            m_out << helpText(m_parser);
            return;
        }
        if (isSet(m_options.version)) {
            m_out << "kovanix-tasi " KOVANIX_VERSION "\n";
            return;
        }
        const int commands = int(isSet(m_options.toServer)) + int(isSet(m_options.toFile)) +
                             int(isSet(m_options.copy)) + int(isSet(m_options.join));
        if (commands != 1)
            refuse(u"--sunucuya, --dosyaya, --kopya ya da --bagla verin (--yardim)"_s);
        m_clock.start();
        if (isSet(m_options.toServer))
            toServer();
        else if (isSet(m_options.toFile))
            toFile();
        else if (isSet(m_options.copy))
            copy();
        else
            join();
    }

private:
    [[noreturn]] static void refuse(const QString& words) { throw Failure(ExitCode::usage, words); }

    bool isSet(const QCommandLineOption& option) const { return m_parser.isSet(option); }

    QStringList paths(int count) const {
        QStringList given = m_parser.positionalArguments();
        if (given.size() != count)
            refuse(count == 1 ? u"Bir dosya adı gerekli (--yardim)"_s
                              : u"İki dosya adı gerekli (--yardim)"_s);
        return given;
    }

    std::optional<ServerAddress> address() const {
        const bool any = isSet(m_options.hosts) || isSet(m_options.port) || isSet(m_options.database) ||
                         isSet(m_options.user) || isSet(m_options.tls) || isSet(m_options.root);
        if (!any)
            return std::nullopt;
        ServerAddress address;
        for (const QString& host : m_parser.value(m_options.hosts).split(u',', Qt::SkipEmptyParts))
            address.hosts.append(host.trimmed());
        address.database = m_parser.value(m_options.database);
        address.user = m_parser.value(m_options.user);
        if (address.hosts.isEmpty() || address.database.isEmpty() || address.user.isEmpty())
            refuse(u"--adres, --veritabani ve --kullanici birlikte verilir"_s);
        if (isSet(m_options.port)) {
            bool isNumber = false;
            address.port = m_parser.value(m_options.port).toInt(&isNumber);
            if (!isNumber || address.port < 1 || address.port > 65535)
                refuse(u"--port: geçersiz sayı: "_s + m_parser.value(m_options.port));
        }
        const QString tls = isSet(m_options.tls) ? m_parser.value(m_options.tls) : u"tam"_s;
        if (tls != u"tam"_s && tls != u"var"_s && tls != u"yok"_s)
            refuse(u"--tls: tam, var ya da yok olmalı: "_s + tls);
        address.tls = tls == u"tam"_s   ? ServerAddress::Tls::full
                      : tls == u"var"_s ? ServerAddress::Tls::on
                                        : ServerAddress::Tls::off;
        if (isSet(m_options.root)) {
            address.rootCertificate = QFileInfo(m_parser.value(m_options.root)).absoluteFilePath();
            if (!QFileInfo(address.rootCertificate).isFile())
                refuse(u"--kok: dosya bulunamadı: "_s + address.rootCertificate);
        }
        return address;
    }

    QString filePassword(bool isNew, const QString& file) const {
        if (qEnvironmentVariableIsSet("KOVANIX_DOSYA_PAROLA"))
            return qEnvironmentVariable("KOVANIX_DOSYA_PAROLA");
        if (isSet(m_options.filePassword))
            return askPassword(isNew ? u"Yeni dosyanın parolası"_s : u"Dosyanın parolası"_s, isNew);
        if (isNew)
            return {};
        for (const QString& folder : m_parser.values(m_options.folder)) {
            // Only the settings that speak of that very file hold its password.
            const QString settings = QDir(folder).filePath(u"Kovanix.config"_s);
            const QString named = ProfileFile::value(settings, u"ayar"_s, u"ip"_s).trimmed();
            const QString there = named.isEmpty() ? QDir(folder).filePath(u"kovanix.data"_s) : named;
            if (QFileInfo(there).canonicalFilePath() == QFileInfo(file).canonicalFilePath())
                return configuredPassword(folder);
        }
        return {};
    }

    QString serverPassword() const {
        if (isSet(m_options.serverPassword))
            return askPassword(u"Sunucu parolası"_s);
        return qEnvironmentVariable("KOVANIX_SUNUCU_PAROLA");
    }

    void toServer() {
        const QStringList given = paths(2);
        ToServer order{given[0],         given[1],
                       address(),        filePassword(false, given[0]),
                       serverPassword(), m_parser.values(m_options.folder)};
        const MoveResult result = moveToServer(order, [this](const Progress& progress) { show(progress); });
        tellResult(result);
        for (const QString& path : result.renamed)
            m_out << "Eski dosyanın yeni adı: " << path << '\n';
        if (order.folders.isEmpty())
            m_out << "Kasaların Kovanix.config dosyasına yazın: ip="
                  << QFileInfo(order.pointer).absoluteFilePath()
                  << " ve dbpass=(sunucu parolası); ya da her kasada kovanix-tasi --bagla çalıştırın.\n";
    }

    void toFile() {
        const QStringList given = paths(2);
        const ToFile order{given[0], given[1], serverPassword(), filePassword(true, {}),
                           m_parser.values(m_options.folder)};
        const MoveResult result = copyToFile(order, [this](const Progress& progress) { show(progress); });
        tellResult(result);
        m_out << "Dosya: " << QFileInfo(order.file).absoluteFilePath() << '\n';
    }

    /// As another program wants it: numbers, and nothing but the file.
    void copy() {
        const QStringList given = paths(2);
        if (isSet(m_options.folder))
            refuse(u"--kopya ile --klasor verilmez"_s);
        const ToFile order{given[0], given[1], serverPassword(), filePassword(true, {}), {}, false};
        const MoveResult result =
            copyToFile(order, [this](const Progress& progress) { showNumbers(progress); });
        m_out << "bitti " << result.rows << ' ' << result.settledCells << ' ' << result.notices << '\n';
    }

    void join() {
        const QString pointer = paths(1).constFirst();
        const QStringList folders = m_parser.values(m_options.folder);
        if (folders.isEmpty())
            refuse(u"--bagla için --klasor gerekli"_s);
        const ServerAddress to = addressOf(pointer, address());
        const QString password = serverPassword();
        Handover handover(pointer, to, password, folders);
        handover.check({});
        {
            Server server(to, password);
            checkDatabase(server);
            if (findTables(server, {}).isEmpty())
                throw Failure(ExitCode::serverUnfit, u"Bu veritabanında bir dükkânın tabloları yok."_s);
        }
        handover.writePointer();
        handover.bringFoldersIntoStep({});
        for (const QString& path : handover.renamed())
            m_out << "Eski dosyanın yeni adı: " << path << '\n';
        m_out << "Kasa bağlandı.\n";
    }

    QString count(qint64 number) const { return m_locale.toString(number); }

    /// From the commit on, to stop would leave something half done.
    static void stopIfPossible(const Progress& progress) {
        if (progress.step < Step::committing)
            stopIfAsked();
    }

    void showNumbers(const Progress& progress) {
        stopIfPossible(progress);
        if (progress.toPass == 0 || (m_lastLine.isValid() && m_lastLine.elapsed() < pauseBetweenNumbers))
            return;
        m_lastLine.start();
        m_out << "ilerleme " << progress.passed << ' ' << progress.toPass << '\n';
        m_out.flush();
        // Who has gone away wants no file any more.
        if (m_out.status() != QTextStream::Ok)
            throw Failure(ExitCode::stopped, u"Çıktıyı okuyan kalmadı; durduruldu."_s);
    }

    void show(const Progress& progress) {
        stopIfPossible(progress);
        const auto words = [&]() -> QString {
            switch (progress.step) {
                case Step::recognising:
                    return u"dosya okunuyor"_s;
                case Step::copying:
                    return u"kopyalanıyor"_s;
                case Step::indexing:
                    return u"dizinler kuruluyor"_s;
                case Step::comparing:
                    return u"karşılaştırılıyor"_s;
                case Step::committing:
                    return u"kaydediliyor"_s;
                default:
                    return {};
            }
        }();
        if (words.isEmpty())
            return;
        const bool rows = !progress.table.isEmpty();
        if (rows && m_lastLine.isValid() && m_lastLine.elapsed() < pauseBetweenLines)
            return;
        m_lastLine.start();
        m_out << words;
        if (rows)
            m_out << ": " << progress.table << ' ' << count(progress.rows) << " / " << count(progress.total);
        m_out << '\n';
        m_out.flush();
    }

    void tellResult(const MoveResult& result) {
        m_out << count(result.tables) << " tablo, " << count(result.rows) << " satır; "
              << m_locale.toString(static_cast<double>(m_clock.elapsed()) / 1000, 'f', 1) << " saniye.\n";
        if (result.finishedEarlier)
            m_out << "Sunucu bu dükkânı zaten tutuyordu; yarıda kalan taşıma tamamlandı.\n";
        else if (result.settledCells == 0)
            m_out << "Her değer geri okundu, aynı.\n";
        else
            m_out << "Her değer geri okundu; " << count(result.settledCells)
                  << " değer düzeltildi, kalanların hepsi aynı:\n";
        for (auto it = result.settled.begin(); it != result.settled.end(); ++it)
            m_out << "  " << count(it.value()) << " × " << oddWords(it.key()) << '\n';
        if (result.settled.contains(Odd::textAsZero))
            m_out << "DİKKAT: 0 yazılan yazıların asılları raporda ve eski dosyada duruyor; elle düzeltin.\n";
        if (result.notices > 0)
            m_out << count(result.notices) << " not var.\n";
        if (!result.report.isEmpty())
            m_out << "Hepsi tek tek burada: " << result.report << '\n';
        for (const QString& path : result.settings) {
            m_out << "Ayarlar değişti: " << path << '\n';
            if (QFileInfo::exists(movedName(path)))
                m_out << "  Önceki ayarlar, eski parolayla birlikte, yanındaki .tasindi kopyasında.\n";
        }
    }

    QTextStream& m_out;
    Options m_options;
    QCommandLineParser m_parser;
    QElapsedTimer m_clock;
    QElapsedTimer m_lastLine;
    QLocale m_locale{QLocale::Turkish, QLocale::Turkey};
};

}  // namespace

ExitCode runCommandLine(const QStringList& arguments, QTextStream& out, QTextStream& errors) {
    try {
        Command(arguments, out).run();
        out.flush();
        return ExitCode::done;
    } catch (const Failure& failure) {
        out.flush();
        errors << "kovanix-tasi: " << failure.description().trimmed() << '\n';
        errors.flush();
        return failure.code();
    }
}

}  // namespace kovanix::tasi
