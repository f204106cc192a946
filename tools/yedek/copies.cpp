#include "yedek/copies.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>
#include <functional>

#include "runtime/attempt.h"
#include "yedek/packedcopy.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

const QString momentFormat = u"yyyy-MM-dd-HHmmss"_s;
const QRegularExpression form(u"\\Akovanix-(\\d{4}-\\d{2}-\\d{2}-\\d{6})(?:-([0-9a-f]+))?\\.yedek\\z"_s);

}  // namespace

CopyName CopyName::of(const QString& name) {
    const QRegularExpressionMatch match = form.match(name);
    return {QDateTime::fromString(match.captured(1), momentFormat), match.captured(2)};
}

QString CopyName::text() const {
    return u"kovanix-"_s + moment.toString(momentFormat) + (shop.isEmpty() ? QString() : u'-' + shop) +
           u".yedek";
}

bool CopyName::fits(const Manifest& manifest) const {
    return moment.isValid() && text() == CopyName{manifest.moment, shop}.text() &&
           (shop.isEmpty() || shop == manifest.shop);
}

QList<Copy> copiesIn(const QString& folder) {
    QList<Copy> copies;
    const QFileInfoList files =
        QDir(folder).entryInfoList({u"kovanix-*.yedek"_s}, QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo& file : files) {
        const CopyName name = CopyName::of(file.fileName());
        if (!name.moment.isValid())
            continue;
        attempt([&] {
            Copy copy{file.absoluteFilePath(), file.size(), readManifest(file.absoluteFilePath())};
            if (name.fits(copy.manifest))
                copies.append(std::move(copy));
        });
    }
    std::ranges::sort(copies, std::greater(), [](const Copy& copy) { return copy.manifest.moment; });
    return copies;
}

}  // namespace kovanix::yedek
