#include "widgets/fieldletters.h"

#include <QLineEdit>
#include <QTest>

#include "rows.h"
#include "widgets/activeresize.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int full = 20;

struct AmountRow {
    QString text;
    int width;
    bool shrinks;
    bool whole = true;
};

/// A field with right-aligned letters of 20 pixels.
struct Field : QLineEdit {
    explicit Field(QWidget* parent = nullptr) : QLineEdit(parent) {
        setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        QFont letters = font();
        letters.setPixelSize(full);
        setFont(letters);
        keepWhole(*this);
        resize(110, 46);
    }

    int size() const { return font().pixelSize(); }
    /// Whether the first letter is in sight while the caret stands behind the last.
    bool isWhole() {
        end(false);
        grab();
        return cursorPositionAt({0, height() / 2}) == 0;
    }
};

}  // namespace

class TestFieldLetters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void letters_data() {
        addRows<AmountRow>({{"nothing", {{}, 110, false}},
                            {"a small amount", {u"0,00"_s, 110, false}},
                            {"a million", {u"1.234.567,89"_s, 110, true}},
                            {"a million with room", {u"1.234.567,89"_s, 200, false}},
                            {"a billion", {u"1.234.567.890,12"_s, 130, true}},
                            {"no number any more", {u"123456789012345678901234567890"_s, 110, true, false}}});
    }
    void letters() {
        QFETCH(const AmountRow, row);
        Field field;
        field.resize(row.width, 46);
        field.setText(row.text);
        QCOMPARE(field.isWhole(), row.whole);
        QCOMPARE(field.size() < full, row.shrinks);
        QVERIFY(field.size() >= 11);
    }

    void noSmallerThanNeeded() {
        Field field;
        field.setText(u"1.234.567,89"_s);
        const int fitting = field.size();
        QLineEdit larger;
        larger.setAlignment(field.alignment());
        QFont font = field.font();
        font.setPixelSize(fitting + 2);  // by half of the first digit, which then counts as gone
        larger.setFont(font);
        larger.resize(field.QWidget::size());
        larger.setText(field.text());
        larger.end(false);
        larger.grab();
        QVERIFY(larger.cursorPositionAt({0, 23}) > 0);
    }

    void growBackWithTheRoomAndTheText() {
        Field field;
        field.show();
        field.setText(u"1.234.567,89"_s);
        QVERIFY(field.size() < full);
        field.resize(200, 46);
        QCOMPARE(field.size(), full);
        field.resize(110, 46);
        QVERIFY(field.size() < full);
        QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&field, Qt::Key_1);
        QCOMPARE(field.size(), full);
    }

    void followAFontThatIsSetLater() {
        Field field;
        field.setText(u"1.234.567,89"_s);
        QFont font = field.font();
        font.setPixelSize(30);
        field.setFont(font);
        QVERIFY(field.isWhole());
        field.setText(u"1"_s);
        QCOMPARE(field.size(), 30);
    }

    /// The container knows the size at the design's and sets what the display makes of it.
    void followTheContainer() {
        ActiveResize container;
        auto* field = new Field(&container);
        container.setDesignSize({400, 300});
        container.resize(400, 300);
        container.show();
        field->setText(u"1.234.567,89"_s);
        container.resize(800, 600);
        QVERIFY(field->isWhole());
        field->setText(u"1"_s);
        QCOMPARE(field->size(), 2 * full);
    }
};

QTEST_MAIN(TestFieldLetters)
#include "test_fieldletters.moc"
