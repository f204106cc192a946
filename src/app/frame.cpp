#include "app/frame.h"

#include <QApplication>
#include <QFont>
#include <QLibraryInfo>
#include <QPalette>
#include <QStyleFactory>
#include <QTranslator>

#include "app/failuretext.h"
#include "database/waiting.h"
#include "desktop/application.h"
#include "desktop/messagebox.h"
#include "desktop/waitcursor.h"
#include "widgets/fieldstyle.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int designFontPixels = 16;

QPalette shopPalette() {
    const QColor ground = roleColor(ColorRole::ground);
    const QColor ink = roleColor(ColorRole::ink);
    QPalette palette(ground);
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, ink);
    palette.setColor(QPalette::Base, roleColor(ColorRole::field));
    palette.setColor(QPalette::AlternateBase, roleColor(ColorRole::zebra));
    palette.setColor(QPalette::Text, Qt::black);  // read on the barcode field's red, too
    palette.setColor(QPalette::Disabled, QPalette::Text, roleColor(ColorRole::disabledInk));
    palette.setColor(QPalette::Button, QColor(0xE6, 0xEB, 0xF2));
    palette.setColor(QPalette::ButtonText, ink);
    palette.setColor(QPalette::Highlight, roleColor(ColorRole::selectionBar));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, ink);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

}  // namespace

void nameApplication() {
    QCoreApplication::setApplicationName(u"Kovanix"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KOVANIX_VERSION));
}

void installToolkitWords() {
    auto* words = new QTranslator(QCoreApplication::instance());
    if (words->load(u"qtbase_tr"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(words);
    else
        delete words;
}

void prepareApplication() {
    nameApplication();
    // No display name: the toolkit would append it to every window title.
    QApplication::setDesktopFileName(u"kovanix"_s);
    QApplication::setStyle(new FieldStyle(QStyleFactory::create(u"Fusion"_s)));
    QApplication::setPalette(shopPalette());
    QFont font;
    font.setFamilies({u"Roboto"_s, u"Noto Sans"_s, u"DejaVu Sans"_s});
    font.setPixelSize(designFontPixels);
    QApplication::setFont(font);

    installToolkitWords();
    setMessageBoxCaptions({.ok = u"Tamam"_s,
                           .cancel = u"İptal"_s,
                           .retry = u"Yeniden dene"_s,
                           .yes = u"Evet"_s,
                           .no = u"Hayır"_s,
                           .tryAgain = u"Yeniden dene"_s,
                           .goOn = u"Devam"_s});
    Application::setFailureText(uncaughtFailureText);
    setWaitSign(showWaitCursor);
}

}  // namespace kovanix
