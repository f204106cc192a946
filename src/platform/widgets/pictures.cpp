#include "widgets/pictures.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QHash>
#include <QSvgRenderer>

namespace kovanix {

namespace {

/// The built-in pictures that have been asked for, by path; icons by what is in them, too.
struct Pictures {
    QHash<QString, QIcon> icons;
    QHash<QByteArray, QIcon> iconsByContent;
    QHash<QString, std::shared_ptr<QSvgRenderer>> drawings;
};

Pictures& pictures() {
    static Pictures all;
    // Pictures must be gone before the toolkit is.
    if (all.iconsByContent.isEmpty() && all.drawings.isEmpty())
        qAddPostRoutine([] { all = {}; });
    return all;
}

bool isBuiltIn(const QString& path) {
    return path.startsWith(u':');
}

}  // namespace

QIcon sharedIcon(const QString& path) {
    if (!isBuiltIn(path))
        return sharedIcon(QIcon(path));
    QIcon& icon = pictures().icons[path];
    if (icon.isNull())
        icon = sharedIcon(QIcon(path));
    return icon;
}

QIcon sharedIcon(const QIcon& icon) {
    // Only what can be drawn in any size has no sizes of its own.
    if (icon.isNull() || !icon.availableSizes().isEmpty())
        return icon;
    // An icon doesn't tell its file, but writes down what is in it.
    QByteArray content;
    QDataStream writing(&content, QIODevice::WriteOnly);
    writing << icon;
    QIcon& shared = pictures().iconsByContent[content];
    if (shared.isNull())
        shared = icon;
    return shared;
}

std::shared_ptr<QSvgRenderer> sharedDrawing(const QString& path) {
    if (!isBuiltIn(path))
        return std::make_shared<QSvgRenderer>(path);
    std::shared_ptr<QSvgRenderer>& drawing = pictures().drawings[path];
    if (!drawing)
        drawing = std::make_shared<QSvgRenderer>(path);
    return drawing;
}

}  // namespace kovanix
