#include "database/statementshape.h"

#include <QDateTime>
#include <QStringView>
#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isWordStart(QChar c) {
    const char16_t folded = c.unicode() | 0x20;
    return (folded >= u'a' && folded <= u'z') || c == u'_' || c.unicode() >= 0x80;
}

/// Whether a word is a keyword, in any case.
/// @param keyword  in lower case
bool isKeyword(QStringView word, std::u16string_view keyword) {
    return word.size() == static_cast<qsizetype>(keyword.size()) &&
           std::equal(keyword.begin(), keyword.end(), word.utf16(),
                      [](char16_t small, char16_t sign) { return small == (sign | 0x20); });
}

/// Reads a statement once, from its first sign to its last.
class ShapeReader {
public:
    explicit ShapeReader(QStringView sql) : m_sql(sql) {
        m_shape.text.reserve(sql.size());
        m_shape.values.reserve(usualValues);
    }

    std::optional<StatementShape> read() {
        while (m_place < m_sql.size()) {
            if (!readToken())
                return std::nullopt;
        }
        if (m_kind == Kind::none || m_shape.values.isEmpty())
            return std::nullopt;
        m_shape.text += m_sql.sliced(m_copied);
        return std::move(m_shape);
    }

private:
    enum class Kind { none, writes, reads };
    static constexpr qsizetype usualValues = 10;

    QChar peek(qsizetype ahead = 0) const {
        return m_place + ahead < m_sql.size() ? m_sql[m_place + ahead] : QChar();
    }

    /// Takes what stands here up to an index for a value.
    void value(const QVariant& value, qsizetype end) {
        m_shape.values.append(value);
        m_shape.text += m_sql.sliced(m_copied, m_place - m_copied);
        m_shape.text += u'?';
        m_place = m_copied = end;
    }

    /// Whether a text or a moment here is a value.
    bool takesTexts() const { return m_kind == Kind::writes || m_inCondition; }

    bool readToken() {
        const QChar c = peek();
        if (isWordStart(c))
            return readWord();
        if (m_kind == Kind::none && !c.isSpace())
            return false;
        if (isDigit(c))
            return readNumber();
        switch (c.unicode()) {
            case u'\'':
                return readText();
            case u'#':
                return readMoment();
            case u'[':
                return readName(u']');
            case u'"':
            case u'`':
                return readName(c);
            case u'-':
                if (peek(1) == u'-')
                    return false;
                break;
            case u'/':
                if (peek(1) == u'*')
                    return false;
                break;
            case u'.':  // of a number without a whole part
                if (isDigit(peek(1)))
                    return false;
                break;
            case u'?':
            case u':':
            case u'@':
            case u'$':
            case u';':
                return false;
            default:
                break;
        }
        ++m_place;
        return true;
    }

    bool readWord() {
        // Beside these, a value says more than itself, or stands where the statement may have none.
        static constexpr std::array<std::u16string_view, 6> others{u"select", u"like",  u"limit",
                                                                   u"order",  u"group", u"union"};
        const qsizetype start = m_place;
        do {
            ++m_place;
        } while (m_place < m_sql.size() &&
                 (isWordStart(m_sql[m_place]) || isDigit(m_sql[m_place]) || m_sql[m_place] == u'$'));
        const QStringView word = m_sql.sliced(start, m_place - start);
        if (m_kind == Kind::none) {
            const bool writes =
                isKeyword(word, u"insert") || isKeyword(word, u"update") || isKeyword(word, u"delete");
            if (!writes && !isKeyword(word, u"select"))
                return false;
            m_kind = writes ? Kind::writes : Kind::reads;
            return true;
        }
        m_inCondition = m_inCondition || isKeyword(word, u"where");
        return std::ranges::none_of(others, [&](std::u16string_view each) { return isKeyword(word, each); });
    }

    bool readNumber() {
        qsizetype end = m_place;
        const auto skipDigits = [&] {
            while (end < m_sql.size() && isDigit(m_sql[end]))
                ++end;
        };
        skipDigits();
        bool whole = true;
        if (end < m_sql.size() && m_sql[end] == u'.') {
            whole = false;
            ++end;
            skipDigits();
        }
        // An exponent, a hexadecimal number.
        if (end < m_sql.size() && isWordStart(m_sql[end]))
            return false;
        if (m_kind == Kind::reads) {
            m_place = end;
            return true;
        }
        std::array<char, 32> digits{};
        const auto size = static_cast<std::size_t>(end - m_place);
        if (size > digits.size())
            return false;
        std::transform(m_sql.begin() + m_place, m_sql.begin() + end, digits.begin(),
                       [](QChar c) { return static_cast<char>(c.unicode()); });
        const auto read = [&](auto& number) {
            const auto [last, error] = std::from_chars(digits.data(), digits.data() + size, number);
            return error == std::errc() && last == digits.data() + size;
        };
        if (whole) {
            qint64 number = 0;
            if (!read(number))
                return false;
            value(number, end);
        } else {
            double number = 0;
            if (!read(number))
                return false;
            value(number, end);
        }
        return true;
    }

    bool readText() {
        QString text = u""_s;  // an empty one isn't null
        qsizetype end = m_place + 1;
        for (;;) {
            const qsizetype quote = m_sql.indexOf(u'\'', end);
            if (quote < 0)
                return false;
            text += m_sql.sliced(end, quote - end);
            end = quote + 1;
            if (end == m_sql.size() || m_sql[end] != u'\'')
                break;
            text += m_sql[end++];
        }
        if (takesTexts())
            value(text, end);
        else
            m_place = end;
        return true;
    }

    bool readName(QChar closing) {
        const qsizetype end = m_sql.indexOf(closing, m_place + 1);
        if (end < 0)
            return false;
        m_place = end + 1;
        return true;
    }

    /// #5/3/2021 07:05:09#, as the modules write it.
    bool readMoment() {
        const qsizetype end = m_sql.indexOf(u'#', m_place + 1);
        if (end < 0 || !takesTexts())
            return false;
        constexpr std::array<char16_t, 5> separators{u'/', u'/', u' ', u':', u':'};
        constexpr std::array<int, 6> widths{2, 2, 4, 2, 2, 2};
        std::array<int, 6> parts{};
        std::array<int, 6> digits{};
        std::size_t part = 0;
        for (qsizetype i = m_place + 1; i < end; ++i) {
            const QChar c = m_sql[i];
            if (isDigit(c) && digits[part] < widths[part]) {
                parts[part] = parts[part] * 10 + (c.unicode() - u'0');
                ++digits[part];
            } else if (part < separators.size() && c == separators[part] && digits[part] > 0) {
                ++part;
            } else {
                return false;
            }
        }
        const QDate day(parts[2], parts[0], parts[1]);
        const QTime time(parts[3], parts[4], parts[5]);
        // An older year may be a slip: whoever reads the statement as a whole says so.
        if (part != separators.size() || digits[part] == 0 || !day.isValid() || day.year() < 1000 ||
            !time.isValid())
            return false;
        QString text = u"yyyy-MM-dd HH:mm:ss"_s;
        constexpr std::array<std::pair<int, int>, 6> places{
            {{5, 7}, {8, 10}, {0, 4}, {11, 13}, {14, 16}, {17, 19}}};
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (int place = places[i].second; place-- > places[i].first; parts[i] /= 10)
                text[place] = QChar(u'0' + parts[i] % 10);
        }
        value(text, end + 1);
        return true;
    }

    QStringView m_sql;
    qsizetype m_place = 0;
    qsizetype m_copied = 0;  // what stands ahead of it is in the shape's text
    Kind m_kind = Kind::none;
    bool m_inCondition = false;
    StatementShape m_shape;
};

}  // namespace

std::optional<StatementShape> StatementShape::of(const QString& sql) {
    return ShapeReader(sql).read();
}

}  // namespace kovanix
