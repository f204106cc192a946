#include "sales/quickkeys.h"

#include "values/numbers.h"

namespace kovanix {

namespace {
constexpr qsizetype longestName = 28;  // characters of a page's name, in a line of words
}  // namespace

int quickPage(QStringView text) {
    const double number = toNumber(text).value_or(1);
    for (int page = 1; page <= quickPages; ++page) {
        if (number == page)
            return page;
    }
    return 1;
}

QString quickPageKey(int page) {
    return QStringLiteral("hizliurunkat") + QString::number(page);
}

QString quickNameKey(int page, int index) {
    return QString::number(page) + QStringLiteral("hizliurun") + QString::number(index);
}

QString quickBarcodeKey(int page, int index) {
    return QString::number(page) + QStringLiteral("hizlibarkod") + QString::number(index);
}

std::optional<int> quickSlot(QStringView edited) {
    for (int index = 0; index < quickKeysOnPage; ++index) {
        if (edited == QString::number(index))
            return index;
    }
    return std::nullopt;
}

std::optional<int> quickCategory(QStringView edited) {
    for (int page = 1; page <= quickPages; ++page) {
        if (edited == editedCategory(page))
            return page;
    }
    return std::nullopt;
}

QString editedCategory(int page) {
    return QString::number(page).repeated(2);
}

QString quickKeyWords(QStringView edited, int page, const QString& pageName) {
    const QString number = QString::number(page) + u'.';
    QString name = pageName.trimmed();
    if (name.size() > longestName)
        name = name.left(longestName - 1) + u'…';  // the key's number matters more
    if (const auto slot = quickSlot(edited)) {
        const QString where =
            name.isEmpty() ? number + QStringLiteral(" sayfa") : name + QStringLiteral(" sayfası");
        return where + QStringLiteral(", ") + QString::number(*slot + 1) + QStringLiteral(". tuş");
    }
    if (quickCategory(edited))
        return name.isEmpty() ? number + QStringLiteral(" sayfanın adı")
                              : name + QStringLiteral(" sayfasının adı");
    return {};
}

}  // namespace kovanix
