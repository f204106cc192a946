#include "widgets/sharedicon.h"

#include <QDataStream>
#include <QHash>

namespace kovanix {

QIcon sharedIcon(const QIcon& icon) {
    // Only what can be drawn in any size has no sizes of its own.
    if (icon.isNull() || !icon.availableSizes().isEmpty())
        return icon;
    // An icon doesn't tell its file, but writes down what is in it.
    QByteArray content;
    QDataStream writing(&content, QIODevice::WriteOnly);
    writing << icon;
    static QHash<QByteArray, QIcon> icons;
    const auto known = icons.constFind(content);
    return known != icons.cend() ? *known : *icons.insert(content, icon);
}

QIcon sharedIcon(const QString& path) {
    if (path.isEmpty())
        return {};
    static QHash<QString, QIcon> icons;
    const auto known = icons.constFind(path);
    return known != icons.cend() ? *known : *icons.insert(path, sharedIcon(QIcon(path)));
}

}  // namespace kovanix
