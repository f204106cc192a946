#include "database/cell.h"

#include <QDateTime>
#include <QTest>

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// A value of a driver or of a screen, and what becomes of it.
struct CellRow {
    QVariant value;
    QVariant given;
    QVariant stored;
};

}  // namespace

Q_DECLARE_METATYPE(CellRow)

class TestCell : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasOneFormForEachKindOfValue_data();
    void hasOneFormForEachKindOfValue();
};

void TestCell::hasOneFormForEachKindOfValue_data() {
    QTest::addColumn<CellRow>("row");
    const auto row = [](const char* name, const QVariant& value, const QVariant& given,
                        const QVariant& stored) {
        QTest::newRow(name) << CellRow{value, given, stored};
    };
    const auto same = [&row](const char* name, const QVariant& value, const QVariant& canonical) {
        row(name, value, canonical, canonical);
    };
    same("int", -5, qint64{-5});
    same("unsigned", 4000000000U, qint64{4000000000});
    same("short", QVariant::fromValue(short{7}), qint64{7});
    same("64 bits", qint64{1} << 60, qint64{1} << 60);
    same("bool", true, qint64{1});
    same("double", 0.1, 0.1);
    same("float", 0.5F, 0.5);
    same("text", u"ığ"_s, u"ığ"_s);
    same("empty text", u""_s, u""_s);
    row("text never set", QString(), QString(), u""_s);
    same("bytes", QByteArray("\0x", 2), QByteArray("\0x", 2));
    same("null", QVariant(), QVariant());
    same("null of a type", QVariant(QMetaType(QMetaType::LongLong)), QVariant());
    same("moment", QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9, 999)), u"2026-05-03 07:05:09"_s);
    same("day", QDate(2024, 2, 29), u"2024-02-29 00:00:00"_s);
    same("moment never set", QDateTime(), QVariant());
}

void TestCell::hasOneFormForEachKindOfValue() {
    QFETCH(const CellRow, row);
    QCOMPARE(given(row.value), row.given);
    QCOMPARE(given(row.value).typeId(), row.given.typeId());
    QCOMPARE(stored(row.value), row.stored);
    QCOMPARE(stored(row.value).typeId(), row.stored.typeId());
}

QTEST_GUILESS_MAIN(TestCell)
#include "test_cell.moc"
