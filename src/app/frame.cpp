#include "app/frame.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QLibraryInfo>
#include <QPalette>
#include <QStyleFactory>
#include <QTranslator>

#include "desktop/messagebox.h"

namespace kovanix {

namespace {

constexpr int designFontPixels = 16;

QPalette shopPalette() {
    QPalette palette(QColor(0xF1, 0xF4, 0xF8));
    palette.setColor(QPalette::Window, QColor(0xF1, 0xF4, 0xF8));
    palette.setColor(QPalette::WindowText, QColor(0x1B, 0x26, 0x36));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xF5, 0xF8, 0xFC));
    palette.setColor(QPalette::Text, Qt::black);  // read on the barcode field's red, too
    palette.setColor(QPalette::Button, QColor(0xE6, 0xEB, 0xF2));
    palette.setColor(QPalette::ButtonText, QColor(0x1B, 0x26, 0x36));
    palette.setColor(QPalette::Highlight, QColor(0x1F, 0x6F, 0xEB));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x1B, 0x26, 0x36));
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
    for (const QString& place :
         {QStringLiteral("plugins"), QStringLiteral("../" KOVANIX_LIBDIR "/kovanix/plugins")}) {
        const QDir plugins(QDir(QApplication::applicationDirPath()).filePath(place));
        if (plugins.exists())
            QApplication::addLibraryPath(plugins.absolutePath());
    }

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
