#include "widgets/controlarray.h"

#include <algorithm>
#include <utility>

namespace kovanix {
namespace {

// "tus_07" and "tus_+7" are no members: an index has one way to be written.
std::optional<int> indexIn(QStringView suffix) {
    bool isNumber = false;
    const int index = suffix.toInt(&isNumber);
    if (!isNumber || index < 0 || QString::number(index) != suffix)
        return std::nullopt;
    return index;
}

}  // namespace

std::vector<QWidget*> controlArray(const QWidget& screen, const QString& name) {
    const QString prefix = name + QLatin1Char('_');
    std::vector<std::pair<int, QWidget*>> found;
    const QList<QWidget*> controls = screen.findChildren<QWidget*>();
    for (QWidget* control : controls) {
        const QString own = control->objectName();
        if (!own.startsWith(prefix))
            continue;
        if (const auto index = indexIn(QStringView(own).mid(prefix.size())))
            found.emplace_back(*index, control);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    std::vector<QWidget*> members;
    members.reserve(found.size());
    for (const auto& [index, control] : found)
        members.push_back(control);
    return members;
}

std::optional<int> controlIndex(const QWidget& control) {
    const QString name = control.objectName();
    const qsizetype underscore = name.lastIndexOf(QLatin1Char('_'));
    if (underscore <= 0)
        return std::nullopt;
    return indexIn(QStringView(name).mid(underscore + 1));
}

}  // namespace kovanix
