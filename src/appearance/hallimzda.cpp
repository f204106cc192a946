#include "appearance/hallimzda.h"

#include <QCoreApplication>
#include <QEvent>

#include "app/modTurkce.h"
#include "appearance/ekoz.h"
#include "desktop/focus.h"
#include "runtime/screenregistry.h"
#include "widgets/fontsize.h"
#include "widgets/keyfilter.h"

namespace kovanix {

namespace {

QString productText() {
    return u"Kovanix " + QCoreApplication::applicationVersion() +
           u", Linux için bir satış kasası programıdır.\n"
           u"Barkodu okutur, para üstünü hesaplar, fişi basar; her satışı ve stoku dükkânın kendi dosyasında "
           u"saklar.";
}

}  // namespace

hallimzda::hallimzda() {
    ui.setupUi(this);
    setDesignFonts();
    connect(ui.Image1, &Image::clicked, this, &hallimzda::Image1_click);
    connect(ui.vkCommand1, &QAbstractButton::clicked, this, &hallimzda::vkCommand1_click);
    connect(ui.urunbulunamadikapat, &QAbstractButton::clicked, this, &hallimzda::urunbulunamadikapat_click);
    // A picture knows neither keys nor a focus ring: its frame shows the focus.
    new KeyFilter(*ui.Image1,
                  [this](int key) {
                      if (key == Qt::Key_Return || key == Qt::Key_Space)
                          Image1_click();
                  },
                  {});
    ui.Image1->installEventFilter(this);
    setCloseButton(*ui.urunbulunamadikapat);
}

hallimzda::~hallimzda() = default;

void hallimzda::setDesignFonts() {
    setPixels(*ui.Label1, 30, QFont::Bold);
    setPixels(*ui.Label2, 18);
    setPixels(*ui.Label4, 18);
    setPixels(*ui.printedText, 16);
    for (QWidget* button : {ui.vkCommand1, ui.urunbulunamadikapat})
        setPixels(*button, 18, QFont::Medium);
}

void hallimzda::form_load() {
    ekrandonat(*this);
    ui.Label2->setText(metin(QStringLiteral("VERSIYON")) + QCoreApplication::applicationVersion());
}

bool hallimzda::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui.Image1 && (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut))
        colourLogoFrame(event->type() == QEvent::FocusIn ? QColor(0x1F, 0x6F, 0xEB) : QColor(Qt::white));
    return OpenedScreen::eventFilter(watched, event);
}

void hallimzda::colourLogoFrame(const QColor& color) {
    ui.logoFrame->setBackcolor1(color);
    ui.logoFrame->setBackcolor2(color);
    ui.logoFrame->setBordercolor(color);
}

void hallimzda::Image1_click() {
    ui.printedText->setText(productText());
}

void hallimzda::vkCommand1_click() {
    showInFront(screen<ekoz>());
}

void hallimzda::urunbulunamadikapat_click() {
    leave();
}

}  // namespace kovanix
