#include <algorithm>
#include <array>

#include "database/dialectparts.h"

namespace kovanix::dialect {

using namespace Qt::StringLiterals;
using Kind = SqlToken::Kind;

namespace {

/// An operand that is a name with its table's or a number.
struct Operand {
    qsizetype first;
    qsizetype last;
};

template <std::size_t count>
bool isOneOf(const SqlTokens& sql, qsizetype index, const std::array<QLatin1StringView, count>& words) {
    return std::ranges::any_of(words, [&](QLatin1StringView word) { return sql.isWord(index, word); });
}

/// How much deeper what stands behind a token is than what stands ahead of it: CASE … END encloses, too.
int deepening(const SqlTokens& sql, qsizetype index) {
    if (sql.isSign(index, u'(') || sql.isWord(index, "CASE"_L1))
        return 1;
    return sql.isSign(index, u')') || sql.isWord(index, "END"_L1) ? -1 : 0;
}

/// Whether an AND belongs to a BETWEEN.
bool isOfRange(const SqlTokens& sql, qsizetype conjunction) {
    static constexpr std::array others{"AND"_L1, "OR"_L1, "WHERE"_L1, "ON"_L1, "HAVING"_L1, "WHEN"_L1};
    int depth = 0;
    for (qsizetype i = conjunction - 1; i > 0 && depth >= 0; --i) {
        depth -= deepening(sql, i);
        if (depth == 0 && sql.isWord(i, "BETWEEN"_L1))
            return true;
        if (depth == 0 && isOneOf(sql, i, others))
            return false;
    }
    return false;
}

/// Whether a WHEN belongs to a CASE that compares a value with what stands behind each WHEN.
bool comparesValue(const SqlTokens& sql, qsizetype when) {
    int depth = 0;
    for (qsizetype i = when - 1; i >= 0; --i) {
        depth -= deepening(sql, i);
        if (depth < 0)
            return !sql.isWord(i + 1, "WHEN"_L1);
    }
    return false;
}

bool beginsCondition(const SqlTokens& sql, qsizetype index) {
    static constexpr std::array words{"WHERE"_L1, "ON"_L1, "HAVING"_L1, "OR"_L1};
    if (sql.isWord(index, "NOT"_L1))
        return !sql.isWord(index - 1, "IS"_L1);
    if (sql.isWord(index, "WHEN"_L1))
        return !comparesValue(sql, index);
    return isOneOf(sql, index, words) || (sql.isWord(index, "AND"_L1) && !isOfRange(sql, index));
}

bool endsCondition(const SqlTokens& sql, qsizetype index) {
    static constexpr std::array words{"AND"_L1,    "OR"_L1,    "THEN"_L1,  "ORDER"_L1,  "GROUP"_L1,
                                      "HAVING"_L1, "LIMIT"_L1, "UNION"_L1, "EXCEPT"_L1, "INTERSECT"_L1};
    return index >= sql.count() || sql.isSign(index, u')') || sql.isSign(index, u',') ||
           sql.isSign(index, u';') || isOneOf(sql, index, words);
}

/// Whether a test for true or false stands behind an operand.
bool isTested(const SqlTokens& sql, qsizetype behind) {
    if (!sql.isWord(behind, "IS"_L1))
        return false;
    const qsizetype word = sql.isWord(behind + 1, "NOT"_L1) ? behind + 2 : behind + 1;
    return sql.isWord(word, "TRUE"_L1) || sql.isWord(word, "FALSE"_L1);
}

/// Whether an operand is a condition, or one of several, all by itself.
bool isCondition(const SqlTokens& sql, Operand operand) {
    qsizetype ahead = operand.first - 1;
    qsizetype behind = operand.last + 1;
    while (sql.isSign(ahead, u'(') && sql.isSign(behind, u')') && !sql.isWord(ahead - 1, "IIF"_L1)) {
        --ahead;
        ++behind;
    }
    if (isTested(sql, behind))
        return true;
    if (sql.isSign(ahead, u'(')) {
        const bool joined = sql.isWord(behind, "AND"_L1) || sql.isWord(behind, "OR"_L1);
        return joined || (sql.isWord(ahead - 1, "IIF"_L1) && sql.isSign(behind, u','));
    }
    return beginsCondition(sql, ahead) && endsCondition(sql, behind);
}

/// Whether a name stands for a table, or for what a select gives.
bool isOtherName(const SqlTokens& sql, qsizetype name) {
    static constexpr std::array words{"FROM"_L1, "JOIN"_L1, "UPDATE"_L1, "INTO"_L1, "AS"_L1};
    return sql.isSign(name + 1, u'.') || sql.isSign(name + 1, u'(') || isOneOf(sql, name - 1, words);
}

/// Whether an expression gives true or false by itself. A column of such gives a number.
bool givesTruth(const SqlTokens& sql, Operand expression) {
    static constexpr std::array words{"NOT"_L1, "AND"_L1, "OR"_L1, "IS"_L1, "IN"_L1, "BETWEEN"_L1, "LIKE"_L1};
    int depth = 0;
    for (qsizetype i = expression.first; i <= expression.last; ++i) {
        depth += deepening(sql, i);
        const bool compares = sql.isSign(i, u'=') || sql.isSign(i, u'<') || sql.isSign(i, u'>');
        if (depth == 0 && (compares || isOneOf(sql, i, words)))
            return true;
    }
    return false;
}

constexpr auto asTruth = " <> 0)"_L1;
constexpr auto asNumber = ")::int4"_L1;

void wrap(SqlTokens& sql, Operand part, QLatin1StringView behind) {
    sql[part.first].text.prepend(u'(');
    sql[part.last].text += behind;
}

struct Assignment {
    qsizetype name;
    Operand value;
};

/// The last token of the value that begins at an index.
qsizetype assignedEnd(const SqlTokens& sql, qsizetype index) {
    int depth = 0;
    for (qsizetype i = index; i < sql.count(); ++i) {
        if (depth == 0 && (sql.isSign(i, u',') || sql.isSign(i, u';') || sql.isWord(i, "WHERE"_L1)))
            return i - 1;
        depth += deepening(sql, i);
    }
    return sql.count() - 1;
}

std::vector<Assignment> assignments(const SqlTokens& sql) {
    std::vector<Assignment> found;
    if (!sql.isWord(0, "UPDATE"_L1))
        return found;
    qsizetype name = 1;
    while (name < sql.count() && !sql.isWord(name, "SET"_L1))
        ++name;
    do {
        ++name;
        if (!sql.isName(name) || !sql.isSign(name + 1, u'='))
            break;
        found.push_back({name, {name + 2, assignedEnd(sql, name + 2)}});
        name = found.back().value.last + 1;
    } while (sql.isSign(name, u','));
    return found;
}

/// Has each column that an UPDATE sets get what it holds, behind all other translations of the value.
void fitAssigned(SqlTokens& sql, const std::vector<Assignment>& assigned, const TableShape& shape) {
    for (const auto& [name, value] : assigned) {
        const qsizetype place = shape.indexOf(sql.name(name));
        if (place < 0 || !isNumeric(shape.columns[place]) || value.last < value.first)
            continue;
        const bool truth = givesTruth(sql, value);
        if (truth != shape.columns[place].isTruth)
            wrap(sql, value, truth ? asNumber : asTruth);
    }
}

}  // namespace

void translateTruth(SqlTokens& sql, const QList<TableColumn>& columns) {
    const bool inserts = sql.isWord(0, "INSERT"_L1);
    if (!inserts && !sql.isWord(0, "SELECT"_L1) && !sql.isWord(0, "UPDATE"_L1) && !sql.isWord(0, "DELETE"_L1))
        return;
    const TableShape shape{{}, columns, {}};
    const std::vector<Assignment> assigned = assignments(sql);
    bool conditional = !inserts;
    for (qsizetype i = 1; i < sql.count(); ++i) {
        conditional = conditional || sql.isWord(i, "WHERE"_L1);
        if (sql[i].kind == Kind::Number && isCondition(sql, {i, i}))
            wrap(sql, {i, i}, asTruth);
        const qsizetype place =
            sql.isName(i) && conditional && !isOtherName(sql, i) ? shape.indexOf(sql.name(i)) : -1;
        if (place < 0 || !isNumeric(columns[place]) ||
            std::ranges::find(assigned, i, &Assignment::name) != assigned.end())
            continue;
        const Operand operand{sql.isSign(i - 1, u'.') ? i - 2 : i, i};
        const bool condition = isCondition(sql, operand);
        if (condition && !columns[place].isTruth)
            wrap(sql, operand, asTruth);
        else if (!condition && columns[place].isTruth)
            sql[i].text += "::int4"_L1;
    }
    fitAssigned(sql, assigned, shape);
    visitInserted(sql, columns, [&sql](qsizetype value, const TableColumn& column) {
        if (column.isTruth)
            wrap(sql, {value, value}, asTruth);
    });
}

}  // namespace kovanix::dialect
