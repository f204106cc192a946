#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "values/numbers.h"
#include "widgets/adodc.h"

namespace kovanix {

class TDBGrid;

/// A cell as a grid shows it: a number in the column's pattern, where there is one, all else as bare text.
/// @param rows  a RowSet or a snapshot of one
template <class Rows>
QString shownText(const Rows& rows, qsizetype place, int field, const QString& pattern) {
    if (!pattern.isEmpty()) {
        const QVariant value = rows.value(place, field);
        if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong)
            return format(value.toDouble(), pattern);
    }
    return rows.text(place, field);
}

/// The shown texts and the headings of a list grid. Nothing of the rows is copied: a text is made when it is
/// asked for. A sort, a filter and other rows are one reset each.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit GridModel(TDBGrid& grid);

    /// @param source  not to be asked any more once it is gone; nullptr for none
    void setSource(Adodc* source) { m_source = source; }
    Adodc* source() const { return m_source; }

    /// Takes rows and columns as they are now.
    /// @return whether there are columns more or less, or one that shows numbers now, or no longer
    bool reload();
    void captionChanged(int column) { Q_EMIT headerDataChanged(Qt::Horizontal, column, column); }

    /// The field that a column shows; -1 for none.
    int field(int column) const { return m_shown[static_cast<size_t>(column)].field; }
    bool isNumber(int column) const { return m_shown[static_cast<size_t>(column)].number; }
    QString text(int place, int column) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Shown {
        int field = -1;
        bool number = false;
    };

    const TDBGrid& m_grid;
    Adodc* m_source = nullptr;
    std::vector<Shown> m_shown;
    int m_rowCount = 0;
};

}  // namespace kovanix
