#pragma once

#include <QList>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "database/dialect.h"

namespace kovanix {

/// Statements that are kept prepared for the next one of their shape. Whoever runs one takes it out, so that
/// nobody else steps it meanwhile, and puts it back when it has ended.
class StatementCache {
public:
    struct Kept {
        QSqlQuery query;
        std::optional<dialect::TableSelect> select = {};  ///< what a select from a single table says
        quint64 generation = 0;                           ///< of the schema cache, for such a select
        QList<qsizetype> numberPlaces = {};  ///< of its "?", where the engine takes nothing but a number

        /// Whether it can be run with these values.
        bool takes(const QVariantList& values) const {
            return std::ranges::none_of(numberPlaces, [&values](qsizetype place) {
                return values[place].typeId() == QMetaType::QString;
            });
        }
    };

    /// The statement of a shape's text; nothing where none is kept, or it is in use.
    std::optional<Kept> take(const QString& text) {
        const auto found = m_kept.find(text);
        if (found == m_kept.end())
            return std::nullopt;
        Kept kept = std::move(found->second);
        m_kept.erase(found);
        return kept;
    }

    void keep(const QString& text, Kept kept) {
        kept.query.finish();
        if (m_kept.size() >= most)
            m_kept.clear();
        m_kept.insert_or_assign(text, std::move(kept));
    }

    void clear() { m_kept.clear(); }

private:
    static constexpr std::size_t most = 32;  // a till's modules have about as many texts

    std::map<QString, Kept> m_kept;
};

}  // namespace kovanix
