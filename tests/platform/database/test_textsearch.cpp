#include <QTest>
#include <string>

#include "database/textsearch.h"

using namespace kovanix;

namespace {

struct Row {
    const char* text;
    const char* wanted;
};

}  // namespace

Q_DECLARE_METATYPE(Row)

/// The search over many texts at once, against the library's own.
class TestTextSearch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsWhatTheLibraryFinds_data() {
        QTest::addColumn<Row>("row");
        QTest::newRow("one letter") << Row{"beyaz peynir", "y"};
        QTest::newRow("a word") << Row{"beyaz peynir", "peynir"};
        QTest::newRow("nearly, then really") << Row{"sususus sut suto", "suto"};
        QTest::newRow("first and last letter alone") << Row{"aba aca ada", "ada"};
        QTest::newRow("the whole text") << Row{"kahve", "kahve"};
        QTest::newRow("longer than the text") << Row{"kah", "kahve"};
        QTest::newRow("bytes above 127") << Row{"s\xC3\xBCt \xC4\xB1\xC5\x9F", "\xC4\xB1"};
        QTest::newRow("none") << Row{"beyaz peynir", "zz"};
    }

    /// Wherever the text begins within a step of the search, and however much follows it.
    void findsWhatTheLibraryFinds() {
        QFETCH(Row, row);
        for (std::size_t before = 0; before < 40; ++before) {
            for (std::size_t behind = 0; behind < 40; behind += 3) {
                const std::string text =
                    std::string(before, '-') + row.text + std::string(behind, '\0') + row.text;
                for (std::size_t from = 0; from <= text.size(); ++from)
                    QCOMPARE(findText(text, row.wanted, from), text.find(row.wanted, from));
            }
        }
    }

    void findsALongText() {
        const std::string wanted = std::string(500, 'a') + 'b';
        const std::string text = std::string(100'000, 'a') + 'b';
        QCOMPARE(findText(text, wanted, 0), text.size() - wanted.size());
        QCOMPARE(findText(text, wanted, text.size() - 10), std::string::npos);
        QCOMPARE(findText(text, wanted, text.size()), std::string::npos);
    }
};

QTEST_GUILESS_MAIN(TestTextSearch)
#include "test_textsearch.moc"
