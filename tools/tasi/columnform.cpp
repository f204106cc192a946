#include "columnform.h"

#include <QStringList>
#include <algorithm>
#include <string>

#include "settle.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

bool names(const QString& declared, const QString& part) {
    return declared.contains(part, Qt::CaseInsensitive);
}

/// Whether a declared type is some program's word for numbers.
bool namesNumber(const QString& declared) {
    static const QStringList words{u"INT"_s, u"REAL"_s,  u"FLOA"_s, u"DOUB"_s,  u"SINGLE"_s,
                                   u"NUM"_s, u"DEC"_s,   u"CURR"_s, u"MONEY"_s, u"BOOL"_s,
                                   u"BIT"_s, u"YESNO"_s, u"COUNT"_s};
    return std::ranges::any_of(words, [&](const QString& word) { return names(declared, word); });
}

void take(Column& column, ColumnType type, Form form) {
    column.type = type;
    column.form = form;
    if (type != ColumnType::text || form == Form::bytes)
        column.width = 0;
}

}  // namespace

void ColumnContents::add(const engine::Cell& cell, bool readsTexts) {
    using Type = engine::Cell::Type;
    constexpr qint64 edge = qint64{1} << 53;  // up to which a double holds every whole number
    switch (cell.type) {
        case Type::null:
            break;
        case Type::whole:
            whole = true;
            large = large || cell.whole > edge || cell.whole < -edge;
            break;
        case Type::real:
            real = true;
            break;
        case Type::text:
            text = true;
            if (readsTexts && !otherText) {
                std::string storage;
                otherText = settle(cell, Form::number, storage).odd == Odd::textAsZero;
            }
            break;
        case Type::bytes:
            bytes = true;
            break;
    }
}

void takeTillForm(Column& column, const TableColumn& own) {
    // A text's width stays the one that the file has, and where it has none nothing is cut.
    switch (own.type) {
        case ColumnType::text:
            take(column, ColumnType::text, Form::text);
            break;
        case ColumnType::moment:
            take(column, ColumnType::moment, Form::moment);
            break;
        case ColumnType::number:
        case ColumnType::counter:
            take(column, ColumnType::number, Form::number);
            break;
    }
}

void takeFormOfContents(Column& column, const QString& declared, const ColumnContents& contents) {
    const bool number = contents.whole || contents.real;
    const bool anyKind = declared.isEmpty() || names(declared, u"BLOB"_s);
    if (contents.bytes && !contents.text && !number)
        return take(column, ColumnType::text, Form::bytes);
    if (column.type == ColumnType::moment)
        return take(column, ColumnType::moment, Form::moment);
    const bool settlesTexts = namesNumber(declared) && !contents.otherText;
    if (contents.bytes || (contents.text && !settlesTexts) ||
        (!number && !contents.text && !namesNumber(declared)) ||
        (column.type == ColumnType::text && !anyKind))
        return take(column, ColumnType::text, Form::text);
    // Fractions beside whole numbers that no double holds: only as texts does each keep its digits.
    const bool fractions = contents.real || contents.text;
    if (contents.large && fractions)
        return take(column, ColumnType::text, Form::text);
    const bool whole =
        contents.whole && !fractions && (contents.large || anyKind || names(declared, u"INT"_s));
    take(column, ColumnType::number, whole ? Form::whole : Form::number);
}

}  // namespace kovanix::tasi
