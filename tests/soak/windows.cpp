#include "windows.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QKeySequence>
#include <QLineEdit>

#include "app/session.h"
#include "cashier.h"
#include "desktop/focus.h"
#include "hands.h"
#include "player.h"
#include "runtime/screen.h"
#include "screens/capitals.h"
#include "widgets/caption.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

Screen* front() {
    return qobject_cast<Screen*>(QApplication::activeWindow());
}

bool isInFront(const QString& name) {
    return front() && controlKind(*front()) == name;
}

/// The control of that name on the screen in front, where a pointer can get at it; the screen without a name.
QWidget* pressable(const QString& name) {
    if (!front() || name.isEmpty())
        return front();
    auto* control = front()->findChild<QWidget*>(name);
    return control && canPress(*control) ? control : nullptr;
}

bool isKey(const QString& exit) {
    return exit == u"Escape" || exit == u"X";
}

/// The screen that stands open behind the counter, as a screen does whose own screen has gone.
Screen* openBehind(const Screen& till) {
    for (Screen* screen : ScreenRegistry::all()) {
        if (front() == &till && screen != &till && screen->isVisible())
            return screen;
    }
    return nullptr;
}

QLineEdit& field(const QString& name) {
    return *front()->findChild<QLineEdit*>(name);
}

/// The button of the screen in front that bears that character alone.
QWidget* keyWith(QChar character) {
    for (auto* button : front()->findChildren<QAbstractButton*>()) {
        if (caption(*button) == character)
            return button;
    }
    return nullptr;
}

}  // namespace

const std::vector<WindowRow>& knownWindows() {
    using enum WindowRow::Gesture;
    const QString sales = u"satisekrani"_s;
    // Left alone: the calculator and the manual of the menu, which start other programs, and the total's
    // colour dialogs.
    static const std::vector<WindowRow> rows{
        {"menu",
         {{sales, "vkCommand1"}, {sales, "F7", key}},
         {"kapat", "Escape", "X"},
         {"vkCommand2", "vkCommand10"},
         {"MSG_GIRIS_EKRANINA_DON", "PROGRAM_KAPAT_SORU"}},
        {"hallimzda",
         {{sales, "vkCommand4"}, {sales, "F8", key}},
         {"urunbulunamadikapat", "Escape", "X"},
         {"Image1"}},
        {"ekoz", {{"hallimzda", "vkCommand1"}}, {"vkCommand3", "Escape", "X"}, {"vkCommand1"}},
        {"tema",
         {{"menu", "vkCommand1"}},
         {"vkCommand1", "X"},
         {"resim1", "resim2", "resim3", "resim4", "temaac"},
         {"MSG_TEMA_ONAY"}},
        {"toplamtema",
         {{sales, "toplam", rightPress}, {"tema", "vkCommand2"}},
         {"vkCommand5", "X"},
         {"vkCommand1", "vkCommand2", "vkCommand3", "vkCommand4", "vkCommand6", "vkCommand7", "vkCommand8",
          "vkCommand9", "temakaydetme", "Frame2", "Frame3"},
         {"MSG_KAYDET_ONAY"}},
        // Its Escape only closes the fields while they are open. Nothing is saved: whom a shop employs is no
        // matter of chance.
        {"kullanicilar",
         {{"menu", "vkCommand3"}},
         {"kapat", "X"},
         {"kisiekleme3", "duzenle3", "kisisil3", "vazgec", "qt_scrollarea_viewport"},
         {"MSG_KULLANICI_SEC", "MSG_KULLANICI_SIL_SEC", "SON_YONETICI", "MSG_KULLANICI_SIL_SOR"}},
        // Escape only empties a filter cell that holds a text.
        {"urunbul",
         {{sales, "urunbulmak"}, {sales, "kisayolurunbul"}},
         {"vkCommand4", "X"},
         {},
         {},
         "TDBGrid1"},
        // A customer is typed, but never stored.
        {"liste", {{sales, "vkCommand6"}}, {"vkCommand2", "X"}, {"kisiekleme2", "vazgec2", "vkCommand1"}},
        {"raporlarmenu", {{sales, "vkCommand2"}, {sales, "F5", key}}, {"vkCommand3", "Escape", "X"}},
        {"stokraporu", {{"raporlarmenu", "vkCommand1"}}, {"vkCommand3", "Escape", "X"}},
        // Nothing is printed: the receipts in the printer's folder are counted.
        {"zparogu",
         {{"raporlarmenu", "vkCommand2"}},
         {"cmdClose", "Escape", "X"},
         {"Command3", "Image1", "Image2"}},
        {"urunler", {{sales, "vkCommand3"}, {sales, "F6", key}}, {"vkCommand4", "X"}},
        // Its presets and panels read anew; its files and its deletion are left alone. Escape only empties a
        // filter cell that holds a text, and closes a panel.
        {"satisraporlar",
         {{"raporlarmenu", "fiyatgor"}},
         {"vkCommand4", "X"},
         {"bugunkusatis", "dunkusatis", "haftaliksatis", "ayliksatis", "tarihlerarasi", "Button_XP12",
          "Button_XP14", "Button_XP15", "vkToggleButton1", "Label1_0", "Label1_23", "Label1_27", "Label1_50",
          "Label1_51", "Label1_110"}},
        {.name = "klavyeyeni2",
         .ways = {{sales, "kisayolklavye"}, {"kullanicilar", "Image1"}},
         .exits = {"vkCommand1_100", "kapat", "Escape", "X"},
         .harmless = {"vkCommand1_73", "vkCommand1_42", "vkCommand1_101", "vkCommand1_102", "vkCommand1_103"},
         .weight = 45,
         .leadsToBarcode = false},
        {.name = "klavyesayi",
         .ways = {{sales, "Image4"}},
         .exits = {"kapat", "Escape", "X"},
         .harmless = {"vkCommand1_0", "vkCommand1_14", "vkCommand1_19"},
         .clear = "vkCommand1_18",
         .enter = "vkCommand1_39",
         .weight = 45},
        {"saatt", {{sales, "saat", doublePress}}, {"", "X"}},
    };
    return rows;
}

void Cashier::addWindows(const std::vector<WindowRow>& rows) {
    for (const WindowRow& row : rows)
        addWindow(row);
    const auto typable = [this]() -> QLineEdit* {
        return atCounter() ? nullptr : qobject_cast<QLineEdit*>(QApplication::focusWidget());
    };
    add(
        "typed into a screen", 30, 0, [typable] { return typable() != nullptr; },
        [=, this] {
            typeInto(typable(), anyOf({hostile(), number()}));
        });
    add(
        "back to an open screen", 60, 0, [this] { return openBehind(m_till) != nullptr; },
        [this] {
            m_announce(u"goes back to " + controlKind(*openBehind(m_till)));
            m_deed.until = [this] { return !atCounter(); };
            showInFront(*openBehind(m_till));  // nothing tells the till that a person chose it
        });
}

void Cashier::addWindow(const WindowRow& row) {
    using Gesture = WindowRow::Gesture;
    const QString& name = row.name;
    if (!row.ways.empty())
        m_unopened.append(name);
    for (const WindowRow::Way& way : row.ways) {
        const bool byKey = way.gesture == Gesture::key;
        const Test possible = [=, this] {
            return isInFront(way.from) && (byKey ? ui.barkod->hasFocus() : pressable(way.control) != nullptr);
        };
        add(way.control + u" of " + way.from, way.from == u"satisekrani" ? row.weight : 15, 0, possible,
            [=, this] {
                m_announce(u"opens " + name + u" by " + way.control);
                m_unopened.removeOne(name);
                m_deed.until = [name] { return isInFront(name); };
                if (byKey)
                    sendKey(QKeySequence(way.control)[0].key());
                else if (way.gesture == Gesture::doublePress)
                    pressTwice(*pressable(way.control));
                else
                    pressOn(*pressable(way.control),
                            way.gesture == Gesture::rightPress ? Qt::RightButton : Qt::LeftButton);
            });
    }
    for (const QString& exit : row.exits) {
        const Test possible = [=] { return isInFront(name) && (isKey(exit) || pressable(exit)); };
        add(u'"' + exit + u"\" of " + name, 10, row.leadsToBarcode ? toBarcode : 0, possible, [=, this] {
            m_announce(u"leaves " + name + u" by \"" + exit + u'"');
            m_deed.until = [name] { return !isInFront(name); };
            if (exit == u"X")
                front()->close();
            else if (exit == u"Escape")
                sendKey(Qt::Key_Escape);
            else
                pressOn(*pressable(exit));
        });
    }
    for (const QString& control : row.harmless) {
        const Test possible = [=] { return isInFront(name) && pressable(control); };
        add(control + u" of " + name, 8, 0, possible, [=, this, asks = row.mayAsk] {
            m_deed.mayAsk = asks;
            press(pressable(control))();
        });
    }
    if (!row.enter.isEmpty())
        addPad(row);
    if (row.choosing.isEmpty())
        return;
    // Where it hits a row, the screen goes.
    add(
        u"choice in " + name, 40, aLine, [=, this] { return isInFront(name) && !sellsOverALine(); },
        [=, this, list = row.choosing] {
            m_announce(u"presses twice in " + list);
            m_deed.until = [this] { return m_till.kontorsat.interval() == 0; };
            QWidget& area = *front()->findChild<QAbstractScrollArea*>(list)->viewport();
            const QPoint place(m_random.between(0, area.width()), m_random.between(0, area.height()));
            if (canPress(area, place))
                pressTwice(area, place);
        });
}

void Cashier::addPad(const WindowRow& row) {
    add(
        u"barcode by " + row.name, 25, aLine | toBarcode, [name = row.name] { return isInFront(name); },
        [=, this] {
            const QString barcode = anyOf(m_ledger.barcodes());
            m_announce(u"enters " + barcode + u" by " + row.name);
            expectSold(barcode);
            m_deed.until = [this] { return atCounter() && ui.barkod->text().isEmpty(); };
            pressOn(*pressable(row.clear));
            for (const QChar digit : barcode)
                pressOn(*keyWith(digit));
            pressOn(*pressable(row.enter));
        });
}

/// What is done to the products on their own screen; its entry frame is closed again each time. Nothing is
/// deleted: a quick key or the ticket may hold it.
void Cashier::addProducts() {
    // With a password, or its stand-in behind a press on the users' screen, the prompt would come first.
    const Test inList = [] { return isInFront(u"urunler"_s) && girissifre.isEmpty(); };
    const auto fill = [this](const QString& name, const QString& text) {
        field(name).selectAll();
        typeInto(&field(name), text);
    };
    add("product added", 30, 0, inList, [=, this] {
        press(pressable(u"kisiekleme2"_s))();
        fill(u"barkod2"_s, unknownBarcode());
        fill(u"urun2"_s, hostile());
        fill(u"alis"_s, digits(2));
        fill(u"fiyat"_s, digits(2) + u',' + digits(2));
        fill(u"stok"_s, digits(1));
        m_deed.made = {field(u"barkod2"_s).text(), cutToField(field(u"urun2"_s).text()),
                       amount(field(u"alis"_s).text()), amount(field(u"fiyat"_s).text()),
                       amount(field(u"stok"_s).text())};
        m_deed.box = "MSG_EKLENDI";
        press(pressable(u"kaydet2"_s))();
    });
    const Test hasRows = [=] {
        return inList() && front()->findChild<TDBGrid*>(u"TDBGrid1"_s)->model()->rowCount() > 0;
    };
    add("product changed", 30, 0, hasRows, [=, this] {
        QWidget& rows = *front()->findChild<QAbstractScrollArea*>(u"TDBGrid1"_s)->viewport();
        pressOn(rows, {rows.width() / 2, m_random.between(0, rows.height() - 1)});
        const bool none = field(u"sutun2"_s).text().isEmpty();
        if (none)
            m_deed.box = "MSG_URUN_SECIN";
        press(pressable(u"duzenle2"_s))();
        if (none)
            return;
        fill(u"fiyat"_s, digits(2) + u',' + digits(2));
        // One that was made at the counter may lack its name.
        if (field(u"urun2"_s).text().isEmpty()) {
            QWidget* leave = pressable(u"vazgec2"_s);  // behind the box no window is active for a moment
            m_deed.box = "MSG_URUN_ADI_BOS";
            press(pressable(u"kaydet2"_s))();
            press(leave)();
            return;
        }
        m_deed.priced = {field(u"barkod2"_s).text(), amount(field(u"fiyat"_s).text())};
        m_deed.box = "MSG_DUZENLENDI";
        press(pressable(u"kaydet2"_s))();
    });
    add("deletion of a product refused", 10, 0, inList, [=, this] {
        m_deed.box = field(u"sutun2"_s).text().isEmpty() ? "MSG_URUN_SIL_SEC" : "MSG_URUN_SIL_SOR";
        press(pressable(u"kisisil2"_s))();
    });
    add("products sorted", 15, 0, inList, [=, this] {
        TDBGrid& list = *front()->findChild<TDBGrid*>(u"TDBGrid1"_s);
        const QPoint place = list.headingRect(m_random.between(0, list.columnCount() - 1)).center();
        m_announce(u"sorts the products"_s);
        QWidget& heading = *list.childAt(place);
        pressOn(heading, heading.mapFrom(&list, place));
    });
}

}  // namespace kovanix
