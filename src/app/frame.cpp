#include "app/frame.h"

#include <QApplication>
#include <QFont>
#include <QLibraryInfo>
#include <QPalette>
#include <QStyleFactory>
#include <QTranslator>

#include "desktop/messagebox.h"
#include "widgets/look.h"

namespace kovanix {

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
    palette.setColor(QPalette::Button, QColor(0xE6, 0xEB, 0xF2));
    palette.setColor(QPalette::ButtonText, ink);
    palette.setColor(QPalette::Highlight, roleColor(ColorRole::selectionBar));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, ink);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

// The words of the toolkit's own dialogs. A machine without them shows English there; ours are never looked
// up.
void installToolkitWords() {
    auto* words = new QTranslator(qApp);
    if (words->load(QStringLiteral("qtbase_tr"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(words);
    else
        delete words;
}

}  // namespace

void prepareApplication() {
    QApplication::setApplicationName(QStringLiteral("Kovanix"));
    // No display name: the toolkit would append it to every window title.
    QApplication::setDesktopFileName(QStringLiteral("kovanix"));
    QApplication::setApplicationVersion(QStringLiteral(KOVANIX_VERSION));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(shopPalette());
    QFont font;
    font.setFamilies({QStringLiteral("Roboto"), QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")});
    font.setPixelSize(designFontPixels);
    QApplication::setFont(font);

    installToolkitWords();
    setMessageBoxCaptions({.ok = QStringLiteral("Tamam"),
                           .cancel = QStringLiteral("İptal"),
                           .retry = QStringLiteral("Yeniden dene"),
                           .yes = QStringLiteral("Evet"),
                           .no = QStringLiteral("Hayır"),
                           .tryAgain = QStringLiteral("Yeniden dene"),
                           .goOn = QStringLiteral("Devam")});
}

}  // namespace kovanix
