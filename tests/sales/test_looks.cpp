#include "app/session.h"
#include "appearance/hallimzda.h"
#include "appearance/menu.h"
#include "appearance/palette.h"
#include "appearance/saatt.h"
#include "appearance/toplamtema.h"
#include "rows.h"
#include "runtime/screenregistry.h"
#include "salestest.h"
#include "widgets/face.h"
#include "widgets/look.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// What the sales screen opens above itself, and what the themes make of it.
class LooksTest : public SalesTest {
    Q_OBJECT

    struct KeysOpenTheScreensAboveRow {
        Qt::Key key;
        bool isMenu;
    };
    struct RightPressOnTheTotalRow {
        Qt::MouseButton button;
        bool opens;
    };
    struct MoneyPaintsTheSubtractButtonRow {
        QByteArray tema;
        int palette;
    };
    struct FieldsFollowThePaletteRow {
        Palette palette() const { return tema == "0" ? Palette::resim1 : Palette(tema.toInt() - 1); }

        QByteArray tema;
        Tone tone;
    };

    static QList<QColor> faceOf(const DrawnButton& button) {
        return {button.backcolor1(), button.backcolor2(), button.backcolorpushed1(),
                button.backcolorpushed2()};
    }

    static QList<QColor> paletteFace(Palette palette) {
        QList<QColor> face;
        for (const ColorProperty property :
             {ColorProperty::backcolor1, ColorProperty::backcolor2, ColorProperty::backcolorpushed1,
              ColorProperty::backcolorpushed2})
            face.append(colorOf(paletteColor(u"vkCommand5"_s, property, palette)));
        return face;
    }

private Q_SLOTS:
    void keysOpenTheScreensAbove_data() {
        addRows<KeysOpenTheScreensAboveRow>(
            {{"F7: the menu", {Qt::Key_F7, true}}, {"F8: about", {Qt::Key_F8, false}}});
    }
    void keysOpenTheScreensAbove() {
        QFETCH(const KeysOpenTheScreensAboveRow, row);
        m_shop->scan(goods::bread);
        m_shop->sales().eksiltme = 1;
        m_shop->key(row.key);
        QCOMPARE(loaded<menu>(), row.isMenu);
        QCOMPARE(loaded<hallimzda>(), !row.isMenu);
        QVERIFY(row.isMenu ? screen<menu>().isVisible() : screen<hallimzda>().isVisible());
        QCOMPARE(m_shop->sales().eksiltme, 0);
        QCOMPARE(m_shop->lines(), 1);  // the ticket stays beneath
        QVERIFY(m_shop->sales().isVisible());
    }

    void rightPressOnTheTotal_data() {
        addRows<RightPressOnTheTotalRow>(
            {{"right", {Qt::RightButton, true}}, {"middle", {Qt::MiddleButton, false}}});
    }
    void rightPressOnTheTotal() {
        QFETCH(const RightPressOnTheTotalRow, row);
        QTest::mouseClick(m_shop->ui().toplam, row.button);
        QCOMPARE(loaded<toplamtema>(), row.opens);
        QVERIFY(!m_shop->sales().isMinimized());
    }

    void doublePressOnTheStatusCard_data() {
        QTest::addColumn<QString>("row");
        for (const char* part :
             {"saat", "tarih", "Label4_7", "Label4_8", "korumaresmi", "korumaresmi2", "Frame1"})
            QTest::newRow(part) << QString::fromLatin1(part);
    }
    void doublePressOnTheStatusCard() {
        QFETCH(const QString, row);
        auto* part = m_shop->sales().findChild<QWidget*>(row);
        QTest::mouseClick(part, Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(!loaded<saatt>());
        QTest::mouseDClick(part, Qt::LeftButton, {}, QPoint(3, 3));
        QVERIFY(loaded<saatt>());
        const QRect clock = screen<saatt>().geometry();
        QVERIFY(screen<saatt>().isVisible());
        // In the ticket's corner, over nothing that is pressed.
        const QWidget& ticket = *m_shop->ui().satisekrani1;
        const QRect place(ticket.mapToGlobal(QPoint(0, 0)), ticket.size());
        QVERIFY(place.contains(clock));
        QVERIFY(clock.bottom() > place.center().y());
        QVERIFY(clock.right() < place.center().x() + clock.width() / 2);
    }

    void closingTheClockDoesNotBringAClosedTillBack() {
        QTest::mouseDClick(m_shop->ui().saat, Qt::LeftButton);
        m_shop->boxes.expect("Program kapatma", "PROGRAMI KAPATMAK İSTEDİĞİNİZE EMİNMİSİNİZ?",
                             MessageBoxAnswer::no);
        m_shop->sales().close();
        QVERIFY(!m_shop->sales().isVisible());
        screen<saatt>().close();
        QVERIFY(!m_shop->sales().isVisible());
    }

    void aCashierOpeningTheMenuLosesTwoButtons_data() {
        QTest::addColumn<int>("role");
        QTest::newRow("cashier") << 0;
        QTest::newRow("manager") << 1;
    }
    void aCashierOpeningTheMenuLosesTwoButtons() {
        QFETCH(int, role);
        girisyetki = role;
        m_shop->ui().vkCommand2->setEnabled(true);
        m_shop->ui().vkCommand3->setEnabled(true);
        m_shop->key(Qt::Key_F7);
        QCOMPARE(m_shop->ui().vkCommand2->isEnabled(), role == 1);
        QCOMPARE(m_shop->ui().vkCommand3->isEnabled(), role == 1);
    }

    void moneyPaintsTheSubtractButton_data() {
        addRows<MoneyPaintsTheSubtractButtonRow>({{"1", {QByteArray("1"), 0}},
                                                  {"2", {QByteArray("2"), 1}},
                                                  {"3", {QByteArray("3"), 2}},
                                                  {"4", {QByteArray("4"), 3}},
                                                  {"0 leaves it", {QByteArray("0"), -1}},
                                                  {"9 leaves it", {QByteArray("9"), -1}},
                                                  {"absent leaves it", {QByteArray(), -1}}});
    }
    void moneyPaintsTheSubtractButton() {
        QFETCH(const MoneyPaintsTheSubtractButtonRow, row);
        m_shop->writeConfig("[ayar]\r\n" + (row.tema.isEmpty() ? QByteArray() : "tema=" + row.tema + "\r\n"));
        const QList<QColor> before{Qt::red, Qt::green, Qt::blue, Qt::yellow};
        vkCommand& button = *m_shop->ui().vkCommand5;
        button.setBackcolor1(before[0]);
        button.setBackcolor2(before[1]);
        button.setBackcolorpushed1(before[2]);
        button.setBackcolorpushed2(before[3]);
        m_shop->press(*m_shop->ui().Resim5);
        QCOMPARE(faceOf(button), row.palette < 0 ? before : paletteFace(Palette(row.palette)));
    }

    void subtractingShowsItsOwnColours() {
        m_shop->writeConfig("[ayar]\r\ntema=0\r\n");
        const QColor own(0xC0, 0xC0, 0x00);
        m_shop->ui().vkCommand5->click();
        QCOMPARE(faceOf(*m_shop->ui().vkCommand5), QList<QColor>({own, own, own, own}));
        m_shop->press(*m_shop->ui().Resim5);
        const QColor light(0xF0, 0xF0, 0xF0);
        QCOMPARE(faceOf(*m_shop->ui().vkCommand5), QList<QColor>({light, QColor(0xFF, 0xFF, 0), light, own}));
    }

    void theTotalTellsItsItems() {
        vkToggleButton& total = *ui().toplam;
        QCOMPARE(total.accessibleDescription(), u"TOPLAM"_s);
        m_shop->scan(goods::bread);
        m_shop->scan(goods::milk);
        QCOMPARE(total.accessibleDescription(), u"TOPLAM · 2 kalem"_s);
        m_shop->scan(goods::milk);  // one line more of the same is none
        QCOMPARE(total.accessibleDescription(), u"TOPLAM · 2 kalem"_s);
        m_shop->key(Qt::Key_F1);
        QCOMPARE(total.accessibleDescription(), u"TOPLAM"_s);
    }

    void moneyThatIsMissingIsTold() {
        m_shop->scan(goods::bread);
        QVERIFY(ui().kalan->isOwed());
        m_shop->press(*ui().Resim6);
        QVERIFY(ui().kalan->isOwed());
        m_shop->press(*ui().Resim6);
        QVERIFY(!ui().kalan->isOwed());
        QVERIFY(!ui().verilen->isOwed());
    }

    void anEmptyTicketSaysHowToBegin() {
        QVERIFY(grid().accessibleDescription().startsWith(u"Satışa başlamak için barkodu okutun"_s));
        m_shop->scan(goods::bread);
        QCOMPARE(grid().accessibleDescription(), QString());
    }

    void fieldsOfThePanelsFollowThePalette_data() {
        addRows<FieldsFollowThePaletteRow>({{"resim1", {"0", Tone::light}},
                                            {"resim2", {"2", Tone::light}},
                                            {"resim3", {"3", Tone::dark}},
                                            {"resim4", {"4", Tone::light}}});
    }
    void fieldsOfThePanelsFollowThePalette() {
        QFETCH(const FieldsFollowThePaletteRow, row);
        m_shop->writeConfig("[ayar]\r\ntema=" + row.tema + "\r\n");
        unloadAllScreens();
        for (const QLineEdit* field :
             {ui().adetdegis, ui().fiyatdegis, ui().urunsatisi, ui().fiyargorbarkodu, ui().kisayolbarkod}) {
            QCOMPARE(field->palette().color(QPalette::Base), roleColor(ColorRole::field, row.tone));
            QCOMPARE(field->palette().color(QPalette::Text), roleColor(ColorRole::ink, row.tone));
        }
        QCOMPARE(ui().fiyargorfiyati->palette().color(QPalette::Base),
                 roleColor(ColorRole::quietField, row.tone));
        // The ticket and the picture of the pad go by the page.
        QCOMPARE(toneOf(grid()), row.tone);
        QCOMPARE(toneOf(*ui().Image4), row.tone);
        // What the table names stays the table's.
        QCOMPARE(ui().barkod->palette().color(QPalette::Base),
                 colorOf(paletteColor(u"barkod"_s, ColorProperty::BackColor, row.palette())));
    }

    void theTicketHoldsWhatIsUsual_data() {
        QTest::addColumn<QSize>("display");
        for (const QSize size : {QSize(800, 600), QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
    void theTicketHoldsWhatIsUsual() {
        QFETCH(QSize, display);
        satisekrani& sales = m_shop->sales();
        sales.setWindowState(Qt::WindowNoState);
        sales.resize(display);
        QCoreApplication::processEvents();
        QList<int> before;
        for (int column = 1; column <= 5; ++column)
            before.append(grid().letterSize(column));
        // So many lines that the scroll bar takes its share.
        grid().setRows(60);
        const QStringList usual{u"8690504000013"_s, u"Rize Bardak Poşet Çay 100'lü"_s, u"12345678"_s,
                                u"1.234.567,89"_s, u"1234567,89"_s};
        for (int column = 1; column <= 5; ++column) {
            grid().setTextMatrix(7, column, usual[column - 1]);
            QCOMPARE(grid().letterSize(column), before[column - 1]);
            QVERIFY(grid().letterSize(column) >= 11);
        }
        QVERIFY(grid().rowHeight() >= 32);
    }

    void amountsStandWhole_data() { theTicketHoldsWhatIsUsual_data(); }
    void amountsStandWhole() {
        QFETCH(QSize, display);
        satisekrani& sales = m_shop->sales();
        sales.setWindowState(Qt::WindowNoState);
        sales.resize(display);
        for (QWidget* panel : {ui().urunislemleri, ui().fiyatgorframe, ui().urunbulunamadiframesi})
            panel->show();
        QCoreApplication::processEvents();
        for (QLineEdit* field : {ui().ver2, ui().fiyatdegis, ui().fiyargorfiyati, ui().urunsatisi}) {
            field->setText(u"1.234.567,89"_s);
            field->end(false);
            field->grab();
            QVERIFY2(field->cursorPositionAt({0, field->height() / 2}) == 0, qPrintable(field->objectName()));
            QVERIFY(field->font().pixelSize() >= 11);
        }
    }

    void theCommandsHaveOneCaptionSize_data() { theTicketHoldsWhatIsUsual_data(); }
    void theCommandsHaveOneCaptionSize() {
        QFETCH(QSize, display);
        satisekrani& sales = m_shop->sales();
        sales.setWindowState(Qt::WindowNoState);
        sales.resize(display);
        QCoreApplication::processEvents();
        QSet<int> sizes;
        for (DrawnButton* button : std::initializer_list<DrawnButton*>{
                 ui().kaydet, ui().nakit, ui().satisiptal, ui().fiyatgor, ui().vkCommand2, ui().vkCommand3,
                 ui().urunbulmak, ui().vkCommand6, ui().vkCommand1, ui().vkCommand4, ui().kapat})
            sizes.insert(button->captionSize());
        QCOMPARE(sizes.size(), 1);
        QVERIFY2(*sizes.begin() >= 11, qPrintable(QString::number(*sizes.begin())));
    }

    // At the smallest of the usual displays a thumb still meets everything, and all letters can be read.
    void nothingIsTooSmall() {
        satisekrani& sales = m_shop->sales();
        sales.setWindowState(Qt::WindowNoState);
        sales.resize(800, 600);
        QCoreApplication::processEvents();
        QStringList small;
        for (QWidget* control : sales.findChildren<QWidget*>()) {
            if (!control->isVisible() || control->objectName().isEmpty() ||
                control->objectName().startsWith(u"qt_"))
                continue;
            auto* button = qobject_cast<DrawnButton*>(control);
            const bool shield = control == ui().korumaresmi || control == ui().korumaresmi2;
            const bool target =
                !shield && (qobject_cast<QAbstractButton*>(control) || qobject_cast<QLineEdit*>(control));
            if (target && (control->width() < 40 || control->height() < 40))
                small.append(
                    u"%1 is %2x%3"_s.arg(control->objectName()).arg(control->width()).arg(control->height()));
            if (button && !button->caption().isEmpty() && button->captionSize() < 11)
                small.append(control->objectName() + u" is written in %1"_s.arg(button->captionSize()));
            if (qobject_cast<QLabel*>(control) && control->font().pixelSize() < 11)
                small.append(control->objectName() + u" is written too small");
        }
        QCOMPARE(small.join(u'\n'), QString());
    }

    void theThemeOnFileStandsAtStart_data() {
        addRows<MoneyPaintsTheSubtractButtonRow>(
            {{"dark", {QByteArray("3"), 2}}, {"light", {QByteArray("4"), 3}}, {"absent", {QByteArray(), 0}}});
    }
    void theThemeOnFileStandsAtStart() {
        QFETCH(const MoneyPaintsTheSubtractButtonRow, row);
        m_shop->writeConfig("[ayar]\r\ntemaac=1\r\n" +
                            (row.tema.isEmpty() ? QByteArray() : "tema=" + row.tema + "\r\n"));
        unloadAllScreens();
        QCOMPARE(faceOf(*m_shop->ui().vkCommand5), paletteFace(Palette(row.palette)));
        QCOMPARE(m_shop->ui().toplam->forecolor(),
                 colorOf(paletteColor(u"toplam"_s, ColorProperty::forecolor, Palette(row.palette))));
    }
};

int main(int argc, char** argv) {
    return runTests<LooksTest>(argc, argv);
}

#include "test_looks.moc"
