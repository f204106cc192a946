#include <QTest>
#include <map>
#include <memory>

#include "database/recordset.h"
#include "database/rowset.h"
#include "database/rowwalk.h"
#include "databasefile.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct StatementsRow {
    QStringList before;  ///< statements
    QString select = u"select * from urunler"_s;
    bool empty = false;  ///< whether the select gives no rows
    QString filter = {};
};

const QStringList statements{
    u"CREATE TABLE urunler (no COUNTER, barkod TEXT(50), urun TEXT(50), alis DOUBLE, satis DOUBLE, stok DOUBLE)"_s,
    u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, barkod TEXT(50), adet DOUBLE)"_s,
    u"CREATE TABLE notlar (metin TEXT(20), sayi DOUBLE)"_s,
    u"INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES ('869', 'Ekmek', 7.25, 10, 40)"_s,
    u"INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES ('870', 'ekmek', 7, 10.5, NULL)"_s,
    u"INSERT INTO urunler (barkod, urun, alis, satis, stok) VALUES ('A1b', 'Işıl %50 _[x]', 0.1, 0.3, -2)"_s,
    u"INSERT INTO urunler (barkod, urun, alis, satis) VALUES ('', 'ışıl\\yol', 1e-3, 12345678.91)"_s,
    u"INSERT INTO urunler (urun) VALUES ('O''Neil')"_s,
    u"INSERT INTO satislar (tarih, barkod, adet) VALUES (#5/3/2021 07:05:09#, '869', 2)"_s,
    u"INSERT INTO satislar (tarih, barkod, adet) VALUES (#5/4/2021#, 'A1B', 0.25)"_s,
    u"INSERT INTO satislar (tarih, barkod, adet) VALUES (NULL, '870', 1)"_s,
    u"INSERT INTO notlar VALUES ('z', 1)"_s,
    u"INSERT INTO notlar VALUES ('a', 2)"_s,
    u"UPDATE notlar SET metin = 'y' WHERE sayi = 1"_s,
    u"CREATE TABLE raflar (no COUNTER, ad TEXT(20), acik BOOLEAN, sayi DOUBLE)"_s,
    u"INSERT INTO raflar (ad, acik, sayi) VALUES ('1', 1, 1)"_s,
    u"INSERT INTO raflar (ad, acik, sayi) VALUES ('b', 0, 0)"_s,
    u"INSERT INTO raflar (ad, acik, sayi) VALUES ('c', 0, -2.5)"_s,
    u"INSERT INTO raflar (ad, acik, sayi) VALUES ('d', 1, NULL)"_s,
    u"INSERT INTO raflar (ad) VALUES ('e')"_s,
};

QString cellText(const QVariant& value) {
    if (value.isNull())
        return u"null"_s;
    const QString type = QString::fromLatin1(value.typeName());
    return type + u':' +
           (value.typeId() == QMetaType::Double ? QString::number(value.toDouble(), 'g', 17)
                                                : value.toString());
}

QString kindOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const DatabaseError& error) {
        return u"failed, kind "_s + QString::number(static_cast<int>(error.kind()));
    }
    return u"done"_s;
}

/// All that a select gives, each way that it can be read.
QStringList readAll(Connection& connection, const StatementsRow& row) {
    QStringList found;
    found << u"recordset: "_s + kindOf([&] {
                 Recordset set;
                 set.open(row.select, connection);
                 if (!row.filter.isEmpty())
                     set.setFilter(row.filter);
                 found << QString::number(set.recordCount());
                 QStringList names;
                 for (const QString& name : set.fieldNames())
                     names << name.toLower();
                 found << names.join(u',');
                 for (; !set.atEnd(); set.moveNext()) {
                     QStringList cells;
                     for (const QString& name : names)
                         cells << cellText(set.field(name));
                     found << cells.join(u'|');
                 }
             });
    if (!row.filter.isEmpty())
        return found;
    found << u"rows: "_s + kindOf([&] {
                 RowSet set;
                 set.read(connection, row.select);
                 for (qsizetype place = 0; place < set.recordCount(); ++place) {
                     QStringList cells;
                     for (int field = 0; field < set.fieldCount(); ++field)
                         cells << set.text(place, field);
                     found << cells.join(u'|');
                 }
             });
    found << u"walk: "_s + kindOf([&] {
                 RowWalk(connection, row.select).forEach([&](const RowWalk::Row& each) {
                     found << cellText(each.value(0));
                 });
             });
    return found;
}

}  // namespace

Q_DECLARE_METATYPE(StatementsRow)

/// The same statements on every engine: what one says all say.
class TestEngines : public QObject {
    Q_OBJECT

    struct Shop {
        std::unique_ptr<DatabaseFile> file;
        Connection connection;

        void open(const QString& password) {
            file = std::make_unique<DatabaseFile>(password);
            connection.open(file->connectionString());
            for (const QString& sql : statements)
                connection.execute(sql);
        }
    };

private Q_SLOTS:
    void initTestCase();
    void sayTheSame_data();
    void sayTheSame();
    void sayTheSameOfTruth_data();
    void sayTheSameOfTruth() { sayTheSame(); }
    void hideTheirOwnIdentity();

private:
    QStringList answer(const QString& password, const StatementsRow& row);
    QStringList m_passwords{u""_s, u"gizli"_s};
    std::map<QString, Shop> m_shops;
};

void TestEngines::initTestCase() {
    if (ServerCluster::missing().isEmpty())
        m_passwords << DatabaseFile::onServer();
}

QStringList TestEngines::answer(const QString& password, const StatementsRow& row) {
    // What only reads may find the shop of the row before.
    Shop fresh;
    Shop& shop = row.before.isEmpty() ? m_shops[password] : fresh;
    if (!shop.file)
        shop.open(password);
    QStringList answer;
    for (const QString& sql : row.before)
        answer << kindOf([&] { shop.connection.execute(sql); });
    answer << readAll(shop.connection, row);
    return answer;
}

void TestEngines::sayTheSame_data() {
    const auto select = [](const QString& sql) { return StatementsRow{{}, sql}; };
    const auto where = [](const QString& condition) {
        return StatementsRow{{}, u"select * from urunler where "_s + condition};
    };
    const auto none = [](const QString& condition) {
        return StatementsRow{{}, u"select * from urunler where "_s + condition, true};
    };
    const auto filter = [](const QString& text) {
        return StatementsRow{{}, u"select * from urunler"_s, false, text};
    };
    const auto nothing = [](const QString& text) {
        return StatementsRow{{}, u"select * from urunler"_s, true, text};
    };
    const auto change = [](const QString& sql) { return StatementsRow{{sql}}; };
    const auto refused = [](const QString& sql) {
        return StatementsRow{{sql}, u"select * from yok"_s, true};
    };
    addRows<StatementsRow>(
        {{"all", select(u" select * from urunler"_s)},
         {"names in another case", select(u"SELECT URUN, [Barkod] FROM [Urunler]"_s)},
         {"without a counter, in order of entry", select(u"select * from notlar"_s)},
         {"without a counter, some", select(u"select metin from notlar where sayi > 0"_s)},
         {"a counter in a list", select(u"select urun, no from urunler"_s)},
         {"an order", select(u"select urun from urunler order by urun, no"_s)},
         {"an order downwards", select(u"select stok from urunler order by stok desc, no"_s)},
         {"an order with a limit", select(u"select urun from urunler order by satis limit 2"_s)},
         {"sums", select(u"select sum(alis) as a, count(*) as n, max(urun) as u from urunler"_s)},
         {"a sum of nothing", select(u"select sum(stok) as s from urunler where no > 99"_s)},
         {"sums of a time",
          select(
              u"select sum(adet) as adet from satislar where tarih between #5/3/2021 00:00:00# and #5/3/2021 23:59:59#"_s)},
         {"a time", select(u"select * from satislar where tarih >= #5/4/2021#"_s)},
         {"a moment's text", select(u"select tarih from satislar"_s)},
         {"a condition over two tables",
          select(u"select urun from urunler where barkod in (select barkod from satislar)"_s)},
         {"two tables",
          select(
              u"select u.urun, s.adet from urunler u, satislar s where u.barkod = s.barkod order by s.no"_s)},
         {"an expression", select(u"select alis * 2 + 1 as x, no from urunler"_s)},
         {"a choice",
          select(
              u"select case when stok > 1 then 2.5 else 0.25 end as stok, case stok when 1 then 'bir' else 'öbür' end as ad from urunler"_s)},
         {"IIF", select(u"select IIF(stok IS NULL, 0.0, stok) as stok from urunler"_s)},

         {"a barcode", where(u"barkod='869'"_s)},
         {"a barcode in another case", where(u"barkod='a1B'"_s)},
         {"no barcode", where(u"barkod=''"_s)},
         {"a barcode that isn't there", none(u"barkod='yok'"_s)},
         {"a name in another case", where(u"urun='EKMEK'"_s)},
         {"Turkish letters keep their case", none(u"urun='IŞIL %50 _[X]'"_s)},
         {"a text is longer than its column", none(u"barkod='%1'"_s.arg(QString(300, u'9')))},
         {"a quote", where(u"urun='O''Neil'"_s)},
         {"a backslash", where(u"urun='ışıl\\yol'"_s)},
         {"a text less than another", where(u"urun < 'F'"_s)},
         {"null", where(u"barkod IS NULL"_s)},
         {"a number as text", where(u"barkod = 869"_s)},
         {"a counter as text", where(u"no='2'"_s)},
         {"a counter as text with a point", where(u"no='2.0'"_s)},
         {"a counter as another text", none(u"no='abc'"_s)},
         {"a counter as no text", none(u"no=''"_s)},
         {"a fraction for a counter", none(u"no='2.5'"_s)},
         {"a number as text in an amount", where(u"alis='7.25'"_s)},
         {"an amount with a comma", none(u"alis='7,25'"_s)},
         {"a range of amounts", where(u"alis between 1 and '7.25'"_s)},
         {"a list", where(u"no in ('1', 3, 'x')"_s)},
         {"not", where(u"not barkod = '869'"_s)},

         {"a pattern", where(u"urun like '%K%'"_s)},
         {"a pattern with one sign", where(u"urun like 'ekme_'"_s)},
         {"a pattern with a percent sign", where(u"urun like '%[%]50%'"_s)},
         {"a pattern with an underscore", where(u"urun like '%[_]%'"_s)},
         {"a pattern with a bracket", where(u"urun like '%[[]x]'"_s)},
         {"a pattern with a backslash", where(u"urun like '%\\%'"_s)},
         {"a pattern with a Turkish letter", none(u"urun like 'İŞ%'"_s)},
         {"a pattern over moments", select(u"select * from satislar where tarih like '2021-05-04%'"_s)},

         {"a filter", filter(u"urun = 'EKMEK'"_s)},
         {"a filter with a pattern", filter(u"urun like 'e%'"_s)},
         {"a filter of a number", filter(u"stok = '-2'"_s)},
         {"a filter of a fraction over a counter", nothing(u"no = '2.5'"_s)},
         {"a filter of a pattern over a number", filter(u"alis like '7%'"_s)},
         {"a filter of an unknown field", nothing(u"yok = '1'"_s)},

         {"stock",
          change(u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - 2.5 WHERE barkod='870'"_s)},
         {"stock of a barcode that isn't there",
          change(u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - 1 WHERE barkod='yok'"_s)},
         {"a number by choice",
          change(
              u"UPDATE urunler SET stok = CASE WHEN stok > 0 THEN 2.5 ELSE 0.25 END WHERE barkod='870'"_s)},
         {"a whole number in an amount", change(u"UPDATE urunler SET alis = 3"_s)},
         {"a text in an amount", change(u"UPDATE urunler SET alis = '3.5' WHERE no = 1"_s)},
         {"a number in a text", change(u"UPDATE urunler SET urun = 35 WHERE no = 1"_s)},
         {"an empty text", change(u"UPDATE urunler SET urun = ''"_s)},
         {"null in all", change(u"UPDATE urunler SET urun = NULL, alis = NULL"_s)},
         {"a long text", change(u"UPDATE urunler SET urun = '%1' WHERE no = 1"_s.arg(QString(300, u'ş')))},
         {"signs outside the first plane", change(u"UPDATE urunler SET urun = '🍞' WHERE no = 1"_s)},
         {"an insert without columns behind one that was added",
          {{u"ALTER TABLE notlar ADD COLUMN tarih DATETIME"_s,
            u"INSERT INTO notlar VALUES ('b', 3, #5/3/2021#)"_s, u"INSERT INTO notlar VALUES ('b', 3)"_s},
           u"select * from notlar"_s}},
         {"a deletion", change(u"DELETE FROM urunler WHERE no > 2"_s)},
         {"an insert with a number of its own",
          change(u"INSERT INTO urunler (no, urun) VALUES (70, 'yeni')"_s)},
         {"an insert of one column", change(u"INSERT INTO urunler (urun) VALUES ('yeni')"_s)},
         {"an insert from a select",
          change(u"INSERT INTO urunler (urun) SELECT urun FROM urunler WHERE no = 1"_s)},
         {"a changed row stays in its place", change(u"UPDATE urunler SET urun = 'a' WHERE no = 2"_s)},
         {"a column more",
          {{u"ALTER TABLE [urunler] ADD COLUMN [Raf] TEXT(30)"_s,
            u"UPDATE urunler SET raf = 'A' WHERE no = 2"_s}}},
         {"a counter for a table without",
          {{u"ALTER TABLE [notlar] ADD COLUMN [no] COUNTER"_s,
            u"INSERT INTO notlar (metin) VALUES ('yeni')"_s},
           u"select * from notlar"_s}},
         {"a number taken twice", refused(u"INSERT INTO urunler (no) VALUES (1)"_s)},
         {"an insert into no table", refused(u"INSERT INTO yok VALUES (1)"_s)},
         {"an insert into no column", refused(u"INSERT INTO urunler (yok) VALUES (1)"_s)},
         {"a change of no column", refused(u"UPDATE urunler SET yok = 1"_s)},
         {"no statement", refused(u"urunler"_s)},
         {"two statements", refused(u"DELETE FROM urunler; DELETE FROM notlar"_s)},
         {"a table that is there", refused(u"CREATE TABLE urunler (no COUNTER)"_s)},
         {"a column that is there", refused(u"ALTER TABLE urunler ADD COLUMN [URUN] TEXT(50)"_s)},
         {"a second counter", refused(u"ALTER TABLE urunler ADD COLUMN sira COUNTER"_s)},
         {"a date that is none", refused(u"DELETE FROM satislar WHERE tarih = #2/30/2021#"_s)}});
}

void TestEngines::sayTheSame() {
    QFETCH(const StatementsRow, row);
    const QStringList wanted = answer(m_passwords.first(), row);
    // What holds of all of them may hold because nothing was read.
    const QString& first = wanted[row.before.size()];
    QCOMPARE(first == u"0"_s || first.startsWith(u"recordset: failed"_s), row.empty);
    for (const QString& password : m_passwords.mid(1)) {
        const QStringList answered = answer(password, row);
        QVERIFY2(answered == wanted,
                 qPrintable((password == DatabaseFile::onServer() ? u"server:\n"_s : u"password:\n"_s) +
                            answered.join(u'\n') + u"\n--- plain:\n" + wanted.join(u'\n')));
    }
}

/// Columns of yes or no: one that a server keeps as such, and one of numbers.
void TestEngines::sayTheSameOfTruth_data() {
    QTest::addColumn<StatementsRow>("row");
    const auto add = [](const QString& name, const StatementsRow& row) {
        QTest::newRow(qPrintable(name)) << row;
    };
    for (const QString& column : {u"acik"_s, u"sayi"_s}) {
        const auto where = [&](const QString& condition, bool empty = false) {
            const QString text = QString(condition).replace(u'@', column);
            add(column + u": "_s + text, {{}, u"select ad, no from raflar where "_s + text, empty});
        };
        for (const QString& condition : {u"@"_s,
                                         u"not @"_s,
                                         u"(@)"_s,
                                         u"not (@)"_s,
                                         u"not not @"_s,
                                         u"((@)) and 1"_s,
                                         u"raflar.@"_s,
                                         u"[@] and not [ad]='b'"_s,
                                         u"ad <> 'b' and @"_s,
                                         u"@ or ad = 'b'"_s,
                                         u"(ad = 'b' or @) and (@ or @)"_s,
                                         u"no between 1 and 3 and @"_s,
                                         u"no between @ and 2"_s,
                                         u"@ = 1"_s,
                                         u"@ == 1"_s,
                                         u"@ = 1.0"_s,
                                         u"@ = '1'"_s,
                                         u"'1' = @"_s,
                                         u"@ = True"_s,
                                         u"true = @"_s,
                                         u"@ = 0"_s,
                                         u"@ = false"_s,
                                         u"@ <> 0"_s,
                                         u"@ != 1"_s,
                                         u"@ > 0"_s,
                                         u"not @ = 1"_s,
                                         u"(@) = 1"_s,
                                         u"@ in (1, '0')"_s,
                                         u"@ in (True)"_s,
                                         u"@ between '1' and 2"_s,
                                         u"@ is null"_s,
                                         u"@ is not null"_s,
                                         u"@ is true"_s,
                                         u"@ is not true"_s,
                                         u"@ is false"_s,
                                         u"(@) is not false"_s,
                                         u"@ + 1 = 2"_s,
                                         u"IIF(@, 1, 0) = 0"_s,
                                         u"IIF(@ and 1, 1, 0) = 1"_s,

                                         u"exists (select no from urunler where @)"_s,
                                         u"@ = acik"_s,
                                         u"case when @ then 1 else 0 end = 1"_s,
                                         u"@ order by @, no"_s,
                                         u"1 order by @ desc, ad"_s})
            where(condition);
        for (const QString& condition : {u"@ = 2"_s, u"@ = -1"_s, u"@ = 0.5"_s, u"@ = 'True'"_s, u"@ = ''"_s,
                                         u"@ and not @"_s, u"0"_s, u"@ and 0"_s})
            where(condition, true);
        const auto select = [&](const QString& sql) {
            const QString text = QString(sql).replace(u"@"_s, column);
            add(text, {{}, text});
        };
        select(u"select @ from raflar"_s);
        select(u"select @ as y, ad from raflar where @"_s);
        select(u"select distinct @ from raflar order by @"_s);
        select(u"select count(*) as n from raflar where @"_s);
        select(u"select count(*) as n from raflar where @ = True"_s);
        select(u"select sum(@) as n from raflar where not @"_s);
        select(u"select max(@) as n from raflar"_s);
        select(u"select @, count(*) as n from raflar where no < 5 group by @ order by @"_s);
        select(u"select count(*) as n from raflar where @ group by ad having count(*) = 1 order by ad"_s);
        const auto filter = [&](const QString& value, bool empty) {
            const QString text = column + u" = '"_s + value + u'\'';
            add(u"a filter, "_s + text, {{}, u"select * from raflar"_s, empty, text});
        };
        filter(u"1"_s, false);
        filter(u"0"_s, false);
        filter(u"2"_s, true);
        filter(u"0.5"_s, true);
        const auto change = [&](const QString& sql) {
            const QString text = QString(sql).replace(u"@"_s, column);
            add(text, {{text}, u"select * from raflar"_s});
        };
        for (const QString& value :
             {u"1"_s, u"0"_s, u"'1'"_s, u"True"_s, u"False"_s, u"NULL"_s, u"not @"_s, u"IIF(@, 0, 1)"_s,
              u"1 - acik"_s, u"acik"_s, u"ad = 'b'"_s, u"no in (1, 2)"_s})
            change(u"UPDATE raflar SET @ = %1, ad = 'z' WHERE no < 5"_s.arg(value));
        change(u"UPDATE raflar SET ad = 'z' WHERE @"_s);
        change(u"UPDATE raflar SET ad = 'z' WHERE not @ and no > 1"_s);
        change(u"UPDATE raflar SET ad = 'z' WHERE @ = 1"_s);
        change(u"DELETE FROM raflar WHERE @"_s);
        change(u"DELETE FROM raflar WHERE @ = '0'"_s);
        for (const QString& value : {u"1"_s, u"'0'"_s, u"True"_s, u"NULL"_s})
            change(u"INSERT INTO raflar (ad, @) VALUES ('f', %1)"_s.arg(value));
        change(u"INSERT INTO raflar (ad, @) SELECT ad, @ FROM raflar WHERE @"_s);
    }
    add(u"a text against True"_s, {{}, u"select * from raflar where ad = True"_s});
}

void TestEngines::hideTheirOwnIdentity() {
    for (const QString& password : m_passwords) {
        const DatabaseFile file(password);
        Connection connection;
        connection.open(file.connectionString());
        connection.execute(u"CREATE TABLE notlar (metin TEXT(20))"_s);
        QCOMPARE(connection.shape(u"NOTLAR"_s).columns.size(), 1);
        connection.execute(u"ALTER TABLE notlar ADD COLUMN sayi DOUBLE"_s);
        connection.execute(u"INSERT INTO notlar VALUES ('a', 1)"_s);
        Recordset set;
        set.open(u"select * from notlar"_s, connection);
        QCOMPARE(set.fieldNames(), (QStringList{u"metin"_s, u"sayi"_s}));
        set.setField(u"metin"_s, u"b"_s);
        set.update();
        set.addNew();
        set.setField(u"sayi"_s, 2);
        set.update();
        set.moveFirst();
        QCOMPARE(set.field(u"metin"_s), u"b"_s);
        set.moveNext();
        set.deleteCurrent();
        QCOMPARE(file.rows(u"SELECT metin FROM notlar"_s), QStringList{u"b"_s});
    }
}

QTEST_GUILESS_MAIN(TestEngines)
#include "test_engines.moc"
