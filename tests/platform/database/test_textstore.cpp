#include "database/textstore.h"

#include <QTest>
#include <string_view>
#include <utility>

using namespace kovanix;

namespace {

struct ReplaceRow {
    qsizetype row;
    QByteArray text;
};

std::string_view viewOf(const QByteArray& text) {
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

}  // namespace

Q_DECLARE_METATYPE(ReplaceRow)

class TestTextStore : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void replacesTexts_data() {
        QTest::addColumn<ReplaceRow>("row");
        for (const qsizetype row : {0, 1, 2}) {
            for (const char* text : {"", "x", "on iki", "a text that is much longer than all of them"})
                QTest::addRow("%d: '%s'", static_cast<int>(row), text) << ReplaceRow{row, text};
        }
    }
    void replacesTexts() {
        QFETCH(const ReplaceRow, row);
        QByteArrayList texts{"bir", "", "on iki"};
        TextStore store;
        for (const QByteArray& text : std::as_const(texts))
            store.append(viewOf(text));
        store.finish();
        texts[row.row] = row.text;
        store.replace(static_cast<std::size_t>(row.row), viewOf(row.text));
        store.append("son");
        texts << "son";
        QByteArray bytes;
        for (std::size_t i = 0; i < store.count(); ++i) {
            const std::string_view text = store[i];
            QCOMPARE(QByteArray(text.data(), static_cast<qsizetype>(text.size())),
                     texts[static_cast<qsizetype>(i)]);
            bytes += texts[static_cast<qsizetype>(i)] + '\0';
        }
        QCOMPARE(store.count(), 4U);
        QCOMPARE(QByteArray(store.bytes().data(), static_cast<qsizetype>(store.bytes().size())), bytes);
    }
};

QTEST_GUILESS_MAIN(TestTextStore)
#include "test_textstore.moc"
