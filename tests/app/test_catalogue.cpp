#include <QFile>
#include <QRegularExpression>
#include <QtTest>
#include <algorithm>

#include "app/modTurkce.h"
#include "app/textcatalogue.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const char* path) {
    QFile file(QString::fromUtf8(path));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no file %s", path);
    return file.readAll();
}

/// The texts as they stand beside this file: a line each, the key, a tabulator, the stored text.
QList<std::pair<QString, QString>> texts() {
    QList<std::pair<QString, QString>> found;
    for (const QString& line : QString::fromUtf8(contents(CATALOGUE_TEXTS)).split(u'\n', Qt::SkipEmptyParts))
        found.append({line.section(u'\t', 0, 0), line.section(u'\t', 1)});
    return found;
}

}  // namespace

class TestCatalogue : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void holds_data() {
        QTest::addColumn<std::pair<QString, QString>>("row");
        for (const auto& row : texts())
            QTest::newRow(qUtf8Printable(row.first)) << row;
    }
    void holds() {
        using Row = std::pair<QString, QString>;
        QFETCH(const Row, row);
        const auto& [key, stored] = row;
        const std::optional<QStringView> found = storedText(key);
        QVERIFY(found);
        QCOMPARE(found->toString(), stored);
        QCOMPARE(metin(key), harfcevir(stored));
        QCOMPARE(metin(key.toLower()), harfcevir(stored));
    }

    void holdsNothingElse() {
        QStringList wanted;
        for (const auto& [key, stored] : texts())
            wanted.append(key);
        QStringList keys;
        static const QRegularExpression entry(u"\\{u\"([^\"]+)\","_s);
        for (const auto& match : entry.globalMatch(QString::fromUtf8(contents(CATALOGUE_SOURCE))))
            keys.append(match.captured(1));
        wanted.sort();
        keys.sort();
        QCOMPARE(keys, wanted);
        QCOMPARE(keys.size(), 120);
    }

    void lacks_data() {
        QTest::addColumn<QString>("key");
        QTest::newRow("unknown key") << u"MSG_YOK_BOYLE"_s;
        QTest::newRow("unknown key in lower case") << u"msg_yok_boyle"_s;
        QTest::newRow("unknown key with a symbol") << u"MSG_YOK|BOYLE"_s;
        QTest::newRow("empty") << QString();
        QTest::newRow("key with a blank in front") << u" MSG_EKLENDI"_s;
        QTest::newRow("key with a blank behind") << u"MSG_EKLENDI "_s;
        QTest::newRow("beginning of a key") << u"MSG_EKLEND"_s;
        QTest::newRow("a stored text is no key") << u"Kullan|c| Ad|"_s;
    }
    void lacks() {
        QFETCH(const QString, key);
        QVERIFY(!storedText(key));
        QCOMPARE(metin(key), key);
    }
};

QTEST_APPLESS_MAIN(TestCatalogue)
#include "test_catalogue.moc"
