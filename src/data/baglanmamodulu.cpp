#include "data/baglanmamodulu.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>
#include <chrono>

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "data/schema.h"
#include "database/press.h"
#include "database/serveraddress.h"
#include "desktop/folders.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// Quotes around a value keep its blanks; no path or password of ours has any at its ends.
QString setting(const QString& key) {
    return ayar(key).trimmed();
}

bool fileExists(const QString& path) {
    return QFileInfo(path).isFile();
}

QString localFile() {
    return joinStored(applicationFolder(), u"\\kovanix.data"_s);
}

QString olderLocalFile() {
    return joinStored(applicationFolder(), u"\\kovanix.mdb"_s);
}

void writeWhereDifferent(const QString& key, const QString& text) {
    if (setting(key).compare(text, Qt::CaseInsensitive) != 0)
        ayarla(key, text);
}

bool isOnServer() {
    return ServerAddress::isPointer(veritabaniyolu());
}

ReadEnd brokenOff() {
    return isOnServer() ? ReadEnd::nothing : ReadEnd::part;
}

}  // namespace

Connection& baglanti() {
    static Connection shared;
    return shared;
}

Recordset& kayit() {
    static Recordset shared;
    return shared;
}

QString veritabaniyolu() {
    QString ip;
    if (fileExists(ayardosyasi()))
        ip = setting(u"ip"_s);
    if (!ip.isEmpty() && fileExists(ip))
        return ip;
    for (const QString& local : {localFile(), olderLocalFile()}) {
        if (fileExists(local))
            return local;
    }
    return ip.isEmpty() ? localFile() : ip;
}

QString baglantimetniyap(const QString& path) {
    QString text = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + u";Persist Security Info=False";
    if (!fileExists(ayardosyasi()))
        return text;
    QString password = setting(u"dbpass"_s);
    if (password.isEmpty())
        password = setting(u"mdbparola"_s);
    if (!password.isEmpty())
        text += u";Jet OLEDB:Database Password=" + password;
    return text;
}

QString baglantimetnial() {
    return baglantimetniyap(veritabaniyolu());
}

void ayarlaribaglantiyaesitle() {
    if (!fileExists(ayardosyasi()))
        return;
    const QString path = veritabaniyolu();
    const QString text = baglantimetniyap(path);
    if (setting(u"ip"_s).isEmpty() && fileExists(path))
        ayarla(u"ip"_s, path);
    writeWhereDifferent(u"ConnectionString"_s, text);
    writeWhereDifferent(u"con"_s, text);
}

void baglantiyukle() {
    baglantimetni = baglantimetnial();
    ayarlaribaglantiyaesitle();
}

void ilkayarlar() {
    if (!fileExists(ayardosyasi()))
        return;
    if (setting(u"ip"_s).isEmpty() && fileExists(localFile()))
        ayarla(u"ip"_s, localFile());
    ayarlaribaglantiyaesitle();
    const QString anaProgram = u"ana_program"_s;
    if (setting(anaProgram).isEmpty())
        ayarla(anaProgram, QString());  // so that the key stands in the file
}

QString baglantiyazisi() {
    baglantiyukle();
    const QString text = baglantimetni.trimmed().size() >= 6 ? baglantimetni : baglantimetnial();
    if (text.trimmed().size() < 5)
        return u"provider=microsoft.jet.oledb.4.0;data source=" + localFile();
    return text;
}

void baglantiac() {
    try {
        if (baglanti().isOpen())
            baglanti().close();
        baglanti().open(baglantiyazisi(), Connection::Handle::shared);
        semakontrol(baglanti());
        keepAccessPaths(baglanti());
        baglantidurumu = 1;
        restWhenIdle();
    } catch (const RuntimeError& error) {
        baglantidurumu = 0;
        const QString text =
            metin(u"MSG_DB_ACILAMADI"_s) + u'\n' + veritabaniyolu() + u"\n\n" + error.description();
        mesaj(text, MessageBoxStyle::critical, metin(u"HATA"_s));
    }
}

void baglantikapat() {
    if (baglanti().isOpen())
        baglanti().close();
    baglantidurumu = 0;
}

void baglantikapatsessiz() {
    attempt([] { baglantikapat(); });
}

void baglantidurumuyenile() {
    if (!baglanti().isOpen())
        baglantidurumu = 0;
}

bool baglantihazir() {
    const auto ready = [] { return baglantidurumu == 1 && baglanti().isOpen(); };
    baglantidurumuyenile();
    if (!ready())
        baglantiac();
    return ready();
}

ReadEnd readToEnd(const std::function<void()>& read) {
    if (!attempt(read))
        return ReadEnd::whole;
    if (baglanti().isLost() && isOnServer() && baglantihazir() && !attempt(read))
        return ReadEnd::whole;
    return brokenOff();
}

ReadEnd readReport(const std::function<void()>& read) {
    return baglantihazir() ? readToEnd(read) : brokenOff();
}

void kayitkapat() {
    if (kayit().isOpen())
        kayit().close();
}

void storeTogether(const std::function<void()>& statements) {
    restWhenIdle();  // behind a failure too
    Press press(baglanti());
    statements();
    press.finish();
}

void restWhenIdle() {
    // Behind the repaint: nobody waits for these barriers then.
    constexpr std::chrono::milliseconds behindThePaint{20};
    QTimer::singleShot(behindThePaint, QCoreApplication::instance(), [] {
        // A reader in the way: the next press moves it.
        if (baglanti().isOpen())
            attempt([] { baglanti().idle(); });
    });
}

bool veritabanivarmi() {
    baglantiyukle();
    return fileExists(veritabaniyolu()) && baglantimetni.trimmed().size() >= 5;
}

bool veritabaninibagla() {
    if (!veritabanivarmi())
        return false;
    baglantiac();
    return baglantidurumu == 1;
}

void keepAccessPaths(Connection& connection) {
    connection.keepIndex(u"urunler"_s, u"barkod"_s);
    connection.keepIndex(u"satislar"_s, u"tarih"_s);
}

}  // namespace kovanix
