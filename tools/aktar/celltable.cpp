#include "aktar/celltable.h"

#include <algorithm>

#include "aktar/failure.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

void CellTable::addCell(QStringView text, CellKind kind) {
    const QByteArray bytes = text.toUtf8();
    addUtf8({bytes.constData(), static_cast<size_t>(bytes.size())}, kind);
}

void CellTable::addUtf8(std::string_view text, CellKind kind) {
    const auto bytes = static_cast<qsizetype>(text.size());
    if (bytes > longestCell && QString::fromUtf8(text.data(), bytes).size() > longestCell)
        fail(u"%1. satırdan sonra bir hücre %2 harften uzun; tırnaklar karışmış olabilir"_s
                 .arg(m_rows.empty() ? 0 : m_rows.back().line)
                 .arg(longestCell));
    if (static_cast<qsizetype>(m_cells.size() - m_openRow) >= mostColumns)
        fail(u"Dosyada %1 sütundan geniş bir satır var"_s.arg(mostColumns));
    // A workbook may name one long text again and again.
    if (m_cells.size() >= mostCells || m_text.size() > mostBytes)
        fail(u"Dosya çok büyük; bölerek aktarın"_s);
    m_cells.push_back({m_text.size(), kind});
    m_text += text;
}

void CellTable::endRow(qint64 line) {
    const size_t begin = m_openRow == m_cells.size() ? m_text.size() : m_cells[m_openRow].begin;
    if (m_text.find_first_not_of(" \t\n\r", begin) == std::string::npos) {
        m_text.resize(begin);
        m_cells.resize(m_openRow);
        return;
    }
    if (rowCount() >= mostRows)
        fail(u"Dosyada %1 satırdan çok var; bölerek aktarın"_s.arg(mostRows));
    m_columns = std::max(m_columns, static_cast<qsizetype>(m_cells.size() - m_openRow));
    m_rows.push_back({m_openRow, line});
    m_openRow = m_cells.size();
}

size_t CellTable::endOfRow(qsizetype row) const {
    const auto next = static_cast<size_t>(row) + 1;
    return next < m_rows.size() ? m_rows[next].firstCell : m_openRow;
}

qsizetype CellTable::cellCount(qsizetype row) const {
    return static_cast<qsizetype>(endOfRow(row) - m_rows[static_cast<size_t>(row)].firstCell);
}

std::string_view CellTable::bytes(qsizetype row, qsizetype column) const {
    if (column < 0 || column >= cellCount(row))
        return {};
    const size_t cell = m_rows[static_cast<size_t>(row)].firstCell + static_cast<size_t>(column);
    const size_t end = cell + 1 < m_cells.size() ? m_cells[cell + 1].begin : m_text.size();
    return std::string_view(m_text).substr(m_cells[cell].begin, end - m_cells[cell].begin);
}

QString CellTable::text(qsizetype row, qsizetype column) const {
    const std::string_view utf8 = bytes(row, column);
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

CellKind CellTable::kind(qsizetype row, qsizetype column) const {
    if (column < 0 || column >= cellCount(row))
        return CellKind::text;
    return m_cells[m_rows[static_cast<size_t>(row)].firstCell + static_cast<size_t>(column)].kind;
}

bool CellTable::isBlank(qsizetype row, qsizetype column) const {
    return text(row, column).trimmed().isEmpty();
}

}  // namespace kovanix::aktar
