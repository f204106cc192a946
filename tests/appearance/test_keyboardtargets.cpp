// Where the on-screen keyboards' text goes.

#include "access/frmLogin.h"
#include "access/kullanicilar.h"
#include "access/sifresorur.h"
#include "appearance/keyboard.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "catalogue/liste.h"
#include "catalogue/urunler.h"
#include "desktop/focus.h"
#include "rows.h"
#include "salestest.h"

using namespace kovanix;

namespace {

enum class Board { full, pad };
constexpr auto full = Board::full;
constexpr auto pad = Board::pad;

struct CodeRow {
    Board board;
    QString code;
    QString written = {};  // screen and control
    QString label = {};
    bool starred = false;
};

struct StrangeRow {
    Board board;
    QString code;
};

struct TextRow {
    QString text;
};

template <class S>
void addTexts(QMap<QString, QString>& texts) {
    if (!loaded<S>())
        return;
    const S& shown = screen<S>();
    for (const auto* field : shown.template findChildren<QLineEdit*>())
        texts[shown.metaObject()->className() + QString("::") + field->objectName()] = field->text();
}

/// What stands in the text boxes of the screens that can be written to.
QMap<QString, QString> allTexts() {
    QMap<QString, QString> texts;
    addTexts<frmLogin>(texts);
    addTexts<kullanicilar>(texts);
    addTexts<sifresorur>(texts);
    addTexts<satisekrani>(texts);
    addTexts<liste>(texts);
    addTexts<urunler>(texts);
    return texts;
}

/// The boxes that hold something else than before; one that is new and empty doesn't count.
QStringList changes(const QMap<QString, QString>& before) {
    QStringList changed;
    const QMap<QString, QString> now = allTexts();
    for (auto text = now.begin(); text != now.end(); ++text) {
        if (text.value() != before.value(text.key()))
            changed.append(text.key().mid(QString("kovanix::").size()).replace("::", ".") + '=' +
                           text.value());
    }
    return changed;
}

}  // namespace

class KeyboardTargetsTest : public SalesTest {
    Q_OBJECT

    QPointer<KeyboardScreen> m_keyboard;

    KeyboardScreen& open(Board board, int code) {
        if (board == full)
            openKeyboard(code, m_shop->sales());
        else
            openNumberPad(code, m_shop->sales());
        m_keyboard = board == pad                    ? static_cast<KeyboardScreen*>(&screen<klavyesayi>())
                     : Monitors.front().width > 1024 ? static_cast<KeyboardScreen*>(&screen<klavyeyeni>())
                                                     : &screen<klavyeyeni2>();
        if (!QTest::qWaitFor([this] { return m_keyboard->isActiveWindow(); }))
            qFatal("the keyboard doesn't become active");
        return *m_keyboard;
    }
    KeyboardScreen& open(Board board, const QString& code) {
        open(board, 0);
        m_keyboard->ui.nereye->setText(code);
        return *m_keyboard;
    }
    void enter(Board board) { press(*key(board == full ? 100 : 39)); }
    QWidget* key(int index) const {
        return m_keyboard->findChild<QWidget*>("vkCommand1_" + QString::number(index));
    }
    bool isLoaded() const {
        const auto all = ScreenRegistry::all();
        return m_keyboard && std::find(all.begin(), all.end(), m_keyboard.data()) != all.end();
    }

private Q_SLOTS:
    void init() {
        SalesTest::init();
        monitorlerioku();
    }

    void aPasswordIsForNobodyElse() {
        KeyboardScreen& keyboard = open(full, 18);
        press(*key(8));
        open(full, 8);
        QCOMPARE(keyboard.ui.yazilan->text(), "1");
        open(full, 19);
        QCOMPARE(keyboard.ui.yazilan->text(), "");
        press(*key(8));
        open(full, 3);
        QCOMPARE(keyboard.ui.yazilan->text(), "1");
    }

    void everyCode_data() {
        addRows<CodeRow>({{"1", {full, "1", "frmLogin.sifre", "Şifre", true}},
                          {"2", {full, "2"}},
                          {"3", {full, "3", "urunler.urun2", "Ürün adı"}},
                          {"4", {full, "4"}},
                          {"5", {full, "5"}},
                          {"6", {full, "6"}},
                          {"7", {full, "7", "kullanicilar.personeladi", "Kullanıcı adı"}},
                          {"8", {full, "8", "kullanicilar.sifre", "Şifre", true}},
                          {"9", {full, "9", "kullanicilar.sifre1", "Şifre tekrarı", true}},
                          {"10", {full, "10", {}, "E-posta"}},
                          {"11", {full, "11", {}, "Web sitesi"}},
                          {"12", {full, "12", {}, "Soyadı"}},
                          {"13", {full, "13", {}, "Adı"}},
                          {"14", {full, "14", "liste.adres", "Adres"}},
                          {"15", {full, "15", "sifresorur.Text1", "Şifre", true}},
                          {"16", {full, "16"}},
                          {"17", {full, "17", {}, "Fatura no"}},
                          {"18", {full, "18", "frmLogin.sifre", "Şifre", true}},
                          {"19", {full, "19", "satisekrani.hizliurunadi", "Kısayol adı"}},
                          {"pad 1", {pad, "1", "urunler.barkod2", "Barkod"}},
                          {"pad 2", {pad, "2", "urunler.alis", "Alış fiyatı"}},
                          {"pad 3", {pad, "3", "urunler.fiyat", "Satış fiyatı"}},
                          {"pad 4", {pad, "4", "urunler.stok", "Stok"}},
                          {"pad 8", {pad, "8", "satisekrani.barkod", "Barkod"}}});
    }
    void everyCode() {
        QFETCH(const CodeRow, row);
        const auto before = allTexts();
        KeyboardScreen& keyboard = open(row.board, row.code.toInt());
        QCOMPARE(keyboard.ui.nereye->text(), row.code);
        QCOMPARE(keyboard.ui.yazilan->label(), row.label);
        QCOMPARE(keyboard.ui.yazilan->accessibleDescription(), row.label);
        QCOMPARE(keyboard.ui.yazilan->passwordchar(), row.starred ? "*" : "");
        press(*key(8));
        press(*key(10));
        QCOMPARE(keyboard.ui.yazilan->displayText(), row.starred ? "**" : "12");
        QCOMPARE(changes(before), QStringList());  // nothing before ENTER
        enter(row.board);
        QVERIFY(!isLoaded());
        QCOMPARE(changes(before), row.written.isEmpty() ? QStringList() : QStringList{row.written + "=12"});
        // A screen that wasn't open is written to, not shown.
        QVERIFY(!loaded<frmLogin>() || !screen<frmLogin>().isVisible());
        QCOMPARE(loaded<frmLogin>(), row.written.startsWith("frmLogin"));
        if (row.written == u"satisekrani.barkod")
            QTRY_VERIFY(ui().urunbulunamadiframesi->isVisible());  // by the Enter
    }

    void aCodeThatNobodyNames_data() {
        addRows<StrangeRow>({{"0", {full, "0"}},
                             {"20", {full, "20"}},
                             {"none", {full, ""}},
                             {"written otherwise", {full, "03"}},
                             {"no number", {full, "bir"}},
                             {"the pad's 5", {pad, "5"}},
                             {"the pad's 18", {pad, "18"}}});
    }
    void aCodeThatNobodyNames() {
        QFETCH(const StrangeRow, row);
        const auto before = allTexts();
        KeyboardScreen& keyboard = open(row.board, row.code);
        QCOMPARE(keyboard.ui.yazilan->label(), QString());
        press(*key(8));
        enter(row.board);
        QVERIFY(isLoaded());
        QVERIFY(!keyboard.isVisible());
        QCOMPARE(keyboard.ui.yazilan->text(), QString());
        QCOMPARE(changes(before), QStringList());
        // It can be opened again.
        open(pad, 8);
        open(row.board, 19);
        QVERIFY(keyboard.isVisible());
    }

    void theTextArrivesBeforeTheEnter() {
        open(pad, 8).ui.yazilan->setText(goods::milk);
        enter(pad);
        QCOMPARE(m_shop->lines(), 0);  // behind the press, not in it
        QTRY_COMPARE(m_shop->lines(), 1);
        QCOMPARE(m_shop->line(1).first(), goods::milk);
        QVERIFY(!loaded<klavyesayi>());
        QTRY_VERIFY(ui().barkod->hasFocus());
    }

    void theFieldThatWasFilledHasTheFocus() {
        ui().Frame2->show();
        giveFocus(*ui().barkod);
        open(full, 19);
        press(*key(8));
        enter(full);
        // The sales screen's own way, when it becomes active, leads to the barcode.
        QTRY_VERIFY(ui().hizliurunadi->hasFocus());
        QCOMPARE(ui().hizliurunadi->text(), "1");
        QCOMPARE(m_shop->lines(), 0);
    }

    void aFieldOutOfSightGetsNoEnter() {
        ui().barkod->setText(goods::milk);
        open(full, 19);
        press(*key(8));
        enter(full);
        QTRY_VERIFY(m_shop->sales().isActiveWindow());
        QCoreApplication::processEvents();
        QCOMPARE(ui().hizliurunadi->text(), "1");
        QCOMPARE(m_shop->lines(), 0);
        QCOMPARE(ui().barkod->text(), goods::milk);
    }

    void kapatHandsNothingOver_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("KAPAT") << 0;
        QTest::newRow("Escape") << 1;
        QTest::newRow("X") << 2;
    }
    void kapatHandsNothingOver() {
        QFETCH(const int, way);
        ui().Frame2->show();
        ui().hizliurunadi->setText("Fırın");
        const auto before = allTexts();
        KeyboardScreen& keyboard = open(full, 19);
        QTRY_VERIFY(keyboard.isActiveWindow());
        press(*key(8));
        if (way == 0)
            press(*keyboard.ui.kapat);
        else if (way == 1)
            QTest::keyClick(keyboard.ui.yazilan, Qt::Key_Escape);
        else
            keyboard.close();
        QVERIFY(!isLoaded());
        QTRY_VERIFY(ui().hizliurunadi->hasFocus());
        QCOMPARE(changes(before), QStringList());
        QVERIFY(!loaded<klavyeyeni>() && !loaded<klavyeyeni2>());
    }

    void anotherPictureChangesTheTarget() {
        KeyboardScreen& keyboard = open(full, 3);
        press(*key(8));
        QVERIFY(&open(full, 19) == &keyboard);
        QCOMPARE(keyboard.ui.nereye->text(), "19");
        QCOMPARE(keyboard.ui.yazilan->text(), "1");
        QCOMPARE(keyboard.ui.yazilan->label(), "Kısayol adı");
    }

    void goesWithTheSalesScreen() {
        open(pad, 8);
        unload<satisekrani>();
        QTRY_VERIFY(!m_keyboard);
        QVERIFY(!loaded<satisekrani>());
        openShop();
    }

    void anyTextIsHandedOverAsItIs_data() {
        addRows<TextRow>({{"apostrophes", {"O'nun \"ürünü\"; --"}},
                          {"percent", {"%50 İNDİRİM"}},
                          {"symbols of the transcription", {"|!#$@%&*^~{}"}},
                          {"254 characters", {QString(254, u'Ş')}},
                          {"right to left", {"\u202Eשלום"}},
                          {"emoji", {"🍞"}},
                          {"blanks", {"  "}},
                          {"nothing", {""}}});
    }
    void anyTextIsHandedOverAsItIs() {
        QFETCH(const TextRow, row);
        ui().hizliurunadi->setText("before");
        open(full, 19).ui.yazilan->setText(row.text);
        enter(full);
        QCOMPARE(ui().hizliurunadi->text(), row.text);
    }
};

int main(int argc, char** argv) {
    return runTests<KeyboardTargetsTest>(argc, argv);
}

#include "test_keyboardtargets.moc"
