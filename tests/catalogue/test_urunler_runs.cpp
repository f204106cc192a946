#include <QApplication>

#include "access/sifresorur.h"
#include "app/session.h"
#include "appearance/keyboardfield.h"
#include "appearance/keyboardscreen.h"
#include "appearance/mdlMonitors.h"
#include "data/baglanmamodulu.h"
#include "productstest.h"
#include "runtime/screenregistry.h"
#include "widgets/adodc.h"
#include "widgets/drawnbutton.h"
#include "widgets/tdbgrid.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// A product is added, changed and deleted: by keys alone, and by touches alone.
class TestUrunlerRuns : public ProductsTest {
    Q_OBJECT

    /// Goes to a control by Tab.
    void tabTo(QWidget& control) const {
        for (int tabs = 0; !control.hasFocus(); ++tabs) {
            if (tabs > 40)
                qFatal("Tab doesn't reach %s", qUtf8Printable(control.objectName()));
            key(Qt::Key_Tab);
        }
    }

    /// Presses a text on a keyboard, and its ENTER, which walks on to the next control.
    template <class Keyboard>
    void tap(Image& picture, const QString& text, const QWidget& next) const {
        press(picture);
        if (!QTest::qWaitFor([] { return loaded<Keyboard>() && screen<Keyboard>().isActiveWindow(); }))
            qFatal("no keyboard comes");
        for (const QChar character : text)
            QTest::mouseClick(keyOf(screen<Keyboard>(), character), Qt::LeftButton);
        // From the event loop, as everything that a user does: the keyboard isn't deleted under a box then.
        QWidget* enter = keyOf(screen<Keyboard>(), u"ENTER"_s);
        QTimer::singleShot(0, enter, [enter] { QTest::mouseClick(enter, Qt::LeftButton); });
        if (!QTest::qWaitFor([&] { return !loaded<Keyboard>() && next.hasFocus(); }))
            qFatal("%s doesn't get the focus", qUtf8Printable(next.objectName()));
    }

    static QWidget* keyOf(const QWidget& keyboard, const QString& caption) {
        for (DrawnButton* button : keyboard.findChildren<DrawnButton*>()) {
            if (button->caption() == caption)
                return button;
        }
        qFatal("no key %s", qUtf8Printable(caption));
    }

private Q_SLOTS:
    void byKeys() {
        m_shop->key(Qt::Key_F6);
        QTRY_VERIFY(catalogue().isActiveWindow());
        tabTo(*form().kisiekleme2);
        key(Qt::Key_Return);
        for (const QString& text : {u"777"_s, u"yeni çay"_s, u"1,5"_s, u"2,25"_s, u"3"_s}) {
            type(text);
            key(Qt::Key_Return);
        }
        expectNotice(u"MSG_EKLENDI"_s);
        key(Qt::Key_Return);
        QCOMPARE(stored().last(), (QVariantList{u"777"_s, u"YENİ ÇAY"_s, 1.5, 2.25, 3.0}));

        QTRY_VERIFY(form().barkod2->hasFocus());
        key(Qt::Key_Escape);
        QTRY_VERIFY(form().TDBGrid1->hasFocus());
        type(u"777"_s);  // a search
        tabTo(*form().TDBGrid1);
        key(Qt::Key_Return);  // chooses the only row
        QTRY_COMPARE(form().sutun2->text(), u"6"_s);
        tabTo(*form().duzenle2);
        key(Qt::Key_Return);
        QVERIFY(form().fiyat->hasFocus());
        key(Qt::Key_End);
        key(Qt::Key_Backspace);
        type(u"9"_s);
        tabTo(*form().kaydet2);
        expectNotice(u"MSG_DUZENLENDI"_s);
        key(Qt::Key_Return);
        QCOMPARE(stored().last(), (QVariantList{u"777"_s, u"YENİ ÇAY"_s, 1.5, 2.29, 3.0}));

        tabTo(*form().kisisil2);
        expectQuestion(MessageBoxAnswer::yes);
        expectNotice(u"MSG_URUN_SILINDI"_s);
        key(Qt::Key_Return);
        QCOMPARE(stored().size(), 5);
        tabTo(*form().vkCommand4);
        key(Qt::Key_Return);
        QVERIFY(!loaded<urunler>());
        QTRY_VERIFY(ui().barkod->hasFocus());
    }

    void byTouches() {
        monitorlerioku();
        open();
        press(*form().kisiekleme2);
        tap<klavyesayi>(*form().barkod2k, u"777"_s, *form().urun2);
        tap<klavyeyeni2>(*form().urun2k, u"ÇAY"_s, *form().alis);
        tap<klavyesayi>(*form().alisk, u"1,5"_s, *form().fiyat);
        tap<klavyesayi>(*form().fiyatk, u"2"_s, *form().stok);
        tap<klavyesayi>(*form().stokk, u"3"_s, *form().kayit);
        QCOMPARE(fields(), (QStringList{u"777"_s, u"ÇAY"_s, u"1,5"_s, u"2"_s, u"3"_s}));
        expectNotice(u"MSG_EKLENDI"_s);
        press(*form().kaydet2);
        QCOMPARE(stored().last(), (QVariantList{u"777"_s, u"ÇAY"_s, 1.5, 2.0, 3.0}));

        choose(5);
        press(*form().duzenle2);
        tap<klavyesayi>(*form().fiyatk, u"4"_s, *form().stok);
        expectNotice(u"MSG_DUZENLENDI"_s);
        press(*form().kaydet2);
        QCOMPARE(stored().last(), (QVariantList{u"777"_s, u"ÇAY"_s, 1.5, 4.0, 3.0}));

        choose(5);
        expectQuestion(MessageBoxAnswer::yes);
        expectNotice(u"MSG_URUN_SILINDI"_s);
        press(*form().kisisil2);
        QCOMPARE(stored().size(), 5);
    }

    void aTakenBarcodeByTouches() {
        monitorlerioku();
        open();
        press(*form().kisiekleme2);
        m_shop->boxes.expectAny(MessageBoxAnswer::ok);
        tap<klavyesayi>(*form().barkod2k, goods::tomatoes, *form().barkod2);
        QTRY_COMPARE(m_boxes.size(), 1);
        QCOMPARE(form().barkod2->text(), QString());
    }
};

int main(int argc, char** argv) {
    return runTests<TestUrunlerRuns>(argc, argv);
}

#include "test_urunler_runs.moc"
