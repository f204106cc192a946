#include "widgets/pictures.h"

#include <QCoreApplication>
#include <QHash>
#include <QSvgRenderer>

namespace kovanix {

namespace {

/// The built-in pictures that have been asked for, by path.
struct Pictures {
    QHash<QString, QIcon> icons;
    QHash<QString, std::shared_ptr<QSvgRenderer>> drawings;
};

Pictures& pictures() {
    static Pictures all;
    // Pictures must be gone before the toolkit is.
    if (all.icons.isEmpty() && all.drawings.isEmpty())
        qAddPostRoutine([] { all = {}; });
    return all;
}

bool isBuiltIn(const QString& path) {
    return path.startsWith(u':');
}

}  // namespace

QIcon sharedIcon(const QString& path) {
    if (!isBuiltIn(path))
        return QIcon(path);
    QIcon& icon = pictures().icons[path];
    if (icon.isNull())
        icon = QIcon(path);
    return icon;
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
