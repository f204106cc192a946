#include "app/frame.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

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
    palette.setColor(QPalette::Text, QColor(0x1B, 0x26, 0x36));
    palette.setColor(QPalette::Button, QColor(0xE6, 0xEB, 0xF2));
    palette.setColor(QPalette::ButtonText, QColor(0x1B, 0x26, 0x36));
    palette.setColor(QPalette::Highlight, QColor(0x1F, 0x6F, 0xEB));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x1B, 0x26, 0x36));
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

}  // namespace

void prepareApplication() {
    QApplication::setApplicationName(QStringLiteral("Kovanix"));
    // No display name: the toolkit would append it to every window title.
    QApplication::setDesktopFileName(QStringLiteral("kovanix"));
    QApplication::setApplicationVersion(QStringLiteral(KOVANIX_VERSION));
    for (const QString& place : {QStringLiteral("plugins"), QStringLiteral("../" KOVANIX_LIBDIR "/kovanix/plugins")}) {
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

    setMessageBoxCaptions({.ok = QStringLiteral("Tamam"),
                           .cancel = QStringLiteral("İptal"),
                           .retry = QStringLiteral("Yeniden dene"),
                           .yes = QStringLiteral("Evet"),
                           .no = QStringLiteral("Hayır"),
                           .tryAgain = QStringLiteral("Yeniden dene"),
                           .goOn = QStringLiteral("Devam")});
}

}  // namespace kovanix
