#include <QPointer>

#include "appearance/ekoz.h"
#include "appearance/hallimzda.h"
#include "appearance/tema.h"
#include "appearance/toplamtema.h"
#include "appearance/uyari.h"
#include "desktop/focus.h"
#include "runtime/screenregistry.h"
#include "salestest.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// Which of the small screens a row is about.
enum class Which { about, extras, notice };

Screen& open(Which which) {
    Screen& opened = which == Which::about    ? static_cast<Screen&>(screen<hallimzda>())
                     : which == Which::extras ? static_cast<Screen&>(screen<ekoz>())
                                              : static_cast<Screen&>(screen<uyari>());
    showInFront(opened);
    // The toolkit's own wait takes a window for active as soon as the one that it belongs to is.
    if (!QTest::qWaitFor([&opened] { return opened.isActiveWindow(); }))
        qFatal("the screen doesn't become active");
    return opened;
}

bool isLoaded(Which which) {
    return which == Which::about    ? loaded<hallimzda>()
           : which == Which::extras ? loaded<ekoz>()
                                    : loaded<uyari>();
}

QAbstractButton& closeButton(Which which) {
    return which == Which::about ? static_cast<QAbstractButton&>(*screen<hallimzda>().ui.urunbulunamadikapat)
           : which == Which::extras ? static_cast<QAbstractButton&>(*screen<ekoz>().ui.vkCommand3)
                                    : static_cast<QAbstractButton&>(*screen<uyari>().ui.Command1);
}

Screen& themeScreen() {
    return screen<tema>();
}

Screen& colorScreen() {
    return screen<toplamtema>();
}

void rows() {
    QTest::addColumn<Which>("which");
    QTest::newRow("about") << Which::about;
    QTest::newRow("extra features") << Which::extras;
    QTest::newRow("notice") << Which::notice;
}

}  // namespace

Q_DECLARE_METATYPE(Which)

/// The about screen, the extra features and the brief notice.
class SmallScreensTest : public SalesTest {
    Q_OBJECT

    struct ClosingRow {
        Which which;
        QString way;
    };

    struct ScanRow {
        Screen& (*open)();
        QString pressed;
    };

private Q_SLOTS:
    // All of them.

    void closing_data() {
        QTest::addColumn<ClosingRow>("row");
        for (const auto& [which, name] : {std::pair{Which::about, "about"},
                                          {Which::extras, "extra features"},
                                          {Which::notice, "notice"}}) {
            for (const char* way : {"button", "Enter", "Escape", "X"})
                QTest::addRow("%s by %s", name, way) << ClosingRow{which, QString::fromLatin1(way)};
        }
    }
    void closing() {
        QFETCH(const ClosingRow, row);
        m_shop->scan(goods::bread);
        m_shop->ui().adet->setFocus();
        const QPointer<Screen> opened(&open(row.which));
        if (row.way == "button")
            QTest::mouseClick(&closeButton(row.which), Qt::LeftButton);
        else if (row.way == "Enter")
            m_shop->key(Qt::Key_Return);
        else if (row.way == "Escape")
            m_shop->key(Qt::Key_Escape);
        else
            opened->close();
        QVERIFY(!isLoaded(row.which));
        QTRY_VERIFY(!opened);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
        m_shop->scan(goods::milk);
        QCOMPARE(m_shop->lines(), 2);
    }

    void closingWithoutASalesScreen_data() { rows(); }
    void closingWithoutASalesScreen() {
        QFETCH(Which, which);
        unloadAllScreens();
        open(which);
        closeButton(which).click();
        QVERIFY(!isLoaded(which));
        QVERIFY(!loaded<satisekrani>());
    }

    void aSalesScreenThatIsntShownYetStaysHidden_data() { rows(); }
    void aSalesScreenThatIsntShownYetStaysHidden() {
        QFETCH(Which, which);
        m_shop->sales().hide();
        open(which);
        closeButton(which).click();
        QVERIFY(!isLoaded(which));
        QVERIFY(!m_shop->sales().isVisible());
    }

    void theNextOneIsNew_data() { rows(); }
    void theNextOneIsNew() {
        QFETCH(Which, which);
        const QPointer<Screen> first(&open(which));
        closeButton(which).click();
        const Screen& second = open(which);
        QVERIFY(&second != first);
        QVERIFY(second.isVisible());
    }

    // The about screen.

    void about() {
        open(Which::about);
        const Ui::hallimzda& ui = screen<hallimzda>().ui;
        QCOMPARE(screen<hallimzda>().windowTitle(), "Kovanix");
        QCOMPARE(ui.urunbulunamadikapat->caption(), "KAPAT");
        QCOMPARE(ui.vkCommand1->caption(), "Ek özellikler");
        QCOMPARE(ui.Label1->text(), "Kovanix");
        QVERIFY(!QCoreApplication::applicationVersion().isEmpty());
        QCOMPARE(ui.Label2->text(), "Versiyon: " + QCoreApplication::applicationVersion());
        QCOMPARE(ui.Label4->text(), "Küçük dükkânlar için satış kasası");
        QCOMPARE(ui.Image1->source(), ":/logo.svg");
        QCOMPARE(ui.Image1->toolTip(), "Program hakkında bilgi için tıklayın");
        QCOMPARE(ui.printedText->text(), QString());
    }

    void theLogoPrintsTheProductText_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("pressed") << 0;
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Enter of the number block") << int(Qt::Key_Enter);
        QTest::newRow("Space") << int(Qt::Key_Space);
    }
    void theLogoPrintsTheProductText() {
        QFETCH(int, key);
        const Screen& window = open(Which::about);
        const Ui::hallimzda& ui = screen<hallimzda>().ui;
        const QSize before = window.size();
        const auto print = [&] {
            if (key == 0)
                QTest::mouseClick(ui.Image1, Qt::LeftButton);
            else
                QTest::keyClick(ui.Image1, Qt::Key(key));
        };
        print();
        const QString printed = ui.printedText->text();
        QVERIFY2(printed.startsWith("Kovanix " + QCoreApplication::applicationVersion() + ", "),
                 qPrintable(printed));
        QVERIFY(printed.contains("satış kasası"));
        // It is really seen: the ground of the form takes ink.
        const QImage picture = ui.printedText->grab().toImage();
        QVERIFY(picture != QImage(picture.size(), picture.format()));
        print();
        QCoreApplication::processEvents();
        QCOMPARE(ui.printedText->text(), printed);
        QCOMPARE(window.size(), before);
    }

    void otherKeysOnTheLogoPrintNothing() {
        open(Which::about);
        QTest::keyClick(screen<hallimzda>().ui.Image1, Qt::Key_A);
        QCOMPARE(screen<hallimzda>().ui.printedText->text(), QString());
    }

    void theLogoShowsItsFocus() {
        open(Which::about);
        const Ui::hallimzda& ui = screen<hallimzda>().ui;
        const QImage without = ui.Image1->grab().toImage();
        m_shop->key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), ui.Image1);
        QVERIFY(ui.Image1->grab().toImage() != without);
        m_shop->key(Qt::Key_Tab);
        QCOMPARE(ui.Image1->grab().toImage(), without);
    }

    void theExtraFeaturesOpen() {
        open(Which::about);
        QTest::mouseClick(screen<hallimzda>().ui.vkCommand1, Qt::LeftButton);
        QVERIFY(loaded<ekoz>());
        QVERIFY(screen<ekoz>().isVisible());
        QCOMPARE(screen<ekoz>().windowModality(), Qt::NonModal);
        QTRY_VERIFY(screen<ekoz>().isActiveWindow());
        QVERIFY(screen<hallimzda>().isVisible());
    }

    void aboutByKeyboardAlone() {
        open(Which::about);
        const Ui::hallimzda& ui = screen<hallimzda>().ui;
        QCOMPARE(QApplication::focusWidget(), ui.urunbulunamadikapat);
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Space);
        QVERIFY(!ui.printedText->text().isEmpty());
        m_shop->key(Qt::Key_Tab);
        m_shop->key(Qt::Key_Return);
        QTRY_VERIFY(loaded<ekoz>() && screen<ekoz>().isActiveWindow());
    }

    // The extra features.

    void extras() {
        open(Which::extras);
        const Ui::ekoz& ui = screen<ekoz>().ui;
        QCOMPARE(screen<ekoz>().windowTitle(), "Ek *zellikler");  // as stored: no title of the table's
        QCOMPARE(ui.vkCommand1->caption(), "Bellek (Ram)");
        QVERIFY(ui.vkCommand1->isVisible() && ui.vkCommand1->isEnabled());
        QVERIFY(!ui.vkCommand2->isVisible());
        QCOMPARE(ui.vkCommand3->caption(), "Kapat");
    }

    void memoryDoesNothing() {
        open(Which::extras);
        const qsizetype windows = QApplication::topLevelWidgets().size();
        const QImage before = screen<ekoz>().grab().toImage();
        screen<ekoz>().ui.vkCommand1->click();
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::topLevelWidgets().size(), windows);
        QVERIFY(screen<ekoz>().isActiveWindow());
        QCOMPARE(screen<ekoz>().grab().toImage(), before);
        QCOMPARE(m_shop->boxes.answered(), 0);
    }

    void extrasByKeyboardAlone() {
        open(Which::extras);
        const Ui::ekoz& ui = screen<ekoz>().ui;
        QCOMPARE(QApplication::focusWidget(), ui.vkCommand3);
        m_shop->key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), ui.vkCommand1);
        m_shop->key(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), ui.vkCommand3);
        m_shop->key(Qt::Key_Space);
        QVERIFY(!loaded<ekoz>());
    }

    // The notice.

    void notice() {
        screen<uyari>().ui.yazi->setText("Yükleniyor...");
        open(Which::notice);
        const Ui::uyari& ui = screen<uyari>().ui;
        QCOMPARE(screen<uyari>().windowTitle(), "UYARI");
        QCOMPARE(ui.Command1->caption(), "Tamam");
        QCOMPARE(ui.yazi->text(), "Yükleniyor...");
        QVERIFY(ui.yazi->font().pixelSize() > QApplication::font().pixelSize());
        QCOMPARE(screen<uyari>().kapat.interval(), 0);
    }

    void theNoticeGoesWhenItsTimeIsOver() {
        const QPointer<uyari> opened(&screen<uyari>());
        opened->kapat.setInterval(20);
        open(Which::notice);
        QTRY_VERIFY(!loaded<uyari>());
        QTRY_VERIFY(!opened);
        QTRY_VERIFY(m_shop->ui().barkod->hasFocus());
    }

    void theTickUnloadsFirstAndThenStopsTheTimer() {
        uyari& opened = screen<uyari>();
        opened.kapat.setInterval(60000);
        open(Which::notice);
        Q_EMIT opened.kapat.tick();
        QVERIFY(!loaded<uyari>());
        QVERIFY(!opened.isVisible());
        QCOMPARE(opened.kapat.interval(), 0);  // the object lives until the running event is over
    }

    void withoutAnIntervalItStays() {
        open(Which::notice);
        screen<uyari>().kapat.setInterval(20);
        screen<uyari>().kapat.setInterval(0);
        QTest::qWait(60);
        QVERIFY(loaded<uyari>());
        QVERIFY(screen<uyari>().isVisible());
    }

    void aNoticeThatGoesLeavesTheNextOneAlone() {
        uyari& first = screen<uyari>();
        first.kapat.setInterval(60000);
        open(Which::notice);
        first.ui.Command1->click();
        uyari& second = screen<uyari>();
        QVERIFY(&second != &first);
        second.show();
        Q_EMIT first.kapat.tick();  // the first one isn't deleted before the event is over
        QVERIFY(loaded<uyari>());
        QVERIFY(second.isVisible());
    }

    void theTotalsColoursHideTheThemes() {
        showInFront(themeScreen());
        screen<tema>().ui.vkCommand2->click();
        QVERIFY(colorScreen().isVisible());
        QVERIFY(colorScreen().geometry().contains(themeScreen().geometry()));
    }

    // The cashier has pressed a button of the screen, and the next customer's scan comes.
    void aScanDoesNoHarm_data() {
        QTest::addColumn<ScanRow>("row");
        QTest::newRow("themes, at first") << ScanRow{themeScreen, {}};
        QTest::newRow("themes, a picture pressed") << ScanRow{themeScreen, u"resim3"_s};
        QTest::newRow("themes, the box pressed") << ScanRow{themeScreen, u"temaac"_s};
        QTest::newRow("the total's colours, at first") << ScanRow{colorScreen, {}};
        for (const QString& button : {u"vkCommand3"_s, u"Frame2"_s, u"vkCommand6"_s, u"temakaydetme"_s})
            QTest::addRow("the total's colours, %s pressed", qPrintable(button))
                << ScanRow{colorScreen, button};
    }
    void aScanDoesNoHarm() {
        QFETCH(const ScanRow, row);
        Screen& opened = row.open();
        showInFront(opened);
        QTRY_VERIFY(opened.isActiveWindow());
        if (!row.pressed.isEmpty())
            QTest::mouseClick(opened.findChild<QWidget*>(row.pressed), Qt::LeftButton);
        const QByteArray before = m_shop->config();
        QTest::keyClicks(QApplication::focusWidget(), goods::bread);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(m_shop->config(), before);
    }
};

int main(int argc, char** argv) {
    return runTests<SmallScreensTest>(argc, argv);
}

#include "test_smallscreens.moc"
