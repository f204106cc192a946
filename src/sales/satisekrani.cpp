#include "sales/satisekrani.h"

#include <QCloseEvent>
#include <QDate>
#include <QFocusEvent>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>

#include "app/modTrace.h"
#include "app/modTurkce.h"
#include "appearance/hallimzda.h"
#include "appearance/keyboard.h"
#include "appearance/menu.h"
#include "appearance/modTema.h"
#include "appearance/saatt.h"
#include "appearance/toplamtema.h"
#include "catalogue/liste.h"
#include "catalogue/urunbul.h"
#include "catalogue/urunler.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "reports/raporlarmenu.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"
#include "sales/modSatis.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "screens/focusreturn.h"
#include "values/dates.h"
#include "widgets/controlarray.h"
#include "widgets/fieldedits.h"
#include "widgets/fieldletters.h"
#include "widgets/keyfilter.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int clockInterval = 100;  // milliseconds
constexpr int emptyTicketRows = 2;  // the heading and the entry row
constexpr int padCode = 8;          // the number pad's target: the barcode
constexpr int clockMargin = 8;      // pixels

}  // namespace

void SalesControls::setupUi(QWidget* screen) {
    Ui::satisekrani::setupUi(screen);
    Ui::LineEditingPanel::setupUi(urunislemleri);
    Ui::UnknownProductPanel::setupUi(urunbulunamadiframesi);
    Ui::PriceCheckPanel::setupUi(fiyatgorframe);
    Ui::QuickSalePanel::setupUi(Frame2);
}

satisekrani::satisekrani() {
    ui.setupUi(this);
    ui.satisekrani1->setRows(emptyTicketRows);
    ui.satisekrani1->setCols(6);
    sizeGrid();
    countItems(emptyTicketRows);
    applyTextRoles(*this);
    // The total's size is a matter of its own length and of the screen, in points.
    QFont total = ui.toplam->font();
    total.setWeight(QFont::Bold);
    ui.toplam->setFont(total);
    connectControls();
    Timer1.setInterval(clockInterval);
    Timer1_tick();
}

satisekrani::~satisekrani() = default;

void satisekrani::sizeGrid() {
    // Each is as wide as the longest that is usual; the name gets the rest.
    VSFlexGrid& grid = *ui.satisekrani1;
    const QString amount = u"1.234.567,89"_s;
    grid.setColSample(1, u"8888888888888"_s);
    grid.setColWidth(2, -1);
    grid.setColSample(3, u"88888888"_s);
    grid.setColSample(4, amount);
    grid.setColSample(5, amount, u"888888888,88"_s);  // eight digits of quantity at a usual price
    grid.setEmptyState(
        u":/icons/barcode.svg"_s, u"Satışa başlamak için barkodu okutun"_s,
        {u"ya da barkodu yazıp ENTER’a basın, tuşa dokunun,"_s, u"ürünü ÜRÜN BUL ile arayın"_s});
}

void satisekrani::connectControls() {
    clicks(this, {{ui.kaydet, &satisekrani::kaydet_click},
                  {ui.nakit, &satisekrani::nakit_click},
                  {ui.satisiptal, &satisekrani::satisiptal_click},
                  {ui.kapat, &satisekrani::kapat_click},
                  {ui.vkCommand1, &satisekrani::vkCommand1_click},
                  {ui.vkCommand2, &satisekrani::vkCommand2_click},
                  {ui.vkCommand3, &satisekrani::vkCommand3_click},
                  {ui.vkCommand4, &satisekrani::vkCommand4_click},
                  {ui.vkCommand6, &satisekrani::vkCommand6_click},
                  {ui.urunbulmak, &satisekrani::urunbulmak_click},
                  {ui.toplam, &satisekrani::toplam_click},
                  {ui.verilen, &satisekrani::verilen_click},
                  {ui.kalan, &satisekrani::verilen_click},
                  {ui.vsil, &satisekrani::vsil_click},
                  {ui.ver3, &satisekrani::ver3_click},
                  {ui.vkCommand5, &satisekrani::vkCommand5_click}});
    // A touch leaves the keyboard where it is: after a No to a button's question the next scan must not press
    // the button again.
    for (DrawnButton* button : findChildren<DrawnButton*>()) {
        if (button->focusPolicy() == Qt::StrongFocus)
            button->setFocusPolicy(Qt::TabFocus);
    }
    pressKeys(u"tus"_s, &satisekrani::tus_click);
    connectLineEditing();
    connectUnknownProduct();
    connectPriceCheck();
    connectQuickKeys();
    connect(ui.ActiveResize1, &ActiveResize::resized, this, [this] {
        placePanels();
        equalizeCaptions(commandRow());
    });
    connect(ui.satisekrani1, &VSFlexGrid::rowsChanged, this, &satisekrani::countItems);
    for (vkFrame* panel : panels())
        panel->installEventFilter(this);
    ui.satisekrani1->installEventFilter(this);

    const std::initializer_list<std::pair<Image*, double>> money{
        {ui.resim2, 200}, {ui.resim3, 100}, {ui.resim4, 50},  {ui.resim1, 20},  {ui.Resim5, 10},
        {ui.Resim6, 5},   {ui.Image1, 1},   {ui.Image2, 0.5}, {ui.Image3, 0.25}};
    for (const auto& [picture, amount] : money)
        connect(picture, &Image::clicked, this, [this, value = amount] { paraekle(value); });
    connect(ui.Image4, &Image::clicked, this, [this] { openNumberPad(padCode, *this); });
    for (Image* background : {ui.korumaresmi, ui.korumaresmi2})
        connect(background, &Image::clicked, this, [this] { giveFocus(*ui.barkod); });

    connect(ui.toplam, &DrawnButton::mousedown, this, [](Qt::MouseButton button) {
        if (button == Qt::RightButton)
            showInFront(screen<toplamtema>());
    });
    ui.Frame1->installEventFilter(this);
    const QList<QWidget*> status = ui.Frame1->findChildren<QWidget*>();
    for (QWidget* part : status)
        part->installEventFilter(this);
    ui.ver2->installEventFilter(this);
    connect(ui.ver2, &QLineEdit::textChanged, this, &satisekrani::ver2_change);
    connect(&Timer1, &Timer::tick, this, &satisekrani::Timer1_tick);
    connect(&kontorsat, &Timer::tick, this, &satisekrani::kontorsat_tick);

    const auto dropEnter = [](KeyFilter::KeyPress next) {
        return [next = std::move(next)](int code) { return code == u'\r' ? 0 : next(code); };
    };
    new KeyFilter(
        *ui.barkod, [this](int key) { barkod_keydown(key); }, dropEnter(onlyCharacters(u"0123456789")));
    new KeyFilter(
        *ui.adet, [this](int key) { adet_keydown(key); }, [this](int code) { return adet_keypress(code); });
    new KeyFilter(
        *ui.ver2,
        [this](int key) {
            if (key == Qt::Key_Return)
                giveFocus(*ui.barkod);
        },
        onlyCharacters(u"0123456789,"));
    for (QLineEdit* number : {ui.adet, ui.ver2, ui.adetdegis, ui.fiyatdegis, ui.urunsatisi})
        keepGroups(*number);
    for (QLineEdit* field :
         {ui.adet, ui.ver2, ui.adetdegis, ui.fiyatdegis, ui.urunsatisi, ui.fiyargoradi, ui.fiyargorfiyati})
        keepWhole(*field);
    keepOnOneLine(*ui.urunadi);
}

std::array<DrawnButton*, 11> satisekrani::commandRow() const {
    return {ui.kaydet,     ui.nakit,      ui.satisiptal, ui.fiyatgor,   ui.vkCommand2, ui.vkCommand3,
            ui.urunbulmak, ui.vkCommand6, ui.vkCommand1, ui.vkCommand4, ui.kapat};
}

/// Tells beside the total how many lines it is the sum of.
void satisekrani::countItems(int rows) {
    const int items = rows - emptyTicketRows;
    ui.toplam->setLabel(items > 0 ? u"TOPLAM · %1 kalem"_s.arg(items) : u"TOPLAM"_s);
}

/// Connects the keys of a control array, each by its index.
void satisekrani::pressKeys(const QString& array, void (satisekrani::*procedure)(int)) {
    for (DrawnButton* key : controlArrayOf<DrawnButton>(*this, array)) {
        connect(key, &QAbstractButton::clicked, this,
                [this, procedure, index = controlIndex(*key).value()] { (this->*procedure)(index); });
    }
}

/// What the key of a panel writes: its caption.
QString satisekrani::panelKey(const QString& array, int index) const {
    for (const DrawnButton* key : controlArrayOf<DrawnButton>(*this, array)) {
        if (controlIndex(*key) == index)
            return key->caption();
    }
    return {};
}

void satisekrani::showPanel(QWidget& panel) {
    placePanels();
    panel.raise();
    panel.show();
}

void satisekrani::form_load() {
    izyaz(u"SAT01 Form_Load"_s);
    setFocusReturn(*ui.barkod);
    ekrandonat(*this);
    kontrolleridolas(*this);
    temadegiskenlerioku();
    ui.Shape1->hide();
    izyaz(u"SAT02 preDB"_s);
    const auto tell = [](const QString& description) {
        izyaz(u"SATERR db: " + description);
        mesaj(u"Veritaban| ba|lant|s| kurulamad|: " + description, MessageBoxStyle::ok, metin(u"HATA"_s));
    };
    try {
        if (!baglantihazir() || !satisbaglantiac()) {
            tell(QString());
            return;
        }
        izyaz(u"SAT03 dbOK"_s);
        temabaslangicuygula();
        kisayolyukle();
        gridhazirla(*ui.satisekrani1);
        gridbasliklari(*screen<satisekrani>().ui.satisekrani1);
        goToEntryRow();
        eksiltme = 0;
        ui.toplam->setCaption(u"0,00"_s);
        ui.ver2->setText(u"0,00"_s);  // its change writes plain numbers into the two that follow
        ui.verilen->setCaption(u"0,00"_s);
        ui.kalan->setCaption(u"0,00"_s);
        toplamyazisi(-1);
        izyaz(u"SAT04 Form_Load bitti"_s);
    } catch (const RuntimeError& error) {
        tell(error.description());
    }
}

void satisekrani::form_activate() {
    izyaz(u"SAT05 Form_Activate"_s);
    giveFocus(*ui.barkod);
    izyaz(u"SAT06 Form_Activate bitti"_s);
}

bool satisekrani::eventFilter(QObject* watched, QEvent* event) {
    // What is typed into the cash replaces what stood there. A press sets its caret first, so select behind
    // it.
    if (watched == ui.ver2 && event->type() == QEvent::FocusIn) {
        if (static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason)
            QTimer::singleShot(0, ui.ver2, &QLineEdit::selectAll);
        else
            ui.ver2->selectAll();
    }
    const bool pressed = event->type() == QEvent::MouseButtonPress &&
                         static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
    if (pressed && (watched == ui.adetdegis || watched == ui.fiyatdegis))
        lineField_mousedown(static_cast<QLineEdit&>(*watched));
    const auto open = panels();
    if (std::find(open.begin(), open.end(), watched) != open.end())
        panelChanges(*watched, event->type());
    if (watched == ui.satisekrani1 && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        placePanels();
    const auto* control = qobject_cast<const QWidget*>(watched);
    if (event->type() == QEvent::MouseButtonDblClick && control &&
        (control == ui.Frame1 || ui.Frame1->isAncestorOf(control))) {
        showClock();
        return true;
    }
    return Screen::eventFilter(watched, event);
}

/// In the ticket's corner above the status card: there it hides the least.
void satisekrani::showClock() {
    const QRect ticket(ui.satisekrani1->mapToGlobal(QPoint(0, 0)), ui.satisekrani1->size());
    showInFront(screen<saatt>(), {.place = Qt::AlignLeft | Qt::AlignBottom,
                                  .within = ticket.adjusted(clockMargin, 0, 0, -clockMargin)});
}

void satisekrani::barkod_keydown(int key) {
    switch (key) {
        case Qt::Key_Return:
            if (!ui.barkod->text().isEmpty()) {
                splitLabelInEntry();
                goToEntryRow();
                urunekle();
            }
            break;
        case Qt::Key_F1:
            ui.kaydet->click();
            break;
        case Qt::Key_F2:
            ui.nakit->click();
            break;
        case Qt::Key_F3:
            ui.satisiptal->click();
            break;
        case Qt::Key_F4:
            ui.fiyatgor->click();
            break;
        case Qt::Key_F5:
            ui.vkCommand2->click();
            break;
        case Qt::Key_F6:
            ui.vkCommand3->click();
            break;
        case Qt::Key_F7:
            ui.vkCommand1->click();
            break;
        case Qt::Key_F8:
            ui.vkCommand4->click();
            break;
        case Qt::Key_F9:
            ui.kapat->click();
            break;
        case Qt::Key_F10:
            ui.toplam->click();
            break;
        default:
            break;
    }
}

void satisekrani::Timer1_tick() {
    const QDateTime now = Clock::now();
    const auto show = [](QLabel& label, const QString& text) {
        if (label.text() != text)
            label.setText(text);
    };
    show(*ui.saat, timeText(now.time()));
    show(*ui.tarih, dateText(now.date()));
}

void satisekrani::kontorsat_tick() {
    kontorsat.setInterval(0);  // first: a message box in urunekle must not let it tick again
    giveFocus(*ui.barkod);
    urunekle();
}

void satisekrani::toplam_click() {
    eksiltme = 0;
    setWindowState(windowState() | Qt::WindowMinimized);
}

void satisekrani::kapat_click() {
    eksiltme = 0;
    if (askToCloseProgram())
        endProcess(0);
}

void satisekrani::closeEvent(QCloseEvent* event) {
    // A No doesn't cancel the request: the screen closes all the same, and with it the program.
    const bool end = askToCloseProgram();
    event->accept();
    if (end)
        endProcess(0);
}

void satisekrani::vkCommand1_click() {
    eksiltme = 0;
    showInFront(screen<menu>());
}

void satisekrani::vkCommand2_click() {
    eksiltme = 0;
    showInFront(screen<raporlarmenu>());
}

void satisekrani::vkCommand3_click() {
    eksiltme = 0;
    showInFront(screen<urunler>());
}

void satisekrani::vkCommand4_click() {
    eksiltme = 0;
    showInFront(screen<hallimzda>());
}

void satisekrani::vkCommand6_click() {
    eksiltme = 0;
    showInFront(screen<liste>());
}

/// Leaves the subtracting of money as it is, unlike the other buttons of the row.
void satisekrani::urunbulmak_click() {
    izyaz(u"UBTN urunbul ac"_s);
    showInFront(screen<urunbul>());
    screen<urunbul>().ui.nereye->setText(u"1"_s);
    izyaz(u"UBTN urunbul acildi"_s);
}

void satisekrani::satisiptal_click() {
    eksiltme = 0;
    if (ui.satisekrani1->rows() == 2) {
        mesaj(u"ONCE_SATIS_YAP"_s, MessageBoxStyle::ok, QString());
        giveFocus(*ui.barkod);
        return;
    }
    const int style = MessageBoxStyle::yesNo | MessageBoxStyle::warning;
    if (mesajsor(u"MSG_SATIS_IPTAL_SOR"_s, style, u"UYARI"_s) == MessageBoxAnswer::no)
        return;
    satistemizle();
    giveFocus(*ui.barkod);
}

std::array<vkFrame*, 4> satisekrani::panels() const {
    return {ui.urunislemleri, ui.urunbulunamadiframesi, ui.fiyatgorframe, ui.Frame2};
}

/// The panels cover the whole ticket.
void satisekrani::placePanels() {
    const QRect ticket(ui.satisekrani1->mapTo(ui.ActiveResize1, QPoint(0, 0)), ui.satisekrani1->size());
    for (vkFrame* panel : panels())
        panel->setGeometry(ticket);
}

void satisekrani::panelChanges(const QObject& panel, QEvent::Type change) {
    if (change == QEvent::Show || change == QEvent::Hide)
        maskTicket();
    if (&panel == ui.Frame2 && (change == QEvent::Show || change == QEvent::PaletteChange))
        colorQuickPanel();
}

/// Behind a panel's round corners the page is to be seen and not the ticket's own.
void satisekrani::maskTicket() {
    VSFlexGrid& grid = *ui.satisekrani1;
    const auto open = panels();
    if (std::any_of(open.begin(), open.end(), [](const vkFrame* panel) { return !panel->isHidden(); }))
        grid.setMask(QRect(grid.rect().center(), QSize(1, 1)));
    else
        grid.clearMask();
}

}  // namespace kovanix
