#include "widgets/gridaccessible.h"

#include <QScrollBar>

#include "widgets/accessibletable.h"
#include "widgets/filterbar.h"
#include "widgets/gridbands.h"
#include "widgets/tdbgrid.h"
#include "widgets/vsflexgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QRect onScreen(const QWidget& place, const QRect& rect) {
    return {place.mapToGlobal(rect.topLeft()), rect.size()};
}

class ListTable : public AccessibleTable {
public:
    explicit ListTable(TDBGrid& grid) : AccessibleTable(grid), m_grid(grid) {}

    QString heading(int column) const override { return m_grid.columnCaption(column); }
    QString headingNote(int column) const override {
        const auto* heading = m_grid.findChild<GridHeading*>();
        if (!heading || heading->sortColumn() != column)
            return {};
        return heading->sortOrder() == Qt::AscendingOrder ? u"Artan sırada"_s : u"Azalan sırada"_s;
    }
    void pressHeading(int column) override { Q_EMIT m_grid.headClick(column); }
    QString cellText(int row, int column) const override {
        return m_grid.model()->index(row, column).data().toString();
    }
    QRect cellPlace(int row, int column) const override {
        return row == headingRow
                   ? onScreen(m_grid, m_grid.headingRect(column))
                   : onScreen(*m_grid.viewport(), m_grid.visualRect(m_grid.model()->index(row, column)));
    }
    int currentRow() const override { return m_grid.currentIndex().row(); }
    int currentColumn() const override { return m_grid.currentIndex().column(); }
    int firstRow() const override { return m_grid.firstRow(); }
    int visibleRows() const override { return m_grid.visibleRows(); }
    QList<QWidget*> bands() const override {
        QList<QWidget*> shown;
        for (QWidget* band : {static_cast<QWidget*>(m_grid.findChild<FilterBar*>()),
                              static_cast<QWidget*>(m_grid.findChild<GridFooter*>())}) {
            if (band && !band->isHidden())
                shown << band;
        }
        return shown;
    }
    int columnCount() const override { return m_grid.columnCount(); }
    int rowCount() const override { return m_grid.model()->rowCount(); }
    bool selectRow(int row) override {
        if (row < 0 || row >= rowCount())
            return false;
        m_grid.setCurrentIndex(m_grid.model()->index(row, m_grid.col()));
        return true;
    }

private:
    TDBGrid& m_grid;
};

/// The ticket's first row is its heading, and hidden columns keep their places.
class TicketTable : public AccessibleTable {
public:
    explicit TicketTable(VSFlexGrid& grid) : AccessibleTable(grid), m_grid(grid) {}

    QString heading(int column) const override { return m_grid.textMatrix(0, column); }
    QString cellText(int row, int column) const override { return m_grid.textMatrix(row + 1, column); }
    QRect cellPlace(int row, int column) const override {
        return onScreen(*m_grid.viewport(), m_grid.cellRect(row + 1, column));
    }
    int currentRow() const override { return m_grid.row() - 1; }
    int currentColumn() const override { return m_grid.col(); }
    int firstRow() const override { return m_grid.verticalScrollBar()->value() / m_grid.rowHeight(); }
    int visibleRows() const override { return m_grid.viewport()->height() / m_grid.rowHeight() - 1; }
    int columnCount() const override { return m_grid.cols(); }
    int rowCount() const override { return m_grid.rows() - 1; }
    bool selectRow(int row) override {
        if (row < 0 || row >= rowCount())
            return false;
        m_grid.setRow(row + 1);
        m_grid.ensureRowVisible(row + 1);
        return true;
    }

private:
    VSFlexGrid& m_grid;
};

QAccessibleInterface* makeInterface(const QString& kind, QObject* object) {
    const auto is = [&kind](const QMetaObject& type) { return kind == QLatin1String(type.className()); };
    if (auto* grid = qobject_cast<TDBGrid*>(object); grid && is(TDBGrid::staticMetaObject))
        return new ListTable(*grid);
    if (auto* grid = qobject_cast<VSFlexGrid*>(object); grid && is(VSFlexGrid::staticMetaObject))
        return new TicketTable(*grid);
    return nullptr;
}

}  // namespace

void installGridAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

}  // namespace kovanix
