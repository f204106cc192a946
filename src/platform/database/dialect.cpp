#include "database/dialect.h"

#include <QDateTime>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <vector>

#include "database/databaseerror.h"
#include "database/dialectparts.h"
#include "database/sqltokens.h"

namespace kovanix::dialect {

using namespace Qt::StringLiterals;
using Kind = SqlToken::Kind;

namespace {

bool isTableConstraint(const SqlTokens& sql, qsizetype index) {
    static constexpr std::array words{"CONSTRAINT"_L1, "PRIMARY"_L1, "UNIQUE"_L1, "CHECK"_L1, "FOREIGN"_L1};
    return std::ranges::any_of(words, [&](QLatin1StringView word) { return sql.isWord(index, word); });
}

}  // namespace

std::optional<qsizetype> behindTableName(const SqlTokens& sql, qsizetype index) {
    if (!sql.isName(index)) {
        return std::nullopt;
    }
    if (sql.isSign(index + 1, u'.')) {
        return sql.isName(index + 2) ? std::optional(index + 3) : std::nullopt;
    }
    return index + 1;
}

std::optional<CreateTable> createTable(const SqlTokens& sql) {
    if (!sql.isWord(0, "CREATE"_L1)) {
        return std::nullopt;
    }
    qsizetype i = sql.isWord(1, "TEMP"_L1) || sql.isWord(1, "TEMPORARY"_L1) ? 2 : 1;
    if (!sql.isWord(i, "TABLE"_L1)) {
        return std::nullopt;
    }
    ++i;
    if (sql.isWord(i, "IF"_L1) && sql.isWord(i + 1, "NOT"_L1) && sql.isWord(i + 2, "EXISTS"_L1)) {
        i += 3;
    }
    const std::optional<qsizetype> list = behindTableName(sql, i);
    if (!list || !sql.isSign(*list, u'(')) {
        return std::nullopt;
    }
    CreateTable parts;
    int depth = 0;
    for (i = *list; i < sql.count(); ++i) {
        const bool opening = sql.isSign(i, u'(');
        depth += opening ? 1 : sql.isSign(i, u')') ? -1 : 0;
        if (depth == 0) {
            parts.end = i;
            return parts;
        }
        if (depth == 1 && (opening || sql.isSign(i, u','))) {
            if (isTableConstraint(sql, i + 1)) {
                parts.firstConstraint = parts.firstConstraint.value_or(i + 1);
            } else {
                parts.columns.push_back(i + 1);
            }
        }
    }
    return std::nullopt;
}

std::optional<qsizetype> addedColumn(const SqlTokens& sql) {
    if (!sql.isWord(0, "ALTER"_L1) || !sql.isWord(1, "TABLE"_L1)) {
        return std::nullopt;
    }
    const std::optional<qsizetype> add = behindTableName(sql, 2);
    if (!add || !sql.isWord(*add, "ADD"_L1)) {
        return std::nullopt;
    }
    const qsizetype column = sql.isWord(*add + 1, "COLUMN"_L1) ? *add + 2 : *add + 1;
    return sql.isName(column) ? std::optional(column) : std::nullopt;
}

namespace {

[[noreturn]] void fail(DatabaseError::Kind kind, const QString& description) {
    throw DatabaseError(kind, description);
}

/// '2021-05-03 07:05:09' of #5/3/2021 07:05:09#.
QString dateText(const QString& literal) {
    static const QRegularExpression form(
        u"^#\\s*(\\d{1,2})/(\\d{1,2})/(\\d{1,4})(?:\\s+(\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?)?\\s*#$"_s);
    const QRegularExpressionMatch match = form.match(literal);
    const auto part = [&match](int group) { return match.captured(group).toInt(); };
    const QDate day(part(3), part(1), part(2));
    const QTime time(part(4), part(5), part(6));
    // The engine's dates as the modules write them begin with the year 100; a shorter year is a slip and no
    // century is guessed.
    if (!match.hasMatch() || !day.isValid() || day.year() < 100 || !time.isValid()) {
        fail(DatabaseError::Kind::value, u"Syntax error in date in query expression '%1'."_s.arg(literal));
    }
    return u'\'' + day.toString(u"yyyy-MM-dd") + u' ' + time.toString(u"HH:mm:ss") + u'\'';
}

/// A LIKE pattern with bracketed signs in the engine's form; nothing when it holds none.
std::optional<QString> escapedPattern(const QString& literal) {
    static const QRegularExpression bracketed(u"\\[([%_\\[])\\]"_s);
    if (!literal.contains(bracketed)) {
        return std::nullopt;
    }
    static constexpr std::array<char16_t, 6> candidates{u'\\', u'!', u'~', u'^', u'|', u'\x01'};
    const auto* escape =
        std::ranges::find_if(candidates, [&literal](char16_t c) { return !literal.contains(QChar(c)); });
    if (escape == candidates.end()) {
        fail(DatabaseError::Kind::statement,
             u"Syntax error in pattern in query expression %1."_s.arg(literal));
    }
    QString pattern;
    qsizetype copied = 0;
    for (auto matches = bracketed.globalMatch(literal); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        pattern += QStringView(literal).mid(copied, match.capturedStart() - copied);
        pattern += QChar(*escape);
        pattern += match.captured(1);
        copied = match.capturedEnd();
    }
    pattern += QStringView(literal).mid(copied);
    return pattern + u" ESCAPE '" + QChar(*escape) + u'\'';
}

void translateLiterals(SqlTokens& sql) {
    for (qsizetype i = 0; i < sql.count(); ++i) {
        if (sql[i].kind == Kind::Date) {
            sql[i].text = dateText(sql[i].original);
        } else if (sql[i].kind == Kind::Text && i > 0 && sql.isWord(i - 1, "LIKE"_L1) &&
                   !sql.isWord(i + 1, "ESCAPE"_L1)) {
            sql[i].text = escapedPattern(sql[i].original).value_or(sql[i].original);
        }
    }
}

/// Makes CASE expressions of the IIF calls in place: every call's parentheses and commas become its keywords.
class IifTranslation {
public:
    explicit IifTranslation(SqlTokens& sql) : m_sql(sql) {}

    void run() {
        for (qsizetype i = 0; i < m_sql.count(); ++i) {
            if (m_sql.isWord(i, "IIF"_L1) && m_sql.isSign(i + 1, u'(')) {
                keyword(i, u"CASE WHEN"_s);
                keyword(++i, u" "_s);
                m_open.push_back({true, 0});
            } else if (m_sql.isSign(i, u'(')) {
                m_open.push_back({false, 0});
            } else if (m_sql.isSign(i, u',') && inCall()) {
                comma(i);
            } else if (m_sql.isSign(i, u')') && !m_open.empty()) {
                close(i);
            }
        }
        if (std::ranges::any_of(m_open, &Parenthesis::iif)) {
            wrong();
        }
    }

private:
    struct Parenthesis {
        bool iif;
        int commas;
    };

    [[noreturn]] static void wrong() {
        fail(DatabaseError::Kind::statement, u"Wrong number of arguments used with function IIF in query."_s);
    }

    bool inCall() const { return !m_open.empty() && m_open.back().iif; }

    void keyword(qsizetype index, const QString& text) {
        m_sql[index].text = text;
        m_sql.dropBlankBehind(index);
    }

    void comma(qsizetype index) {
        const int commas = ++m_open.back().commas;
        if (commas > 2) {
            wrong();
        }
        keyword(index, commas == 1 ? u" THEN "_s : u" ELSE "_s);
    }

    void close(qsizetype index) {
        const Parenthesis parenthesis = m_open.back();
        m_open.pop_back();
        if (!parenthesis.iif) {
            return;
        }
        if (parenthesis.commas != 2) {
            wrong();
        }
        // A sign keeps itself apart from the keyword; a word that stands close would grow into it.
        const bool apart =
            index + 1 == m_sql.count() || m_sql.blankBehind(index) || m_sql[index + 1].kind == Kind::Sign;
        m_sql[index].text = apart ? u" END"_s : u" END "_s;
    }

    SqlTokens& m_sql;
    std::vector<Parenthesis> m_open;
};

/// The engine's type for the column definition whose type stands at an index.
void translateColumnType(SqlTokens& sql, qsizetype type) {
    if (sql.isWord(type, "COUNTER"_L1)) {
        sql[type].text = u"INTEGER PRIMARY KEY AUTOINCREMENT"_s;
        return;
    }
    if (!sql.isWord(type, "TEXT"_L1)) {
        return;
    }
    qsizetype last = type;
    if (sql.isSign(type + 1, u'(') && sql.isSign(type + 3, u')')) {
        last = type + 3;
    }
    int depth = 0;
    for (qsizetype i = last + 1; i < sql.count() && depth >= 0; ++i) {
        if (depth == 0 && sql.isSign(i, u',')) {
            break;
        }
        if (depth == 0 && sql.isWord(i, "COLLATE"_L1)) {
            return;
        }
        depth += sql.isSign(i, u'(') ? 1 : sql.isSign(i, u')') ? -1 : 0;
    }
    sql[last].text += u" COLLATE NOCASE"_s;
}

void translateColumnTypes(SqlTokens& sql) {
    if (const auto table = createTable(sql)) {
        std::ranges::for_each(table->columns, [&sql](qsizetype name) { translateColumnType(sql, name + 1); });
    } else if (const auto column = addedColumn(sql)) {
        translateColumnType(sql, *column + 1);
    }
}

struct PlainSelect {
    QString table;
    qsizetype from = 0;
    qsizetype source = 0;            ///< the last token of the table's name and alias
    std::optional<qsizetype> where;  ///< the keyword
    qsizetype last = 0;              ///< the last token ahead of an order, a limit and a semicolon
    bool ordered = false;
    bool limited = false;
};

bool isAggregate(const SqlTokens& sql, qsizetype index) {
    static constexpr std::array words{"SUM"_L1, "COUNT"_L1, "AVG"_L1,         "MIN"_L1,
                                      "MAX"_L1, "TOTAL"_L1, "GROUP_CONCAT"_L1};
    return sql.isSign(index + 1, u'(') &&
           std::ranges::any_of(words, [&](QLatin1StringView word) { return sql.isWord(index, word); });
}

bool startsSelect(const SqlTokens& sql, qsizetype index) {
    return sql.isWord(index, "SELECT"_L1) || sql.isWord(index, "VALUES"_L1) || sql.isWord(index, "WITH"_L1);
}

bool endsSource(const SqlTokens& sql, qsizetype index) {
    return index >= sql.count() || sql.isWord(index, "WHERE"_L1) || sql.isWord(index, "ORDER"_L1) ||
           sql.isWord(index, "LIMIT"_L1) || sql.isWord(index, "GROUP"_L1) || sql.isSign(index, u';');
}

/// The last token of the only table behind FROM, with its alias; nothing when more stands there.
std::optional<qsizetype> onlySource(const SqlTokens& sql, qsizetype from) {
    const std::optional<qsizetype> behind = behindTableName(sql, from + 1);
    if (!behind) {
        return std::nullopt;
    }
    if (endsSource(sql, *behind)) {
        return *behind - 1;
    }
    const qsizetype alias = sql.isWord(*behind, "AS"_L1) ? *behind + 1 : *behind;
    return sql.isName(alias) && endsSource(sql, alias + 1) ? std::optional(alias) : std::nullopt;
}

/// The table behind the only FROM of a select that stands in no parentheses; empty where more stands there.
QString onlyTable(const SqlTokens& sql) {
    int depth = 0;
    std::optional<qsizetype> from;
    for (qsizetype i = 1; i < sql.count(); ++i) {
        depth += sql.isSign(i, u'(') ? 1 : sql.isSign(i, u')') ? -1 : 0;
        if (depth != 0 || !sql.isWord(i, "FROM"_L1))
            continue;
        if (from)
            return {};
        from = i;
    }
    if (!from || !onlySource(sql, *from))
        return {};
    return sql.name(sql.isSign(*from + 2, u'.') ? *from + 3 : *from + 1);
}

/// Whether a top-level token makes a select anything but a plain reading of one table's rows.
bool mixesRows(const SqlTokens& sql, qsizetype index) {
    static constexpr std::array words{"DISTINCT"_L1, "UNION"_L1, "INTERSECT"_L1,
                                      "EXCEPT"_L1,   "GROUP"_L1, "HAVING"_L1};
    return std::ranges::any_of(words, [&](QLatin1StringView word) { return sql.isWord(index, word); });
}

/// Takes the clauses of a select into its parts; false when it is no plain one.
bool takeClause(const SqlTokens& sql, qsizetype index, PlainSelect& select) {
    if (sql.isWord(index, "FROM"_L1)) {
        const std::optional<qsizetype> source = onlySource(sql, index);
        if (select.from > 0 || !source) {
            return false;
        }
        select.from = index;
        select.source = *source;
        const qsizetype name = sql.isSign(index + 2, u'.') ? index + 3 : index + 1;
        select.table = sql.name(name);
        return true;
    }
    if (select.from == 0 || index <= select.source) {
        return true;
    }
    const bool order = sql.isWord(index, "ORDER"_L1);
    const bool limit = sql.isWord(index, "LIMIT"_L1);
    if (sql.isWord(index, "WHERE"_L1)) {
        select.where = index;
    } else if ((order || limit || sql.isSign(index, u';')) && select.last == 0) {
        select.last = index - 1;
    }
    select.ordered = select.ordered || order;
    select.limited = select.limited || limit;
    return true;
}

std::optional<PlainSelect> plainSelect(const SqlTokens& sql) {
    if (!sql.isWord(0, "SELECT"_L1)) {
        return std::nullopt;
    }
    PlainSelect select;
    std::vector<bool> open;  // for each parenthesis, whether it holds a select of its own
    int selects = 0;
    for (qsizetype i = 1; i < sql.count(); ++i) {
        if (sql.isSign(i, u'(')) {
            open.push_back(startsSelect(sql, i + 1));
            selects += open.back() ? 1 : 0;
        } else if (sql.isSign(i, u')')) {
            if (open.empty()) {
                return std::nullopt;
            }
            selects -= open.back() ? 1 : 0;
            open.pop_back();
        } else if (selects == 0 && isAggregate(sql, i)) {
            return std::nullopt;
        } else if (open.empty() && (mixesRows(sql, i) || !takeClause(sql, i, select))) {
            return std::nullopt;
        }
    }
    if (select.from == 0 || !open.empty()) {
        return std::nullopt;
    }
    if (select.last == 0) {
        select.last = sql.count() - 1;
    }
    return select;
}

/// The engine of files with a password is older than these two words.
void translateTruthWords(SqlTokens& sql) {
    const bool holdsValues = sql.isWord(0, "SELECT"_L1) || sql.isWord(0, "INSERT"_L1) ||
                             sql.isWord(0, "UPDATE"_L1) || sql.isWord(0, "DELETE"_L1);
    for (qsizetype i = 1; holdsValues && i < sql.count(); ++i) {
        const bool isTrue = sql.isWord(i, "TRUE"_L1);
        if (!(isTrue || sql.isWord(i, "FALSE"_L1)) || sql.isWord(i - 1, "AS"_L1))
            continue;
        sql[i].text = isTrue ? u"1"_s : u"0"_s;
        // Any number but 0 is true.
        const qsizetype test = sql.isWord(i - 1, "NOT"_L1) ? i - 2 : i - 1;
        if (sql.isWord(test, "IS"_L1))
            sql[test].text = u"<> 0 IS"_s;
    }
}

void translateTokens(SqlTokens& sql, const Engine& engine) {
    translateLiterals(sql);
    IifTranslation(sql).run();
    if (engine.target == Target::server) {
        translateForServer(sql, engine.columns);
        return;
    }
    translateTruthWords(sql);
    translateColumnTypes(sql);
}

/// Has a select of all columns leave the hidden one out.
void leaveOutHidden(SqlTokens& tokens, const PlainSelect& select, const QString& identity,
                    const Engine& engine) {
    if (select.from != 2 || !tokens.isSign(1, u'*') || identity != quotedSqlName(hiddenIdentity))
        return;
    QStringList names;
    for (const TableColumn& column : engine.columns)
        names.append(quotedSqlName(column.name));
    tokens[1].text = names.join(u", ");
}

/// Narrows a select down by one more condition; an empty one leaves it.
void addCondition(SqlTokens& tokens, const PlainSelect& select, const QString& condition) {
    if (condition.isEmpty())
        return;
    if (select.where) {
        tokens[*select.where].text += u" ("_s;
        tokens[select.last].text += u") AND "_s + condition;
    } else {
        tokens[select.source].text += u" WHERE "_s + condition;
    }
}

/// The engine's SQL for something over all rows of a select from a single table, in place of their fields.
std::optional<QString> translateResult(const QString& sql, const QString& result, const QString& condition,
                                       const Engine& engine) {
    SqlTokens tokens(sql);
    const std::optional<PlainSelect> select = plainSelect(tokens);
    if (!select || select->limited)
        return std::nullopt;
    translateTokens(tokens, engine);
    addCondition(tokens, *select, condition);
    tokens[0].text = u"SELECT "_s + result;
    for (qsizetype i = 1; i < select->from; ++i)
        tokens[i].text.clear();
    for (qsizetype i = select->last + 1; i < tokens.count(); ++i)
        tokens[i].text.clear();  // an order
    return tokens.text();
}

}  // namespace

QString translate(const QString& sql, const QString& identity, const Engine& engine) {
    SqlTokens tokens(sql);
    translateTokens(tokens, engine);
    if (const auto select = identity.isEmpty() ? std::nullopt : plainSelect(tokens)) {
        leaveOutHidden(tokens, *select, identity, engine);
        if (!select->ordered)
            tokens[select->last].text += u" ORDER BY "_s + identity;
    }
    return tokens.text();
}

std::optional<TableSelect> tableSelect(const QString& sql) {
    const SqlTokens tokens(sql);
    const std::optional<PlainSelect> select = plainSelect(tokens);
    if (!select)
        return std::nullopt;
    return TableSelect{select->table, select->from == 2 && tokens.isSign(1, u'*'), select->where.has_value(),
                       select->ordered, select->limited};
}

std::optional<QString> translateAfterRow(const QString& sql, const QString& identity, const RowRange& range,
                                         const Engine& engine) {
    SqlTokens tokens(sql);
    const std::optional<PlainSelect> select = plainSelect(tokens);
    const bool cut = range.afterRow || range.limit > 0;
    if (!select || (select->limited && (cut || !range.condition.isEmpty())) ||
        (cut && (select->ordered || identity.isEmpty()))) {
        return std::nullopt;
    }
    translateTokens(tokens, engine);
    leaveOutHidden(tokens, *select, identity, engine);
    if (!identity.isEmpty() && range.withIdentity)
        tokens[select->from - 1].text += u", "_s + identity;
    if (range.byIdentity && engine.target == Target::file)
        tokens[select->source].text += u" NOT INDEXED"_s;
    QStringList conditions;
    if (!range.condition.isEmpty())
        conditions.append(range.condition);
    if (range.afterRow)
        conditions.append(identity + u" > "_s + QString::number(*range.afterRow));
    addCondition(tokens, *select, conditions.join(u" AND "));
    if (!select->ordered && !identity.isEmpty())
        tokens[select->last].text += u" ORDER BY "_s + identity;
    if (range.limit > 0)
        tokens[select->last].text += u" LIMIT "_s + QString::number(range.limit);
    return tokens.text();
}

std::optional<QString> translateCount(const QString& sql, const QString& condition, const Engine& engine) {
    return translateResult(sql, u"count(*)"_s, condition, engine);
}

std::optional<QString> translateExtent(const QString& sql, const QString& identity, const Engine& engine) {
    return translateResult(sql, u"min(%1), max(%1), count(*)"_s.arg(identity), {}, engine);
}

QString tableOf(const QString& sql) {
    const SqlTokens tokens(sql);
    const qsizetype place = tokens.isWord(0, "UPDATE"_L1) ? 1
                            : (tokens.isWord(0, "INSERT"_L1) && tokens.isWord(1, "INTO"_L1)) ||
                                    (tokens.isWord(0, "DELETE"_L1) && tokens.isWord(1, "FROM"_L1))
                                ? 2
                                : 0;
    if (place > 0)
        return tokens.isName(place) ? tokens.name(place) : QString();
    return tokens.isWord(0, "SELECT"_L1) ? onlyTable(tokens) : QString();
}

bool changesTables(const QString& sql) {
    const SqlTokens tokens(sql);
    return tokens.isWord(0, "CREATE"_L1) || tokens.isWord(0, "ALTER"_L1) || tokens.isWord(0, "DROP"_L1);
}

bool onlyReads(const QString& sql) {
    return SqlTokens(sql).isWord(0, "SELECT"_L1);
}

std::optional<AddColumn> addedColumnOf(const QString& sql) {
    const SqlTokens tokens(sql);
    const std::optional<qsizetype> column = addedColumn(tokens);
    if (!column)
        return std::nullopt;
    return AddColumn{tokens.name(tokens.isSign(3, u'.') ? 4 : 2), tokens.name(*column)};
}

std::optional<AddColumn> addCounterColumn(const QString& sql) {
    // Asked of every statement: the sale's own aren't read a second time for it.
    if (!QStringView(sql).trimmed().startsWith("ALTER"_L1, Qt::CaseInsensitive)) {
        return std::nullopt;
    }
    const SqlTokens tokens(sql);
    const std::optional<qsizetype> column = addedColumn(tokens);
    if (!column || !tokens.isWord(*column + 1, "COUNTER"_L1)) {
        return std::nullopt;
    }
    const qsizetype rest = *column + 2;
    if (rest != tokens.count() && !(tokens.isSign(rest, u';') && rest + 1 == tokens.count())) {
        return std::nullopt;
    }
    const qsizetype table = tokens.isSign(3, u'.') ? 4 : 2;
    return AddColumn{tokens.name(table), tokens.name(*column)};
}

std::optional<QString> withColumn(const QString& createSql, const QString& definition) {
    SqlTokens tokens(createSql);
    const std::optional<CreateTable> table = createTable(tokens);
    if (!table || table->columns.empty()) {
        return std::nullopt;
    }
    if (table->firstConstraint) {
        SqlToken& constraint = tokens[*table->firstConstraint];
        constraint.text = definition + u", "_s + constraint.text;
    } else {
        SqlToken& last = tokens[table->end - 1];
        last.text += u", "_s + definition;
    }
    return tokens.text();
}

}  // namespace kovanix::dialect
