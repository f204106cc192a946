// What becomes of a cell on its way to a server, and the rows in which cells go over.

#include <QTest>
#include <cmath>
#include <limits>

#include "tasi/copyrows.h"
#include "tasi/settle.h"

using namespace kovanix::tasi;
using namespace std::string_view_literals;
using kovanix::engine::Cell;
using Type = Cell::Type;

namespace {

Cell whole(qint64 value) {
    return {.type = Type::whole, .whole = value, .bytes = {}};
}

Cell real(double value) {
    return {.type = Type::real, .real = value, .bytes = {}};
}

Cell text(std::string_view value) {
    return {.type = Type::text, .bytes = value};
}

Cell bytes(std::string_view value) {
    return {.type = Type::bytes, .bytes = value};
}

bool isSame(const Cell& one, const Cell& other) {
    return one.type == other.type && one.whole == other.whole && one.bytes == other.bytes &&
           (one.real == other.real || (std::isnan(one.real) && std::isnan(other.real))) &&
           std::signbit(one.real) == std::signbit(other.real);
}

struct SettleRow {
    const char* name;
    Form form;
    Cell before;
    Cell after;
    Odd odd;
};

constexpr qint64 beyondDoubles = (qint64{1} << 53) + 1;

const QList<SettleRow>& settleRows() {
    static const QList<SettleRow> rows{
        {"number", Form::number, real(12.5), real(12.5), Odd::none},
        {"number: null", Form::number, {}, {}, Odd::none},
        {"number: whole", Form::number, whole(7), real(7), Odd::none},
        {"number: 2^53", Form::number, whole(beyondDoubles - 1), real(9007199254740992.0), Odd::none},
        {"number: 2^53 + 1", Form::number, whole(beyondDoubles), real(9007199254740992.0), Odd::roundedWhole},
        {"number: the largest whole", Form::number, whole(std::numeric_limits<qint64>::max()),
         real(9223372036854775808.0), Odd::roundedWhole},
        {"number: the smallest whole", Form::number, whole(std::numeric_limits<qint64>::min()),
         real(-9223372036854775808.0), Odd::none},
        {"number: a text with a comma", Form::number, text("1,5"), real(1.5), Odd::textAsNumber},
        {"number: groups and a comma", Form::number, text("1.234,56"), real(1234.56), Odd::textAsNumber},
        {"number: groups and a dot", Form::number, text("1,234.56"), real(1234.56), Odd::textAsNumber},
        {"number: no number", Form::number, text("12a"), real(0), Odd::textAsZero},
        {"number: blanks", Form::number, text("  "), real(0), Odd::textAsZero},
        {"number: a sign alone", Form::number, text("-"), real(0), Odd::textAsZero},
        {"number: bytes of no number", Form::number, bytes("\xFF\0"sv), real(0), Odd::textAsZero},
        {"number: too small for a double", Form::number, text("1e-999"), real(0), Odd::textAsZero},
        {"number: a zero", Form::number, text("0"), real(0), Odd::textAsNumber},
        {"number: a zero with a fraction", Form::number, text(" 0,00 "), real(0), Odd::textAsNumber},
        {"number: nothing but NUL", Form::number, text("\0"sv), real(0), Odd::textAsNumber},
        {"number: an empty text", Form::number, text(""), real(0), Odd::textAsNumber},
        {"number: bytes", Form::number, bytes("2,5"), real(2.5), Odd::textAsNumber},
        {"text", Form::text, text("İğne, \"Şiş\" \\N\t\r\n'"), text("İğne, \"Şiş\" \\N\t\r\n'"), Odd::none},
        {"text: null", Form::text, {}, {}, Odd::none},
        {"text: empty", Form::text, text(""), text(""), Odd::none},
        {"text: four bytes", Form::text, text("\U0001F35E ekmek"), text("\U0001F35E ekmek"), Odd::none},
        {"text: the old code page", Form::text,
         text("\xDE"
              "i\xFE"
              "e \xFD\xF0"),
         text("Şişe ığ"), Odd::notUtf8},
        {"text: the old code page behind eight letters", Form::text, text("abcdefgh\xFE"), text("abcdefghş"),
         Odd::notUtf8},
        {"text: half a character at the end", Form::text, text("abc\xC5"), text("abcÅ"), Odd::notUtf8},
        {"text: a surrogate", Form::text, text("\xED\xA0\x80"), text("í\u00A0€"), Odd::notUtf8},
        {"text: NUL", Form::text, text("a\0b"sv), text("ab"), Odd::nulDropped},
        {"text: NUL among the first eight", Form::text, text("\0abcdefghij"sv), text("abcdefghij"),
         Odd::nulDropped},
        {"text: nothing but NUL", Form::text, text("\0\0"sv), text(""), Odd::nulDropped},
        {"text: NUL in the old code page", Form::text, text("\xFE\0"sv), text("ş"), Odd::notUtf8},
        {"text: whole", Form::text, whole(-3), text("-3"), Odd::numberAsText},
        {"text: real", Form::text, real(0.1), text("0.1"), Odd::numberAsText},
        {"text: bytes", Form::text, bytes("abc"), text("abc"), Odd::bytesAsText},
        {"text: bytes of no text", Form::text, bytes("\xFF\0"sv), text("ÿ"), Odd::bytesAsText},
        {"moment", Form::moment, text("2026-02-28 23:59:59"), text("2026-02-28 23:59:59"), Odd::none},
        {"moment: null", Form::moment, {}, {}, Odd::none},
        {"moment: a day alone", Form::moment, text("2026-05-03"), text("2026-05-03 00:00:00"),
         Odd::momentRewritten},
        {"moment: a T and a fraction", Form::moment, text("2026-05-03T07:05:09.250"),
         text("2026-05-03 07:05:09"), Odd::momentRewritten},
        {"moment: no seconds", Form::moment, text("2026-05-03 7:05"), text("2026-05-03 07:05:00"),
         Odd::momentRewritten},
        {"moment: the day first", Form::moment, text("3.5.2026 7:05:09"), text("2026-05-03 07:05:09"),
         Odd::momentRewritten},
        {"moment: month or day", Form::moment, text("3/5/2026"), text("3/5/2026"), Odd::momentKept},
        {"moment: no such day", Form::moment, text("2026-02-30 10:00:00"), text("2026-02-30 10:00:00"),
         Odd::momentKept},
        {"moment: no such hour", Form::moment, text("2026-02-20 24:00:00"), text("2026-02-20 24:00:00"),
         Odd::momentKept},
        {"moment: a letter for a digit", Form::moment, text("2026-02-2O 10:00:00"),
         text("2026-02-2O 10:00:00"), Odd::momentKept},
        {"moment: a zone", Form::moment, text("2026-05-03T07:05:09Z"), text("2026-05-03T07:05:09Z"),
         Odd::momentKept},
        {"moment: a number", Form::moment, whole(44319), text("44319"), Odd::momentKept},
        {"moment: empty", Form::moment, text(""), text(""), Odd::momentKept},
        {"whole", Form::whole, whole(beyondDoubles), whole(beyondDoubles), Odd::none},
        {"bytes", Form::bytes, bytes("\xFF\0"sv), bytes("\xFF\0"sv), Odd::none},
    };
    return rows;
}

struct CopyCell {
    const char* name;
    Form form;
    Cell cell;
    std::string_view wire;  ///< the row's bytes behind its count of cells
};

const QList<CopyCell>& copyCells() {
    static const QList<CopyCell> cells{
        {"null", Form::text, {}, "\377\377\377\377"sv},
        {"text", Form::text, text("a\tb"), "\0\0\0\3a\tb"sv},
        {"empty text", Form::text, text(""), "\0\0\0\0"sv},
        {"whole", Form::whole, whole(-2), "\0\0\0\10\377\377\377\377\377\377\377\376"sv},
        {"real", Form::number, real(-0.5), "\0\0\0\10\277\340\0\0\0\0\0\0"sv},
        {"negative zero", Form::number, real(-0.0), "\0\0\0\10\200\0\0\0\0\0\0\0"sv},
        {"no number", Form::number, real(std::numeric_limits<double>::quiet_NaN()),
         "\0\0\0\10\177\370\0\0\0\0\0\0"sv},
        {"bytes", Form::bytes, bytes("\0\377"sv), "\0\0\0\2\0\377"sv},
    };
    return cells;
}

struct BadRow {
    const char* name;
    std::string_view row;
};

}  // namespace

Q_DECLARE_METATYPE(SettleRow)
Q_DECLARE_METATYPE(CopyCell)
Q_DECLARE_METATYPE(BadRow)

class TestTasiSettle : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void settles_data() {
        QTest::addColumn<SettleRow>("row");
        for (const SettleRow& row : settleRows())
            QTest::newRow(row.name) << row;
    }
    void settles() {
        QFETCH(SettleRow, row);
        std::string storage;
        const SettledCell settled = settle(row.before, row.form, storage);
        QCOMPARE(settled.odd, row.odd);
        QVERIFY2(isSame(settled.cell, row.after), std::string(settled.cell.bytes).c_str());
    }

    void everyOddityHasWords() {
        for (int odd = 1; odd <= static_cast<int>(Odd::notANumber); ++odd)
            QVERIFY(!oddWords(static_cast<Odd>(odd)).isEmpty());
    }

    void writesAndReadsRows_data() {
        QTest::addColumn<CopyCell>("row");
        for (const CopyCell& row : copyCells())
            QTest::newRow(row.name) << row;
    }
    void writesAndReadsRows() {
        QFETCH(CopyCell, row);
        CopyWriter writer;
        writer.beginRow(1);
        writer.add(row.cell);
        QCOMPARE(writer.bytes().substr(0, 2), "\0\1"sv);
        QCOMPARE(writer.bytes().substr(2), row.wire);
        std::vector<Cell> cells;
        QVERIFY(readCopyRow(writer.bytes(), {row.form}, cells));
        QCOMPARE(cells.size(), std::size_t{1});
        QVERIFY(isSame(cells.front(), row.cell));
    }

    void refusesBrokenRows_data() {
        QTest::addColumn<BadRow>("row");
        const QList<BadRow> rows{{"empty", ""sv},
                                 {"another count", "\0\2\0\0\0\1a"sv},
                                 {"no size", "\0\1\0\0"sv},
                                 {"too short", "\0\1\0\0\0\2a"sv},
                                 {"too long", "\0\1\0\0\0\1ab"sv}};
        for (const BadRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void refusesBrokenRows() {
        QFETCH(BadRow, row);
        std::vector<Cell> cells(3);
        QVERIFY(!readCopyRow(row.row, {Form::text}, cells));
        QVERIFY(cells.empty());
    }

    void knowsItsHeader() {
        const std::string header = std::string(copyHeader()) + "rest";
        std::string_view bytes = header;
        QVERIFY(dropCopyHeader(bytes));
        QCOMPARE(bytes, "rest"sv);
        QVERIFY(!dropCopyHeader(bytes));
    }
};

QTEST_GUILESS_MAIN(TestTasiSettle)
#include "test_tasi_settle.moc"
