#include "cashier.h"

#include <QApplication>
#include <QMessageBox>
#include <array>

#include "app/modTurkce.h"
#include "boxanswers.h"
#include "desktop/messagebox.h"
#include "hands.h"
#include "player.h"
#include "values/numbers.h"
#include "widgets/controlarray.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestQuantity = 8;
constexpr int curiosity = 20;           // how much more readily something is done for the first time
constexpr qsizetype longestField = 14;  // as far as this cashier goes; the fields take any length

/// What each box of the till is titled, or the key of that, and the answers that it gets.
struct Box {
    QString key;
    QString title;
    std::vector<int> answers;
};

const std::vector<Box>& boxes() {
    using namespace MessageBoxAnswer;
    constexpr int escape = BoxAnswers::escape;
    static const std::vector<Box> table{
        {"ONCE_SATIS_YAP", "Bilgi", {ok, escape}},
        {"ADET_LIMIT", "Bilgi", {ok, escape}},
        {"BASAMAK_LIMIT", "Bilgi", {ok, escape}},
        {"ONCE_BARKOD_OKUT", "Bilgi", {ok, escape}},
        {"URUN_BULUNAMADI", "Bilgi", {ok, escape}},
        {"ONCE_URUN_SEC", "Bilgi", {ok, escape}},
        {"SATIS_FIYATI_GIR", "    ", {ok, escape}},
        {"URUN_KAYIT_YOK", "Bilgi", {cancel, tryAgain, goOn, escape}},
        {"MSG_SATIS_IPTAL_SOR", "UYARI", {yes, no, escape}},
        {"MSG_TEMA_ONAY", "MSG_SILME_ONAY_BASLIK", {yes, no, escape}},
        {"MSG_KAYDET_ONAY", "UYARI", {yes, no, escape}},
        {"MSG_KULLANICI_SEC", "UYARI", {ok, escape}},
        {"MSG_KULLANICI_SIL_SEC", "UYARI", {ok, escape}},
        {"SON_YONETICI", "UYARI", {ok, escape}},
        {"MSG_KULLANICI_SIL_SOR", "MSG_SILME_ONAY_BASLIK", {no, escape}},
        {"MSG_GIRIS_EKRANINA_DON", "UYARI", {no, escape}},  // a yes would end the session
        {"PROGRAM_KAPAT_SORU", "PROGRAM_KAPAT_BASLIK", {no, escape}},
        {"MSG_EKLENDI", "UYARI", {ok, escape}},
        {"MSG_DUZENLENDI", "UYARI", {ok, escape}},
        {"MSG_URUN_SIL_SOR", "MSG_SILME_ONAY_BASLIK", {no, escape}},
        {"MSG_URUN_SIL_SEC", "UYARI", {ok, escape}},
        {"MSG_URUN_SECIN", "UYARI", {ok, escape}},
        {"MSG_URUN_ADI_BOS", "UYARI", {ok, escape}},
        {"MSG_SATIS_SIL_SEC", "UYARI", {ok, escape}},
        {"MSG_SIL_ONAY", "MSG_SILME_ONAY_BASLIK", {no, escape}},  // what was sold stays in the books
        {"MSG_SATIS_EXPORT", "UYARI", {ok, escape}},
    };
    return table;
}

bool isLabel(const QString& code) {
    const double prefix = toNumber(code.left(2)).value_or(0);
    return prefix == 27 || prefix == 28 || prefix == 29;
}

/// What the till takes for a quantity: a text that is none counts as one piece.
double quantityOf(const QString& text) {
    return isNumeric(text) ? amount(text) : 1;
}

}  // namespace

Cashier::Cashier(quint64 seed, const ShopLedger& ledger, const std::vector<WindowRow>& windows,
                 std::function<void(const QString&)> told)
    : m_random(seed),
      m_ledger(ledger),
      m_announce(std::move(told)),
      m_till(screen<satisekrani>()),
      ui(m_till.ui) {
    addEntry();
    addPanels();
    addQuickKeys();
    addLines();
    addCash();
    addSaleEnd();
    addWindows(windows);
    addProducts();
}

const Deed& Cashier::act() {
    m_deed = {};
    m_deed.before = viewOf(m_till);
    const auto weightOf = [](const Action& action) {
        return quint64(action.weight) * (action.made == 0 ? curiosity : 1);
    };
    std::vector<Action*> possible;
    quint64 weights = 0;
    for (Action& action : m_actions) {
        if (action.possible()) {
            possible.push_back(&action);
            weights += weightOf(action);
        }
    }
    quint64 drawn = m_random.below(weights);  // a Tab is always possible
    auto chosen = possible.begin();
    for (; drawn >= weightOf(**chosen); ++chosen)
        drawn -= weightOf(**chosen);
    Action& action = **chosen;
    ++action.made;
    m_deed.changesLine = action.may & aLine;
    m_deed.changesCash = action.may & theCash;
    m_deed.toBarcode = action.may & toBarcode;
    action.make();
    return m_deed;
}

std::optional<int> Cashier::answer(const QMessageBox& shown) {
    for (const auto& [key, title, answers] : boxes()) {
        const bool mayCome = key == m_deed.box || m_deed.mayAsk.contains(key) ||
                             (key == u"BASAMAK_LIMIT" && m_deed.changesLine);
        const bool first = m_deed.shownBox.isEmpty();  // no action brings two
        if (!mayCome || !first || shown.text() != metin(key) ||
            shown.windowTitle() != (title.contains(u'_') ? metin(title) : title))
            continue;
        m_deed.shownBox = key;
        m_deed.answer = answers.at(m_random.below(answers.size()));
        return m_deed.answer;
    }
    return std::nullopt;
}

QStringList Cashier::neverMade() const {
    QStringList kinds;
    for (const Action& action : m_actions) {
        if (action.made == 0)
            kinds.append(action.kind);
    }
    return kinds;
}

/// What asks for nothing else is possible at the counter only: while no other screen is in front.
bool Cashier::atCounter() const {
    return QApplication::activeWindow() == &m_till;
}

/// Whether a line's barcode is the current cell: what is sold by anything but a scan takes that line's place
/// then, and where it merges with another one it leaves that line without a quantity besides. Two lines
/// differ.
bool Cashier::sellsOverALine() const {
    const VSFlexGrid& grid = *ui.satisekrani1;
    return grid.col() == 1 && grid.row() != grid.rows() - 1;
}

Cashier::Test Cashier::can(QWidget* control) const {
    return [this, control] { return atCounter() && canPress(*control); };
}

Cashier::Test Cashier::focused(const QLineEdit* field, qsizetype room) const {
    return [=, this] { return atCounter() && field->hasFocus() && field->text().size() < room; };
}

Cashier::Test Cashier::writable(QLineEdit* field, qsizetype room) const {
    return [=, this] { return can(field)() && field->text().size() < room; };
}

Cashier::Make Cashier::press(QWidget* control) {
    return [=, this] {
        m_announce(u"presses " + control->objectName());
        pressOn(*control);
    };
}

Cashier::Make Cashier::pressAnyOf(const QString& array) {
    return [=, this] { press(controlArray(m_till, array).at(m_random.below(12)))(); };
}

Cashier::Make Cashier::key(int key, const QString& box) {
    return [=, this] {
        if (!box.isEmpty())
            m_deed.box = box;
        m_announce(u"presses " + QKeySequence(key).toString());
        sendKey(key);
    };
}

void Cashier::typeInto(QLineEdit* field, const QString& text) {
    m_announce(u"types " + text + u" into " + field->objectName());
    if (!field->hasFocus())
        pressOn(*field);
    typeText(text);
}

QString Cashier::digits(int count) {
    QString text;
    while (text.size() < count)
        text += QChar(u'0' + char16_t(m_random.below(10)));
    return text;
}

/// A number as cashiers type it: mostly sensible, at times not one at all, or nothing for a till's field.
QString Cashier::number() {
    const QString none = anyOf({"0", ",", ",5", "12,", "1,,2", "007", hostile()});
    return anyOf({digits(1), digits(2), digits(m_random.between(3, 6)), digits(1) + u',' + digits(1),
                  digits(2) + u',' + digits(2), digits(1) + u',' + digits(4), none});
}

QString Cashier::hostile() {
    return anyOf({"'; DROP TABLE satislar; --", "d'artagnan & oğlu", "kızılcık ŞURUBU, iğne",
                  QString(60, u'i'), "\"x\" [no]; %_*?#", "<b>&amp;</b>", "-1E+308", "½ €\u00a0\u202e"});
}

/// A barcode that no product has and no scale prints.
QString Cashier::unknownBarcode() {
    for (;;) {
        const QString barcode = QString::number(m_random.between(3, 9)) + digits(m_random.between(1, 13));
        if (!m_ledger.knows(barcode))
            return barcode;
    }
}

/// The product is to be sold by the running action, as often as the quantity says.
void Cashier::expectSold(const QString& barcode) {
    m_deed.sold = {barcode, quantityOf(ui.adet->text())};
}

/// Scans, where it goes to the empty barcode with the quantity that waits there, or to what has the focus.
void Cashier::scan(const QString& barcode) {
    m_announce(u"scans " + barcode);
    if (ui.barkod->hasFocus() && m_ledger.knows(barcode))
        expectSold(barcode);
    typeText(barcode);
    sendEnter();
}

/// The barcode, the quantity before it, and the scans that land elsewhere.
void Cashier::addEntry() {
    const Test ready = focused(ui.barkod, 1);
    add("scan", 170, aLine | toBarcode, ready, [this] { scan(anyOf(m_ledger.barcodes())); });
    const Test readyWithLines = [=, this] { return ready() && !m_deed.before.lines.isEmpty(); };
    add("scan of the ticket", 60, aLine | toBarcode, readyWithLines, [this] {
        const auto& lines = m_deed.before.lines;
        const QString again = lines.at(qsizetype(m_random.below(quint64(lines.size())))).barcode;
        scan(m_ledger.barcodes().contains(again) ? again : anyOf(m_ledger.barcodes()));
    });
    add("scale label", 45, aLine, ready, [this] {
        const bool known = !m_ledger.labelCodes().isEmpty() && !m_random.chance(0.08);
        const QString code = known ? anyOf(m_ledger.labelCodes()) : digits(4);
        const int grams = m_random.between(0, m_random.chance(0.1) ? 99999 : 3000);
        scan(anyOf({"27", "28", "29"}) + digits(1) + code + QString::number(grams).rightJustified(5, u'0') +
             digits(1));
        if (m_ledger.knows(code))
            m_deed.sold = {code, grams / 1000.0};
    });
    add("unknown barcode", 22, 0, ready, [this] { scan(unknownBarcode()); });
    add("barcode of zeros", 5, toBarcode, ready, [this] { scan(QString(m_random.between(0, 13), u'0')); });
    add("typed barcode", 8, toBarcode, ready, [this] { typeInto(ui.barkod, anyOf({hostile(), digits(5)})); });
    const Test leftOver = [this] { return focused(ui.barkod)() && !ui.barkod->text().isEmpty(); };
    add("barcode taken back", 200, toBarcode, leftOver, [this] {
        m_announce(u"takes back " + ui.barkod->text());
        sendKey(Qt::Key_End);
        for (qsizetype left = ui.barkod->text().size(); left > 0; --left)
            sendKey(Qt::Key_Backspace, u"\b"_s);
    });
    const Test inList = [this] { return atCounter() && ui.satisekrani1->hasFocus(); };
    add("scan past the barcode", 80, 0, inList, [this] { scan(unknownBarcode()); });
    const Test elsewhere = [this] { return can(ui.barkod)() && !ui.barkod->hasFocus(); };
    add("press on the barcode", 40, toBarcode, elsewhere, press(ui.barkod));
    add("press on the background", 15, toBarcode, can(ui.korumaresmi2), press(ui.korumaresmi2));
    const Test always = [] { return true; };
    add("Tab", 3, 0, always, key(Qt::Key_Tab));

    add("quantity key", 60, toBarcode, can(ui.tus_0), pressAnyOf("tus"));
    add("typed quantity", 30, 0, writable(ui.adet, longestQuantity),
        [this] { typeInto(ui.adet, number().left(longestQuantity - ui.adet->text().size())); });
    add("ninth character", 6, toBarcode, can(ui.adet), [this] {
        ui.adet->deselect();  // Tab may have marked what stands there, to be replaced
        m_deed.box = "ADET_LIMIT";
        typeInto(ui.adet, digits(int(std::max<qsizetype>(longestQuantity - ui.adet->text().size(), 0)) + 1));
    });
    // Makes a barcode of it; an empty one, or one with a label's prefix and no weight, ends the process.
    const Test enterable = [this] {
        const QString text = ui.adet->text();
        return focused(ui.adet)() && !text.isEmpty() && (!isLabel(text) || isNumeric(text.mid(7, 5)));
    };
    add("Enter in the quantity", 60, aLine | toBarcode, enterable, [this] {
        const QString text = ui.adet->text();
        const QString code = isLabel(text) ? text.mid(3, 4) : text;
        if (m_ledger.knows(code))
            m_deed.sold = {code, isLabel(text) ? amount(text.mid(7, 5)) / 1000 : quantityOf(text)};
        key(Qt::Key_Return)();
    });
}

/// The unknown product and the price check.
void Cashier::addPanels() {
    const Test onBanner = [this] { return atCounter() && ui.urunbuunamadibeklet->hasFocus(); };
    const auto seeBanner = [this](Make make) {
        return [=, this] {
            m_deed.box = "URUN_KAYIT_YOK";
            make();
        };
    };
    add("scan on the banner", 50, 0, onBanner, seeBanner([this] { scan(unknownBarcode()); }));
    add("press on the banner", 8, 0, can(ui.urunbuunamadibeklet), seeBanner(press(ui.urunbuunamadibeklet)));
    add("Escape on the banner", 50, toBarcode, onBanner, key(Qt::Key_Escape));
    add("typed name", 40, 0, writable(ui.urunadi, 50), [this] { typeInto(ui.urunadi, hostile()); });
    const Test priceWritable = writable(ui.urunsatisi, longestField);
    add("typed price", 40, 0, priceWritable, [this] { typeInto(ui.urunsatisi, number()); });
    add("price key", 30, 0, priceWritable, pressAnyOf("bununamayanurunfiyat"));
    const Test savable = [this] {
        return can(ui.urunbuunamadikaydet)() && !m_ledger.knows(ui.bulunulamayaurun->text());
    };
    // Where a cell of the list has been pressed the new product isn't sold, or takes the place of that line.
    add("KAYDET of the unknown product", 50, aLine, savable, [this] {
        const QString price = ui.urunsatisi->text();
        m_deed.toBarcode = !price.isEmpty();
        if (price.isEmpty())
            m_deed.box = "SATIS_FIYATI_GIR";
        else
            m_deed.made = {ui.bulunulamayaurun->text(), ui.urunadi->text().left(50), amount(price),
                           amount(price), 1};
        press(ui.urunbuunamadikaydet)();
    });
    add("KAPAT of the panel", 15, toBarcode, can(ui.urunbulunamadikapat), press(ui.urunbulunamadikapat));

    const Test checking = focused(ui.fiyargorbarkodu, 1);
    add("F4", 10, 0, focused(ui.barkod), key(Qt::Key_F4));
    add("price check", 6, 0, can(ui.fiyatgor), press(ui.fiyatgor));
    add("price of a product", 250, 0, checking, [this] { scan(anyOf(m_ledger.barcodes())); });
    add("price of an unknown barcode", 60, 0, checking, [this] {
        m_deed.box = "URUN_BULUNAMADI";
        scan(unknownBarcode());
    });
    add("price of nothing", 40, 0, checking, key(Qt::Key_Return, "ONCE_BARKOD_OKUT"));
    add("Escape from the price check", 40, toBarcode, checking, key(Qt::Key_Escape));
    add("KAPAT of the price check", 20, toBarcode, can(ui.fiyargorkapat), press(ui.fiyargorkapat));
}

/// The keys that sell at a touch, their pages, and the panel that fills them.
void Cashier::addQuickKeys() {
    const auto oneOf = [this](const QString& array, int first, int last) -> QWidget& {
        return *m_till.findChild<QWidget*>(array + QString::number(m_random.between(first, last)));
    };
    const auto rightPress = [this](QWidget& key) {
        m_announce(u"presses the right button on " + key.objectName());
        pressOn(key, Qt::RightButton);
    };
    const Test sellable = [this] { return can(ui.kisayol_0)() && !sellsOverALine(); };
    add("quick key", 60, aLine, sellable, [=, this] { press (&oneOf("kisayol_", 0, 7))(); });
    add("page of quick keys", 15, 0, can(ui.kisayol1), [=, this] { press (&oneOf("kisayol", 1, 4))(); });
    add("right press on a quick key", 8, 0, can(ui.kisayol_0), [=] { rightPress(oneOf("kisayol_", 0, 7)); });
    add("right press on a page", 5, 0, can(ui.kisayol1), [=] { rightPress(oneOf("kisayol", 1, 4)); });
    add("name of a quick key", 40, 0, writable(ui.hizliurunadi, 50),
        [this] { typeInto(ui.hizliurunadi, hostile()); });
    add("barcode of a quick key", 20, 0, can(ui.kisayolbarkod), [this] {
        pressOn(*ui.kisayolbarkod);
        ui.kisayolbarkod->selectAll();
        typeInto(ui.kisayolbarkod, m_random.chance(0.2) ? unknownBarcode() : anyOf(m_ledger.barcodes()));
    });
    add("quick key stored", 40, 0, can(ui.kisayolkaydet), [this] {
        const bool page = ui.kisayolhangisi->text().size() == 2;
        m_deed.toBarcode = page || !ui.kisayolbarkod->text().isEmpty();
        if (!m_deed.toBarcode)
            m_deed.box = "ONCE_URUN_SEC";
        press(ui.kisayolkaydet)();
    });
    add("quick key emptied", 6, toBarcode, can(ui.kisayolsil), press(ui.kisayolsil));
    add("quick key's panel left", 30, toBarcode, can(ui.kisayolkapat), press(ui.kisayolkapat));
}

/// The list, and the panel that changes a line.
void Cashier::addLines() {
    add("press on a cell", 120, 0, can(ui.satisekrani1->viewport()), [this] {
        const VSFlexGrid& grid = *ui.satisekrani1;
        const int row = m_random.between(0, std::min(grid.rows() - 1, 15));
        const int column = m_random.between(1, 5);
        m_announce(u"presses the cell %1, %2"_s.arg(row).arg(column));
        const QPoint middle = grid.cellRect(row, column).center();
        if (canPress(*grid.viewport(), middle))
            pressOn(*grid.viewport(), middle);
    });
    const Test inList = [this] { return atCounter() && ui.satisekrani1->hasFocus(); };
    for (const Qt::Key arrow : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_PageDown})
        add("arrow key", 12, 0, inList, key(arrow));
    for (QLineEdit* field : {ui.adetdegis, ui.fiyatdegis}) {
        const QString& name = field->objectName();
        add(u"press on " + name, 40, 0, can(field), press(field));
        add(u"typed into " + name, 150, 0, focused(field, longestField),
            [=, this] { typeInto(field, number()); });
        add(u"scan into " + name, 10, 0, focused(field, longestField), [this] { scan(unknownBarcode()); });
        add(u"Escape from " + name, 20, toBarcode, focused(field), key(Qt::Key_Escape));
    }
    add("key of the line", 40, 0, writable(ui.adetdegis, longestField), pressAnyOf("duzenlemetusu"));
    // Not where the line has gone since and the entry row stands in its place: the till writes into it all
    // the same, where the total counts it and no sale stores it.
    const Test applicable = [this] {
        return can(ui.urunislemlerikapat)() && ui.satir->text().toInt() != ui.satisekrani1->rows() - 1;
    };
    add("TAMAM", 80, aLine | toBarcode, applicable, press(ui.urunislemlerikapat));
    // So many digits that no total can be shown: at once, or when the line of nothing is sold once more.
    add("amount beyond the screen", 6, aLine | toBarcode, applicable, [this] {
        const QString many(m_random.between(22, 25), u'9');
        for (QLineEdit* field : {ui.adetdegis, ui.fiyatdegis}) {
            pressOn(*field);
            typeInto(field, field == ui.fiyatdegis ? many : anyOf({"0", many}));
        }
        press(ui.urunislemlerikapat)();
    });
    add("VAZGEÇ", 12, toBarcode, can(ui.vazgecc), press(ui.vazgecc));
    add("line removed", 20, aLine | toBarcode, can(ui.urunsil), press(ui.urunsil));
}

void Cashier::addCash() {
    add("money", 70, theCash | toBarcode, can(ui.resim2), [this] {
        const std::array<Image*, 9> money{ui.resim1, ui.resim2, ui.resim3, ui.resim4, ui.Resim5,
                                          ui.Resim6, ui.Image1, ui.Image2, ui.Image3};
        m_deed.takesCashOff = m_till.eksiltme != 0;
        press(money.at(m_random.below(money.size())))();
    });
    add("subtract mode", 15, toBarcode, can(ui.vkCommand5), press(ui.vkCommand5));
    add("press on the typed cash", 15, 0, can(ui.ver2), press(ui.ver2));
    add("typed cash", 100, theCash, focused(ui.ver2, longestField), [this] { typeInto(ui.ver2, number()); });
    add("Enter in the cash", 40, toBarcode, focused(ui.ver2), key(Qt::Key_Return));
    for (DrawnButton* button : std::initializer_list<DrawnButton*>{ui.vsil, ui.ver3, ui.verilen, ui.kalan})
        add(button->objectName(), 8, theCash | toBarcode, can(button), press(button));
}

/// Storing, printing, cancelling, and the question at the end, each by its button and by its key.
void Cashier::addSaleEnd() {
    const auto both = [this](Qt::Key shortcut, DrawnButton* button, int weight, int may, const Make& laws) {
        const auto make = [&laws](const Make& way) {
            return [=] {
                laws();
                way();
            };
        };
        add(button->objectName(), weight, may, can(button), make(press(button)));
        add(QKeySequence(shortcut).toString(), weight * 2, may | toBarcode, focused(ui.barkod),
            make(key(shortcut)));
    };
    // An empty ticket can be neither stored nor cancelled.
    const auto hasLines = [this] {
        const bool empty = m_deed.before.lines.isEmpty();
        m_deed.box = empty ? u"ONCE_SATIS_YAP"_s : QString();
        return !empty;
    };
    both(Qt::Key_F1, ui.kaydet, 10, toBarcode, [=, this] { m_deed.stores = hasLines(); });
    both(Qt::Key_F2, ui.nakit, 3, toBarcode, [=, this] { m_deed.prints = m_deed.stores = hasLines(); });
    // A No leaves all as it was: nothing is said to change.
    both(Qt::Key_F3, ui.satisiptal, 5, 0, [=, this] {
        if (hasLines())
            m_deed.box = "MSG_SATIS_IPTAL_SOR";
    });
    both(Qt::Key_F9, ui.kapat, 2, 0, [this] { m_deed.box = "PROGRAM_KAPAT_SORU"; });
    both(Qt::Key_F10, ui.toplam, 2, 0, [] {});
}

}  // namespace kovanix
