#include "yedek/copies.h"

#include <QDir>
#include <algorithm>
#include <functional>

#include "runtime/attempt.h"
#include "yedek/packedcopy.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

const QString nameFormat = u"'kovanix-'yyyy-MM-dd-HHmmss'.yedek'"_s;

}  // namespace

QString copyName(const QDateTime& moment) {
    return moment.toString(nameFormat);
}

QDateTime momentOfName(const QString& name) {
    return QDateTime::fromString(name, nameFormat);
}

QList<Copy> copiesIn(const QString& folder) {
    QList<Copy> copies;
    const QFileInfoList files =
        QDir(folder).entryInfoList({u"kovanix-*.yedek"_s}, QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo& file : files) {
        if (!momentOfName(file.fileName()).isValid())
            continue;
        attempt([&] {
            Copy copy{file.absoluteFilePath(), file.size(), readManifest(file.absoluteFilePath())};
            if (copyName(copy.manifest.moment) == file.fileName())
                copies.append(std::move(copy));
        });
    }
    std::ranges::sort(copies, std::greater(), [](const Copy& copy) { return copy.manifest.moment; });
    return copies;
}

}  // namespace kovanix::yedek
