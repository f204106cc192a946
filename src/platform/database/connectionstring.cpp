#include <algorithm>
#include <array>
#include <optional>

#include "database/connection.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

constexpr auto dataSourceKey = "data source"_L1;
constexpr auto passwordKey = "jet oledb:database password"_L1;
constexpr std::array knownKeys{"provider"_L1, dataSourceKey, "persist security info"_L1, passwordKey};

struct Key {
    QLatin1StringView name;
    qsizetype value;  ///< where the value begins
};

qsizetype behindBlanks(QStringView text, qsizetype place) {
    while (place < text.size() && text[place].isSpace()) {
        ++place;
    }
    return place;
}

/// The known key that stands at a place, with its equals sign.
std::optional<Key> keyAt(QStringView text, qsizetype place) {
    const qsizetype start = behindBlanks(text, place);
    for (const QLatin1StringView name : knownKeys) {
        if (text.mid(start).startsWith(name, Qt::CaseInsensitive)) {
            const qsizetype sign = behindBlanks(text, start + name.size());
            if (sign < text.size() && text[sign] == u'=') {
                return Key{name, sign + 1};
            }
        }
    }
    return std::nullopt;
}

/// The next semicolon that a known key follows; the end when there is none.
qsizetype valueEnd(QStringView text, qsizetype place) {
    for (qsizetype end = text.indexOf(u';', place); end >= 0; end = text.indexOf(u';', end + 1)) {
        if (keyAt(text, end + 1)) {
            return end;
        }
    }
    return text.size();
}

}  // namespace

ConnectionString ConnectionString::parse(const QString& text) {
    ConnectionString parts;
    const auto keepFirst = [](QString& part, QStringView value) {
        if (part.isEmpty()) {
            part = value.toString();
        }
    };
    for (qsizetype place = 0; place < text.size();) {
        const std::optional<Key> key = keyAt(text, place);
        const qsizetype start = key ? key->value : place;
        const qsizetype end = valueEnd(text, start);
        const QStringView value = QStringView(text).mid(start, end - start);
        if (key && key->name == dataSourceKey) {
            keepFirst(parts.dataSource, value);
        } else if (key && key->name == passwordKey) {
            keepFirst(parts.password, value);
        }
        place = end + 1;
    }
    return parts;
}

}  // namespace kovanix
