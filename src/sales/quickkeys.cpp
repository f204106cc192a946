#include "sales/quickkeys.h"

#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

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
    return u"hizliurunkat"_s + QString::number(page);
}

QString quickNameKey(int page, int index) {
    return QString::number(page) + u"hizliurun"_s + QString::number(index);
}

QString quickBarcodeKey(int page, int index) {
    return QString::number(page) + u"hizlibarkod"_s + QString::number(index);
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
        const QString where = name.isEmpty() ? number + u" sayfa"_s : name + u" sayfası"_s;
        return where + u", "_s + QString::number(*slot + 1) + u". tuş"_s;
    }
    if (quickCategory(edited))
        return name.isEmpty() ? number + u" sayfanın adı"_s : name + u" sayfasının adı"_s;
    return {};
}

}  // namespace kovanix
