#include "database/statementshape.h"

#include <QDateTime>
#include <QLatin1StringView>
#include <QStringView>
#include <algorithm>
#include <array>

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isWordStart(QChar c) {
    return c.isLetter() || c == u'_' || c.unicode() >= 0x80;
}

bool sameWord(QStringView word, QLatin1StringView other) {
    return word.size() == other.size() && word.compare(other, Qt::CaseInsensitive) == 0;
}

/// Reads a statement once, from its first sign to its last.
class ShapeReader {
public:
    explicit ShapeReader(QStringView sql) : m_sql(sql) { m_shape.text.reserve(sql.size()); }

    std::optional<StatementShape> read() {
        while (m_place < m_sql.size()) {
            if (!readToken())
                return std::nullopt;
        }
        if (m_kind == Kind::none || m_shape.values.isEmpty())
            return std::nullopt;
        return std::move(m_shape);
    }

private:
    enum class Kind { none, writes, reads };

    QChar peek(qsizetype ahead = 0) const {
        return m_place + ahead < m_sql.size() ? m_sql[m_place + ahead] : QChar();
    }

    void copyTo(qsizetype end) {
        m_shape.text += m_sql.sliced(m_place, end - m_place);
        m_place = end;
    }

    void value(const QVariant& value, qsizetype end) {
        m_shape.values.append(value);
        m_shape.text += u'?';
        m_place = end;
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
        copyTo(m_place + 1);
        return true;
    }

    bool readWord() {
        // Beside these, a value says more than itself, or stands where the statement may have none.
        static constexpr std::array others{"SELECT"_L1, "LIKE"_L1,  "LIMIT"_L1,
                                           "ORDER"_L1,  "GROUP"_L1, "UNION"_L1};
        qsizetype end = m_place + 1;
        while (end < m_sql.size() && (isWordStart(m_sql[end]) || isDigit(m_sql[end]) || m_sql[end] == u'$'))
            ++end;
        const QStringView word = m_sql.sliced(m_place, end - m_place);
        if (m_kind == Kind::none) {
            const bool writes =
                sameWord(word, "INSERT"_L1) || sameWord(word, "UPDATE"_L1) || sameWord(word, "DELETE"_L1);
            if (!writes && !sameWord(word, "SELECT"_L1))
                return false;
            m_kind = writes ? Kind::writes : Kind::reads;
        } else if (std::ranges::any_of(others,
                                       [&](QLatin1StringView each) { return sameWord(word, each); })) {
            return false;
        } else if (sameWord(word, "WHERE"_L1)) {
            m_inCondition = true;
        }
        copyTo(end);
        return true;
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
            copyTo(end);
            return true;
        }
        const QStringView digits = m_sql.sliced(m_place, end - m_place);
        bool valid = false;
        if (whole) {
            const qint64 number = digits.toLongLong(&valid);
            value(number, end);
        } else {
            const double number = digits.toDouble(&valid);
            value(number, end);
        }
        return valid;
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
            copyTo(end);
        return true;
    }

    bool readName(QChar closing) {
        const qsizetype end = m_sql.indexOf(closing, m_place + 1);
        if (end < 0)
            return false;
        copyTo(end + 1);
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
        value(QString(day.toString(Qt::ISODate) + u' ' + time.toString(Qt::ISODate)), end + 1);
        return true;
    }

    QStringView m_sql;
    qsizetype m_place = 0;
    Kind m_kind = Kind::none;
    bool m_inCondition = false;
    StatementShape m_shape;
};

}  // namespace

std::optional<StatementShape> StatementShape::of(const QString& sql) {
    return ShapeReader(sql).read();
}

}  // namespace kovanix
