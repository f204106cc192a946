#include "database/sqltokens.h"

#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

using Kind = SqlToken::Kind;

bool isWordStart(QChar c) {
    return c.isLetter() || c == u'_' || c.unicode() >= 0x80;
}

bool isWordPart(QChar c) {
    return isWordStart(c) || c.isDigit() || c == u'$';
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

class Scanner {
public:
    /// @param sql  must outlive the tokens, which hold no letters of their own
    explicit Scanner(const QString& sql) : m_sql(sql) {}

    bool atEnd() const { return m_place >= m_sql.size(); }

    SqlToken next() {
        const qsizetype start = m_place;
        const Kind kind = scan();
        const QString text = QString::fromRawData(m_sql.data() + start, m_place - start);
        return {kind, text, text};
    }

private:
    QChar peek(qsizetype ahead = 0) const {
        return m_place + ahead < m_sql.size() ? m_sql[m_place + ahead] : QChar();
    }

    template <typename Test>
    void skipWhile(Test test) {
        while (!atEnd() && test(m_sql[m_place])) {
            ++m_place;
        }
    }

    /// Reads to a closing sign; a doubled one stands for itself.
    void skipQuoted(QChar closing, bool doubling) {
        ++m_place;
        while (!atEnd()) {
            if (m_sql[m_place++] != closing) {
                continue;
            }
            if (!doubling || peek() != closing) {
                return;
            }
            ++m_place;
        }
    }

    void skipBehind(QStringView end) {
        const qsizetype found = m_sql.indexOf(end, m_place + 2);
        m_place = found < 0 ? m_sql.size() : found + end.size();
    }

    void skipNumber() {
        skipWhile(isDigit);
        if (peek() == u'.') {
            ++m_place;
            skipWhile(isDigit);
        }
        if (peek().toLower() == u'e') {
            const qsizetype sign = peek(1) == u'-' || peek(1) == u'+' ? 1 : 0;
            if (isDigit(peek(1 + sign))) {
                m_place += 1 + sign;
                skipWhile(isDigit);
            }
        }
    }

    Kind scanDate() {
        const qsizetype end = m_sql.indexOf(u'#', m_place + 1);
        if (end < 0) {
            throw RuntimeError(
                RuntimeError::databaseFailure,
                u"Syntax error in date in query expression '%1'."_s.arg(m_sql.mid(m_place, 40)));
        }
        m_place = end + 1;
        return Kind::Date;
    }

    Kind scan() {
        const QChar c = peek();
        if (c.isSpace()) {
            skipWhile([](QChar blank) { return blank.isSpace(); });
            return Kind::Blank;
        }
        if (c == u'-' && peek(1) == u'-') {
            skipBehind(u"\n");
            return Kind::Blank;
        }
        if (c == u'/' && peek(1) == u'*') {
            skipBehind(u"*/");
            return Kind::Blank;
        }
        if (c == u'\'') {
            skipQuoted(c, true);
            return Kind::Text;
        }
        if (c == u'"' || c == u'`') {
            skipQuoted(c, true);
            return Kind::Name;
        }
        if (c == u'[') {
            skipQuoted(u']', false);
            return Kind::Name;
        }
        if (c == u'#') {
            return scanDate();
        }
        if (isDigit(c)) {
            skipNumber();
            return Kind::Number;
        }
        if (isWordStart(c)) {
            skipWhile(isWordPart);
            return Kind::Word;
        }
        ++m_place;
        return Kind::Sign;
    }

    QStringView m_sql;
    qsizetype m_place = 0;
};

}  // namespace

SqlTokens::SqlTokens(const QString& sql) : m_sql(sql) {
    // About as many as a statement has; most are a blank or a sign.
    m_tokens.reserve(sql.size() / 3 + 1);
    m_marks.reserve(static_cast<size_t>(sql.size() / 3 + 1));
    Scanner scanner(m_sql);
    while (!scanner.atEnd()) {
        SqlToken token = scanner.next();
        if (token.kind != Kind::Blank) {
            m_marks.push_back(m_tokens.size());
        }
        m_tokens.append(std::move(token));
    }
}

bool SqlTokens::isWord(qsizetype index, QLatin1StringView word) const {
    return index >= 0 && index < count() && (*this)[index].kind == Kind::Word &&
           (*this)[index].original.size() == word.size() &&
           (*this)[index].original.compare(word, Qt::CaseInsensitive) == 0;
}

bool SqlTokens::isSign(qsizetype index, char16_t sign) const {
    return index >= 0 && index < count() && (*this)[index].kind == Kind::Sign &&
           (*this)[index].original.at(0) == sign;
}

bool SqlTokens::isName(qsizetype index) const {
    return index < count() && ((*this)[index].kind == Kind::Word || (*this)[index].kind == Kind::Name);
}

QString SqlTokens::name(qsizetype index) const {
    const SqlToken& token = (*this)[index];
    if (token.kind != Kind::Name || token.original.size() < 2) {
        return QStringView(token.original).toString();  // it outlives the statement
    }
    QString inner = token.original.mid(1, token.original.size() - 2);
    const QChar quote = token.original.at(0);
    return quote == u'[' ? inner : inner.replace(QString(2, quote), QString(quote));
}

bool SqlTokens::blankBehind(qsizetype index) const {
    const qsizetype behind = m_marks[static_cast<size_t>(index)] + 1;
    return behind < m_tokens.size() && m_tokens[behind].kind == Kind::Blank;
}

void SqlTokens::dropBlankBehind(qsizetype index) {
    if (blankBehind(index)) {
        m_tokens[m_marks[static_cast<size_t>(index)] + 1].text.clear();
    }
}

QString SqlTokens::text() const {
    QString joined;
    joined.reserve(4 * m_tokens.size());
    for (const SqlToken& token : m_tokens) {
        joined += token.text;
    }
    return joined;
}

QString quotedSqlName(const QString& name) {
    QString quoted = name;
    quoted.replace(u'"', u"\"\""_s);
    return u'"' + quoted + u'"';
}

}  // namespace kovanix
