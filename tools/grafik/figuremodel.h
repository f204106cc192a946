#pragma once

#include <QAbstractTableModel>

#include "grafik/figuretable.h"

namespace kovanix {

/// The exact figures beside the chart: name, quantity, turnover and profit of each row.
class FigureModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setTable(const FigureTable& table);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    FigureTable m_table;
};

}  // namespace kovanix
