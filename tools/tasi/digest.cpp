#include "digest.h"

#include <bit>

namespace kovanix::tasi {

namespace {

constexpr std::size_t portion = 1U << 16U;

template <class Value>
void append(std::string& bytes, Value value) {
    bytes.append(reinterpret_cast<const char*>(&value), sizeof(value));
}

}  // namespace

void Digest::add(const Table& table) {
    m_bytes += table.name.toStdString();
    append(m_bytes, table.rows);
    append(m_bytes, table.lastNumber);
    for (const Column& column : table.columns) {
        m_bytes += '\0';
        m_bytes += column.name.toStdString();
    }
    flush();
}

void Digest::add(const engine::Cell& cell) {
    using Type = engine::Cell::Type;
    append(m_bytes, cell.type);
    switch (cell.type) {
        case Type::null:
            break;
        case Type::whole:
            append(m_bytes, cell.whole);
            break;
        case Type::real:
            append(m_bytes, std::bit_cast<quint64>(cell.real));
            break;
        case Type::text:
        case Type::bytes:
            append(m_bytes, cell.bytes.size());
            m_bytes.append(cell.bytes);
            break;
    }
    if (m_bytes.size() >= portion)
        flush();
}

QString Digest::result() {
    flush();
    return QString::fromLatin1(m_hash.result().toHex());
}

void Digest::flush() {
    m_hash.addData(QByteArrayView(m_bytes.data(), static_cast<qsizetype>(m_bytes.size())));
    m_bytes.clear();
}

}  // namespace kovanix::tasi
