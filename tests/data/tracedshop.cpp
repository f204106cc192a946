#include "tracedshop.h"

#include <QFile>

#include "app/modTrace.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "desktop/folders.h"

namespace kovanix {

using namespace Qt::StringLiterals;

static_assert(!izkapali, "the steps of the check are read from the trace");

const QStringList allTables{u"urunler"_s, u"satislar"_s, u"kullanici"_s, u"musteri"_s, u"urunler_hazir"_s};
const QString checked = u"DB schema: kontrol tamam (satislar.satis OK)"_s;
const QString unchecked = u"DB schema UYARI: satislar.satis eklenemedi"_s;

namespace {

/// The engine's own spelling of a column type.
QString engineType(const QString& type) {
    if (type == u"COUNTER")
        return u"INTEGER PRIMARY KEY AUTOINCREMENT"_s;
    return type.startsWith(u"TEXT") ? QString(type + u" COLLATE NOCASE"_s) : type;
}

}  // namespace

QString created(const QString& table) {
    return u"DB schema: "_s + table + u" tablosu olusturuldu"_s;
}

QString added(const QString& table, const QString& column) {
    return u"DB schema: "_s + table + u'.' + column + u" eklendi"_s;
}

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

QString tableWithout(const QString& table, const QString& left) {
    QStringList definitions;
    for (const ColumnRow& row : allColumns) {
        if (text(row.table) == table && text(row.column) != left)
            definitions << text(row.column) + u' ' + engineType(text(row.type));
    }
    return u"CREATE TABLE "_s + table + u" ("_s + definitions.join(u", "_s) + u')';
}

TracedShop::TracedShop() {
    qputenv("TEMP", QFile::encodeName(m_temp.path()));
}

TracedShop::~TracedShop() {
    qunsetenv("TEMP");
}

void TracedShop::makeDatabase(const QString& password) {
    ShopFixture::makeDatabase(password);
    m_password = password;
}

void TracedShop::run(const QString& sql) {
    QVERIFY2(independent().run(sql), qPrintable(sql));
}

QStringList TracedShop::rows(const QString& sql) {
    // The older engine answers questions about columns from what it knows until it reads the catalogue.
    independent().rows(u"SELECT count(*) FROM sqlite_master"_s);
    return independent().rows(sql);
}

QStringList TracedShop::lines() const {
    QFile log(file(u"kovanix_trace.log"_s));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    QStringList texts;
    for (const QByteArray& line : log.readAll().split('\n')) {
        if (!line.isEmpty())
            texts << QString::fromUtf8(line.mid(21));
    }
    log.close();
    log.remove();
    return texts;
}

void TracedShop::makeTablesBut(const QString& left) {
    for (const QString& table : allTables) {
        if (table != left)
            run(tableWithout(table, QString()));
    }
}

void TracedShop::empty() {
    run(u"PRAGMA synchronous = OFF"_s);  // nothing here outlives the process
    for (const QString& entry : rows(u"SELECT type, name FROM sqlite_master WHERE type IN ('table', 'view') "
                                     u"AND name NOT LIKE 'sqlite_%'"_s))
        run(u"DROP %1 %2"_s.arg(entry.section(u'|', 0, 0), entry.section(u'|', 1)));
    lines();
}

bool TracedShop::check() {
    setApplicationFolder(folder());  // another shop may have been made since
    if (!m_checked.isOpen())
        m_checked.open(baglantiyazisi());
    semahazir = false;
    semakontrol(m_checked);
    return semahazir;
}

QStringList TracedShop::columnsOf(const QString& table) {
    QStringList names;
    for (const QString& row : rows(u"PRAGMA table_info("_s + table + u')'))
        names << row.section(u'|', 1, 1);
    return names;
}

QStringList TracedShop::definitionOf(const QString& name) {
    return rows(u"SELECT sql FROM sqlite_master WHERE name = '"_s + name + u"' COLLATE NOCASE"_s);
}

// Made when first needed: a file with a password gets its salt from whoever writes it first.
RawDatabase& TracedShop::independent() {
    if (!m_independent)
        m_independent = std::make_unique<RawDatabase>(databaseFile(), m_password);
    return *m_independent;
}

}  // namespace kovanix
