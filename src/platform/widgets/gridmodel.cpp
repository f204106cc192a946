#include "widgets/gridmodel.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "widgets/tdbgrid.h"

namespace kovanix {

GridModel::GridModel(TDBGrid& grid) : QAbstractTableModel(&grid), m_grid(grid) {}

bool GridModel::reload() {
    beginResetModel();
    m_rowCount = 0;
    const std::vector<Shown> before =
        std::exchange(m_shown, std::vector<Shown>(static_cast<size_t>(m_grid.columnCount())));
    if (m_source) {
        const RowSet& rows = m_source->recordset();
        m_rowCount =
            static_cast<int>(std::min<qsizetype>(rows.recordCount(), std::numeric_limits<int>::max()));
        for (int column = 0; column < m_grid.columnCount(); ++column) {
            Shown& shown = m_shown[static_cast<size_t>(column)];
            shown.field = rows.fieldIndex(m_grid.column(column).dataField());
            shown.number = shown.field >= 0 && rows.fieldType(shown.field) == ColumnType::number;
        }
    }
    endResetModel();
    return !std::ranges::equal(before, m_shown, {}, &Shown::number, &Shown::number);
}

QString GridModel::text(int place, int column) const {
    const int shown = field(column);
    if (shown < 0 || !m_source)
        return {};
    const RowSet& rows = m_source->recordset();
    // The rows may have changed a moment ago, and a grid on the same source is told before this one.
    if (place < 0 || place >= rows.recordCount() || shown >= rows.fieldCount())
        return {};
    return shownText(rows, place, shown, m_grid.column(column).format());
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rowCount;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return text(index.row(), index.column());
        case Qt::AccessibleDescriptionRole:
            return m_grid.column(index.column()).caption();
        case Qt::TextAlignmentRole:
            return QVariant::fromValue((isNumber(index.column()) ? Qt::AlignRight : Qt::AlignLeft) |
                                       Qt::AlignVCenter);
        default:
            return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount())
        return QAbstractTableModel::headerData(section, orientation, role);
    return m_grid.column(section).caption();
}

}  // namespace kovanix
