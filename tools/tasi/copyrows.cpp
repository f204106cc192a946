#include "copyrows.h"

#include <QtEndian>
#include <bit>
#include <cstring>

namespace kovanix::tasi {

namespace {

using namespace std::string_view_literals;
using Type = engine::Cell::Type;

// The signature, no flags, no extension.
constexpr std::string_view header = "PGCOPY\n\377\r\n\0\0\0\0\0\0\0\0\0"sv;
constexpr std::string_view trailer = "\377\377"sv;

/// Takes a number off the front; false where too little is left.
template <class Number>
bool take(std::string_view& bytes, Number& value) {
    if (bytes.size() < sizeof(Number))
        return false;
    value = qFromBigEndian<Number>(bytes.data());
    bytes.remove_prefix(sizeof(Number));
    return true;
}

bool readCell(std::string_view bytes, Form form, engine::Cell& cell) {
    switch (form) {
        case Form::number: {
            quint64 bits = 0;
            cell.type = Type::real;
            if (!take(bytes, bits))
                return false;
            cell.real = std::bit_cast<double>(bits);
            return bytes.empty();
        }
        case Form::whole:
            cell.type = Type::whole;
            return take(bytes, cell.whole) && bytes.empty();
        case Form::text:
        case Form::moment:
            cell.type = Type::text;
            cell.bytes = bytes;
            return true;
        case Form::bytes:
            cell.type = Type::bytes;
            cell.bytes = bytes;
            return true;
    }
    return false;
}

bool readCells(std::string_view row, const std::vector<Form>& forms, std::vector<engine::Cell>& cells) {
    qint16 count = 0;
    if (!take(row, count) || count != static_cast<qint16>(forms.size()))
        return false;
    for (std::size_t i = 0; i < forms.size(); ++i) {
        qint32 size = 0;
        if (!take(row, size))
            return false;
        if (size < 0)
            continue;
        if (row.size() < static_cast<std::size_t>(size) ||
            !readCell(row.substr(0, static_cast<std::size_t>(size)), forms[i], cells[i]))
            return false;
        row.remove_prefix(static_cast<std::size_t>(size));
    }
    return row.empty();
}

}  // namespace

std::string_view copyHeader() {
    return header;
}

std::string_view copyTrailer() {
    return trailer;
}

template <class Number>
void CopyWriter::append(Number value) {
    const Number big = qToBigEndian(value);
    m_bytes.append(reinterpret_cast<const char*>(&big), sizeof(big));
}

void CopyWriter::beginRow(int cells) {
    append(static_cast<qint16>(cells));
}

void CopyWriter::add(const engine::Cell& cell) {
    switch (cell.type) {
        case Type::null:
            append(qint32{-1});
            break;
        case Type::whole:
            append(static_cast<qint32>(sizeof(qint64)));
            append(cell.whole);
            break;
        case Type::real:
            append(static_cast<qint32>(sizeof(double)));
            append(std::bit_cast<quint64>(cell.real));
            break;
        case Type::text:
        case Type::bytes:
            append(static_cast<qint32>(cell.bytes.size()));
            m_bytes.append(cell.bytes);
            break;
    }
}

bool readCopyRow(std::string_view row, const std::vector<Form>& forms, std::vector<engine::Cell>& cells) {
    cells.assign(forms.size(), {});
    const bool isRow = readCells(row, forms, cells);
    if (!isRow)
        cells.clear();
    return isRow;
}

bool dropCopyHeader(std::string_view& bytes) {
    if (!bytes.starts_with(header))
        return false;
    bytes.remove_prefix(header.size());
    return true;
}

}  // namespace kovanix::tasi
