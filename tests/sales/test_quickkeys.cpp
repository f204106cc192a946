#include "sales/quickkeys.h"

#include <QTest>

#include "rows.h"

using namespace kovanix;

/// The names of the quick keys' settings and the texts that stand for a page or a key.
class QuickKeysTest : public QObject {
    Q_OBJECT

    struct PageRow {
        QString text;
        int page;
    };
    struct EditedRow {
        QString text;
        std::optional<int> slot, category;
    };
    struct WordsRow {
        QString edited;
        int page;
        QString name, words;
    };

private Q_SLOTS:
    void page_data() {
        addRows<PageRow>({{"1", {"1", 1}},
                          {"2", {"2", 2}},
                          {"3", {"3", 3}},
                          {"4", {"4", 4}},
                          {"a blank behind", {"2 ", 2}},
                          {"a blank ahead", {" 3", 3}},
                          {"decimals of nothing", {"4,00", 4}},
                          {"a leading zero", {"02", 2}},
                          {"missing", {"", 1}},
                          {"a letter", {"x", 1}},
                          {"a number and a letter", {"2x", 1}},
                          {"0", {"0", 1}},
                          {"5", {"5", 1}},
                          {"7", {"7", 1}},
                          {"between two pages", {"2,5", 1}},
                          {"negative", {"-2", 1}},
                          {"beyond every number", {"1e999", 1}}});
    }
    void page() {
        QFETCH(const PageRow, row);
        QCOMPARE(quickPage(row.text), row.page);
    }

    void settings() {
        QCOMPARE(quickPageKey(1), "hizliurunkat1");
        QCOMPARE(quickPageKey(4), "hizliurunkat4");
        QCOMPARE(quickNameKey(1, 0), "1hizliurun0");
        QCOMPARE(quickNameKey(4, 7), "4hizliurun7");
        QCOMPARE(quickBarcodeKey(1, 0), "1hizlibarkod0");
        QCOMPARE(quickBarcodeKey(4, 7), "4hizlibarkod7");
        QCOMPARE(lastQuickPageKey, "ensonkikisayol");
    }

    void edited_data() {
        addRows<EditedRow>({{"first key", {"0", 0, {}}},
                            {"last key", {"7", 7, {}}},
                            {"no ninth key", {"8", {}, {}}},
                            {"first page", {"11", {}, 1}},
                            {"second page", {"22", {}, 2}},
                            {"third page", {"33", {}, 3}},
                            {"last page", {"44", {}, 4}},
                            {"no fifth page", {"55", {}, {}}},
                            {"two digits that differ", {"12", {}, {}}},
                            {"nothing", {"", {}, {}}},
                            {"a blank behind: compared as text", {"3 ", {}, {}}},
                            {"a leading zero", {"03", {}, {}}},
                            {"a page with a blank", {" 11", {}, {}}}});
    }
    void edited() {
        QFETCH(const EditedRow, row);
        QCOMPARE(quickSlot(row.text), row.slot);
        QCOMPARE(quickCategory(row.text), row.category);
        if (row.category)
            QCOMPARE(editedCategory(*row.category), row.text);
    }

    void words_data() {
        addRows<WordsRow>(
            {{"a key", {"6", 1, "Fırın", "Fırın sayfası, 7. tuş"}},
             {"a key of a page without a name", {"0", 2, "", "2. sayfa, 1. tuş"}},
             {"a name of blanks is none", {"0", 2, "  ", "2. sayfa, 1. tuş"}},
             {"a page", {"11", 1, "Fırın", "Fırın sayfasının adı"}},
             {"a page without a name", {"44", 4, "", "4. sayfanın adı"}},
             {"a percent sign", {"3", 1, "%1 %n", "%1 %n sayfası, 4. tuş"}},
             {"a long name", {"7", 1, QString(60, u'A'), QString(27, u'A') + "… sayfası, 8. tuş"}},
             {"neither", {"9", 1, "Fırın", ""}}});
    }
    void words() {
        QFETCH(const WordsRow, row);
        QCOMPARE(quickKeyWords(row.edited, row.page, row.name), row.words);
    }
};

QTEST_GUILESS_MAIN(QuickKeysTest)

#include "test_quickkeys.moc"
