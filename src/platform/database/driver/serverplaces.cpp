#include "serverplaces.h"

#include <algorithm>
#include <string_view>

namespace kovanix::engine {

namespace {

/// Whether a byte may stand in a name. All of those that aren't ASCII may.
bool isNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '_' || byte < 0;
}

/// Goes through a statement by what stands undivided in it.
class Scanner {
public:
    explicit Scanner(std::string_view sql) : m_sql(sql) {}

    bool atEnd() const { return m_at == m_sql.size(); }

    /// The next part: a literal, a quoted name, a comment, a name, or a single byte.
    std::string_view next() {
        const std::size_t start = m_at;
        m_at = std::min(endOfPart(), m_sql.size());
        return m_sql.substr(start, m_at - start);
    }

private:
    char at(std::size_t place) const { return place < m_sql.size() ? m_sql[place] : '\0'; }
    bool startsAt(std::size_t place, std::string_view text) const {
        return m_sql.substr(place).starts_with(text);
    }
    /// The place behind the next occurrence of a text; the end where there is none.
    std::size_t behind(std::string_view text, std::size_t from) const {
        const std::size_t found = m_sql.find(text, from);
        return found == std::string_view::npos ? m_sql.size() : found + text.size();
    }

    std::size_t endOfPart() const {
        const char first = at(m_at);
        if (first == '\'' || first == '"')
            return behind(m_sql.substr(m_at, 1), m_at + 1);  // a doubled sign begins the next part
        if (startsAt(m_at, "--"))
            return behind("\n", m_at);
        if (startsAt(m_at, "/*"))
            return endOfComment();
        if (first == '$')
            return endOfDollarQuote();
        if ((first == 'e' || first == 'E') && at(m_at + 1) == '\'')
            return endOfEscapedLiteral();
        if (!isNameByte(first))
            return m_at + 1;
        std::size_t end = m_at;
        while (isNameByte(at(end)) || at(end) == '$') {
            ++end;
        }
        return end;
    }

    /// Comments lie in each other.
    std::size_t endOfComment() const {
        std::size_t end = m_at + 2;
        for (int depth = 1; depth > 0 && end < m_sql.size();) {
            const bool opens = startsAt(end, "/*");
            const bool closes = startsAt(end, "*/");
            depth += opens ? 1 : closes ? -1 : 0;
            end += opens || closes ? 2 : 1;
        }
        return end;
    }

    std::size_t endOfDollarQuote() const {
        std::size_t end = m_at + 1;
        if (at(end) >= '0' && at(end) <= '9')
            return end;  // a place that has its number
        while (isNameByte(at(end))) {
            ++end;
        }
        return at(end) == '$' ? behind(m_sql.substr(m_at, end + 1 - m_at), end + 1) : m_at + 1;
    }

    std::size_t endOfEscapedLiteral() const {
        std::size_t end = m_at + 2;
        while (end < m_sql.size() && at(end) != '\'') {
            end += at(end) == '\\' ? 2 : 1;
        }
        return end + 1;
    }

    const std::string_view m_sql;
    std::size_t m_at = 0;
};

}  // namespace

NumberedPlaces NumberedPlaces::of(const QByteArray& sql) {
    NumberedPlaces numbered;
    for (Scanner scanner({sql.constData(), static_cast<std::size_t>(sql.size())}); !scanner.atEnd();) {
        const std::string_view part = scanner.next();
        if (part == "?")
            numbered.sql.append('$').append(QByteArray::number(++numbered.count));
        else
            numbered.sql.append(part.data(), static_cast<qsizetype>(part.size()));
    }
    return numbered;
}

}  // namespace kovanix::engine
