#include "grafik/figuremodel.h"

#include <QColor>

#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

enum Column { name, quantity, turnover, profit, columns };

}  // namespace

void FigureModel::setTable(const FigureTable& table) {
    beginResetModel();
    m_table = table;
    endResetModel();
}

int FigureModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_table.rows.size());
}

int FigureModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant FigureModel::data(const QModelIndex& index, int role) const {
    const FigureRow& row = m_table.rows[static_cast<std::size_t>(index.row())];
    if (role == Qt::TextAlignmentRole)
        return QVariant((index.column() == name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role == Qt::ForegroundRole && index.column() == profit && row.amounts.profit.value() < 0)
        return roleColor(ColorRole::danger);
    if (role == Qt::ToolTipRole && index.column() == name)
        return row.name;
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
        case name:
            return row.name;
        case quantity:
            return quantityText(row.amounts.quantity);
        case turnover:
            return moneyText(row.amounts.turnover);
        default:
            return moneyText(row.amounts.profit);
    }
}

QVariant FigureModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant((section == name ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
        case name:
            return m_table.heading;
        case quantity:
            return u"Miktar"_s;
        case turnover:
            return u"Tutar"_s;
        default:
            return u"Kazanç"_s;
    }
}

}  // namespace kovanix
