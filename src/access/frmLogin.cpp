#include "access/frmLogin.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLayout>
#include <QPainter>
#include <QPainterPath>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSignalBlocker>
#include <QVersionNumber>
#include <algorithm>

#include "access/kullanicilar.h"
#include "access/loginbackdrop.h"
#include "access/sifreleme.h"
#include "access/userrows.h"
#include "app/ayarmodul.h"
#include "app/modTrace.h"
#include "app/modTurkce.h"
#include "app/session.h"
#include "appearance/keyboard.h"
#include "appearance/mdlMonitors.h"
#include "appearance/modTema.h"
#include "appearance/uyari.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/folders.h"
#include "desktop/messagebox.h"
#include "desktop/shell.h"
#include "runtime/attempt.h"
#include "runtime/process.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "screens/focusreturn.h"
#include "values/numbers.h"
#include "widgets/colorvalue.h"
#include "widgets/controlcolor.h"
#include "widgets/keyfilter.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int widestSmallScreen = 800;    // pixels
constexpr int narrowestWaitScreen = 640;  // pixels
constexpr int waitTime = 1500;            // milliseconds
constexpr int cardRadius = 10;            // pixels
constexpr QSizeF designDisplay(1024, 768);
constexpr int keyboardCode = 18;  // the on-screen keyboard's target: the password

constexpr ColorValue buttonTop = 0xFBFBFB;
constexpr ColorValue hideBottom = 0x80FF80;
constexpr ColorValue showBottom = 0x00FFFF;

const QString& passwordStar() {
    static const QString star = u"*"_s;
    return star;
}

/// The entry of a list at a place; empty where it has none.
QString entry(const QListWidget& list, int place) {
    const QListWidgetItem* item = list.item(place);
    return item ? item->text() : QString();
}

/// The text of what a list has selected.
QString selectedText(const QListWidget& list) {
    return entry(list, list.currentRow());
}

QString versionText() {
    const QVersionNumber version = QVersionNumber::fromString(QCoreApplication::applicationVersion());
    return metin(u"VERSIYON"_s) + QString::number(version.majorVersion()) + u'-' +
           QString::number(version.minorVersion()) + u'-' + QString::number(version.microVersion());
}

/// Starts a program of the application folder; one that isn't there changes nothing.
void startBeside(const QString& storedName) {
    static_cast<void>(startProgram(joinStored(applicationFolder(), storedName)));
}

}  // namespace

frmLogin::frmLogin() {
    ui.setupUi(this);
    ui.kullanici->setItemDelegate(new UserRows(ui.kullanici));
    applyTextRoles(*this);
    setForeColor(*ui.ver, roleColor(ColorRole::mutedInk, Tone::dark));
    connectControls();
    // With the users too out of reach: an Enter must not start one of the programs.
    ui.sifre->setFocus();
}

frmLogin::~frmLogin() = default;

void frmLogin::connectControls() {
    clicks(this, {{ui.cmdOK, &frmLogin::cmdOK_click},
                  {ui.cmdCancel, &frmLogin::cmdCancel_click},
                  {ui.vkCommand1, &frmLogin::vkCommand1_click},
                  {ui.destekprograminiac, &frmLogin::destekprograminiac_click},
                  {ui.yazilimguncelle, &frmLogin::yazilimguncelle_click}});
    // A list's click comes with every choice by mouse or key, and with a press on the row that is chosen
    // already.
    connect(ui.kullanici, &QListWidget::currentRowChanged, this, &frmLogin::kullanici_click);
    connect(ui.kullanici, &QListWidget::itemClicked, this, &frmLogin::kullanici_click);
    new KeyFilter(
        *ui.sifre, [this](int key) { sifre_keydown(key); },
        [this](int code) { return sifre_keypress(code); });
    connect(ui.Image3, &Image::clicked, this, [this] { openKeyboard(keyboardCode, *this); });
}

void frmLogin::form_load() {
    izyaz(u"FRM01 giris"_s);
    izyaz(u"FRM01a preMetin"_s);
    setCaptions();
    izyaz(u"FRM01b postMetin"_s);
    readSettings();
    izyaz(u"FRM02 preEnum"_s);
    monitorlerioku();
    izyaz(u"FRM03 postEnum"_s);
    ui.ver->setText(versionText());
    fitWindow();
    izyaz(u"FRM04 preBaglan"_s);
    toplamtemadegisken = temasayisi(u"toplamtemadegisken"_s);
    izyaz(u"FRM05 postListele"_s);
}

void frmLogin::setCaptions() {
    ui.cmdOK->setCaption(metin(u"GIRIS"_s));
    ui.cmdCancel->setCaption(metin(u"KAPAT"_s));
    ui.Label1->setText(metin(u"KULLANICI_ADI"_s));
    ui.Label7->setText(metin(u"SIFRE"_s));
    ui.kullanici->setAccessibleName(ui.Label1->text());
    ui.sifre->setAccessibleName(ui.Label7->text());
    // It offers to hide a password that is hidden, so that its first press seems to do nothing: required.
    ui.vkCommand1->setCaption(metin(u"SIFRE_GIZLE"_s));
    ui.vkCommand1->setToolTip(metin(u"SIFREYI_GIZLE"_s));
    ekranbasligi(*this);
    kontrolleridolas(*this);
}

void frmLogin::readSettings() {
    ekledznlsil = ayar(u"ekledznlsil"_s);
    sifresor2 = ayar(u"sifresor2"_s);
    ensonkikisayol = ayar(u"ensonkikisayol"_s);
    temadegiskenlerioku();
    kaydedilenigetir = temasayisi(u"kaydedilenigetir"_s);
}

/// Small screens are filled by the controls; on larger ones their card keeps its design size in the middle of
/// the display.
void frmLogin::fitWindow() {
    const QSize display(Monitors.front().width, Monitors.front().height);
    if (display.width() <= widestSmallScreen) {
        setWindowState(Qt::WindowMaximized);
        return;
    }
    ActiveResize& card = *ui.boyutlandirma;
    card.setResizing(false);
    card.setFixedSize(card.designSize());
    layout()->setAlignment(&card, Qt::AlignCenter);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(card.rect()), cardRadius + 1, cardRadius + 1);
    card.setMask(QRegion(outline.toFillPolygon().toPolygon()));
    // Not maximised: the window is the display's size by itself, and has nothing around it.
    setWindowFlag(Qt::FramelessWindowHint);
    const QScreen& screen = *QGuiApplication::primaryScreen();
    setGeometry(screen.size() == display ? screen.availableGeometry()
                                         : QRect(screen.geometry().topLeft(), display));
}

void frmLogin::paintEvent(QPaintEvent* event) {
    Screen::paintEvent(event);
    const ActiveResize& card = *ui.boyutlandirma;
    if (card.isResizing())
        return;
    const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (m_backdrop.size() != wanted) {
        const double scale = std::min(width() / designDisplay.width(), height() / designDisplay.height());
        m_backdrop = loginBackdrop(size(), scale, devicePixelRatioF());
        // Below the card, whose own corners are cut without a smooth edge: at its light side.
        QPainter painter(&m_backdrop);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipRect(card.geometry().adjusted(2 * cardRadius, 0, 0, 0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().window());
        painter.drawRoundedRect(card.geometry(), cardRadius, cardRadius);
    }
    QPainter(this).drawPixmap(0, 0, m_backdrop);
}

void frmLogin::FrmloginBaglantiSonrasi() {
    // A table that can't be read leaves the list empty; the login button tries again, and tells. A server
    // that has fallen away since it was opened is told of as one that is away at the start.
    const int ids = ui.kullaniciid->count();
    const auto takeBack = [this, ids] {  // what a listing that broke off has left
        for (QListWidget* list : {ui.kullanici, ui.sifreler, ui.acilisi})
            list->clear();
        while (ui.kullaniciid->count() > ids)
            delete ui.kullaniciid->takeItem(ids);
    };
    const ReadEnd end = readReport([&] {
        takeBack();
        kullanicilistele();
    });
    if (end == ReadEnd::nothing)
        takeBack();
}

void frmLogin::kullanicilistele() {
    const QSignalBlocker quiet(ui.kullanici);
    // The ids aren't cleared, as required: a second listing puts them behind the old ones, out of step with
    // the names, until the screen is loaded anew.
    for (QListWidget* list : {ui.kullanici, ui.sifreler, ui.acilisi})
        list->clear();
    Recordset users;
    users.open(u"SELECT * FROM kullanici"_s, baglanti());
    if (users.atEnd()) {
        users.close();
        mesaj(u"KULLANICI_EKLE"_s, MessageBoxStyle::ok, QString());
        kullanicilarac();
        return;
    }
    // An older table may lack a field, its counter most likely: the others are listed all the same.
    for (; !users.atEnd(); users.moveNext()) {
        attempt([&] { ui.kullanici->addItem(nullmetin(users.field(u"personeladi"_s))); });
        attempt([&] { ui.kullaniciid->addItem(nullmetin(users.field(u"id"_s))); });
        attempt([&] { ui.sifreler->addItem(sifremetni(users.field(u"sifre"_s))); });
        attempt([&] { ui.acilisi->addItem(nullmetin(users.field(u"yetki"_s))); });
    }
    users.close();
    ui.kullanici->setCurrentRow(0);
    kullanici_click();
}

/// Shows the screen of the users in front of this one, and doesn't wait for it.
void frmLogin::kullanicilarac() {
    setFocusReturn(*ui.sifre);
    showInFront(screen<kullanicilar>(), {.opener = this});
}

void frmLogin::kullanici_click() {
    const int row = ui.kullanici->currentRow();
    if (row < 0)
        return;
    for (QListWidget* list : {ui.sifreler, ui.acilisi, ui.kullaniciid})
        list->setCurrentRow(row);
    giveFocus(*ui.sifre);
}

/// The arrows go on through the users although a choice takes the focus away from their list.
void frmLogin::sifre_keydown(int key) {
    const int step = key == Qt::Key_Down ? 1 : key == Qt::Key_Up ? -1 : 0;
    const int row = ui.kullanici->currentRow() + step;
    if (step != 0 && row >= 0 && row < ui.kullanici->count())
        ui.kullanici->setCurrentRow(row);
}

int frmLogin::sifre_keypress(int code) {
    if (code != u'\r')
        return code;
    ui.cmdOK->click();
    return 0;
}

void frmLogin::vkCommand1_click() {
    const bool show = ui.vkCommand1->caption() == metin(u"SIFRE_GOSTER"_s);
    ui.sifre->setPasswordchar(show ? QString() : passwordStar());
    ui.vkCommand1->setCaption(metin(show ? u"SIFRE_GIZLE"_s : u"SIFRE_GOSTER"_s));
    ui.vkCommand1->setBackcolor1(colorOf(buttonTop));
    ui.vkCommand1->setBackcolor2(colorOf(show ? hideBottom : showBottom));
    ui.vkCommand1->setToolTip(metin(show ? u"SIFREYI_GIZLE"_s : u"SIFREYI_GOSTER"_s));
}

void frmLogin::cmdOK_click() {
    if (m_loggingIn)
        return;
    const QScopedValueRollback busy(m_loggingIn, true);
    try {
        logIn();
    } catch (const RuntimeError& error) {
        mesaj(u"Giri# s|ras|nda hata: " + error.description(), MessageBoxStyle::critical, metin(u"HATA"_s));
    }
}

void frmLogin::logIn() {
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    if (ui.kullanici->count() == 0)
        kullanicilistele();
    if (ui.kullanici->count() == 0) {
        // The second notice of one press, behind the listing's own: required.
        mesaj(u"KULLANICI_EKLE"_s, MessageBoxStyle::ok, QString());
        return;
    }
    if (ui.kullanici->currentRow() < 0)
        ui.kullanici->setCurrentRow(0);
    kullanici_click();
    if (!sifrekontrol()) {
        izyaz(u"CMD sifre uyusmadi"_s);
        mesaj(u"SIFRE_YANLIS"_s, MessageBoxStyle::ok, QString());
        ui.sifre->clear();
        giveFocus(*ui.sifre);
        return;
    }
    const int width = Monitors.front().width;
    if (width >= narrowestWaitScreen && width <= widestSmallScreen) {
        screen<uyari>().kapat.setInterval(waitTime);
        screen<uyari>().ui.yazi->setText(metin(u"YUKLENIYOR"_s));
        showInFront(screen<uyari>());
    }
    izyaz(u"CMD girisyap cagir"_s);
    girisyap();
    if (loaded<satisekrani>() && screen<satisekrani>().isVisible())
        unload<frmLogin>();
}

bool frmLogin::sifrekontrol() {
    const QString entered = ui.sifre->text().trimmed();
    std::optional<QString> accepted = listedPassword(entered);
    if (!accepted)
        accepted = storedPassword(entered);
    if (!accepted)
        return false;
    const QString id = selectedId();
    if (!sifreozetmi(*accepted) && !entered.isEmpty() && !id.isEmpty())
        sifreguncelle(id, entered);
    return true;
}

/// The entry of the hidden list, where the password is the right one for it.
std::optional<QString> frmLogin::listedPassword(const QString& entered) const {
    const int row = ui.kullanici->currentRow();
    if (row < 0 || row >= ui.sifreler->count())
        return std::nullopt;
    const QString listed = sifremetni(entry(*ui.sifreler, row));
    return sifredogrula(entered, listed) ? std::optional(listed) : std::nullopt;
}

/// What the table holds at this moment, where the password is the right one for it: the list may be out of
/// date.
std::optional<QString> frmLogin::storedPassword(const QString& entered) {
    const QString id = selectedId();
    if (id.isEmpty()) {
        izyaz(u"CMD sifre: kullanici id bos"_s);
        return std::nullopt;
    }
    if (!baglantihazir())
        return std::nullopt;
    const QString select = u"SELECT sifre FROM kullanici WHERE "_s;
    Recordset user;
    if (const std::optional<double> number = toNumber(id))
        user.open(select + u"id=" + QString::number(*number, 'f', 0), baglanti());
    else
        user.open(select + u"id='" + sqlmetin(id) + u'\'', baglanti());
    const QString name = selectedText(*ui.kullanici).trimmed();
    if (user.atEnd() && !name.isEmpty()) {
        user.close();
        user.open(select + u"personeladi='" + sqlmetin(name) + u'\'', baglanti());
    }
    if (user.atEnd()) {
        izyaz(u"CMD sifre: kullanici bulunamadi id=" + id);
        return std::nullopt;
    }
    const QString stored = sifremetni(user.field(u"sifre"_s));
    user.close();
    if (sifredogrula(entered, stored))
        return stored;
    izyaz(u"CMD sifre uyusmadi uid=" + id + u" storedlen=" + QString::number(stored.size()));
    return std::nullopt;
}

/// The id that stands beside the selected user, or the one that is selected where no user is.
QString frmLogin::selectedId() const {
    const int row = ui.kullanici->currentRow();
    return (row >= 0 ? entry(*ui.kullaniciid, row) : selectedText(*ui.kullaniciid)).trimmed();
}

void frmLogin::cmdCancel_click() {
    if (!askToCloseProgram())
        return;
    baglantikapatsessiz();
    endProcess(0);
}

void frmLogin::destekprograminiac_click() {
    startBeside(u"\\TORVELAKA.exe"_s);
}

/// The process ends whether or not the update started, so that the program's files can be replaced.
void frmLogin::yazilimguncelle_click() {
    startBeside(u"\\Kovanix-Guncelle.exe"_s);
    baglantikapatsessiz();
    endProcess(0);
}

}  // namespace kovanix
