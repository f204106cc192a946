#include "widgets/tdbgrid.h"

#include <QHeaderView>
#include <QStandardItemModel>

namespace kovanix {

TDBGrid::TDBGrid(QWidget* parent) : QTableView(parent), m_headings(new QStandardItemModel(this)) {
    setModel(m_headings);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
}

void TDBGrid::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
    // The headings outlive any change of the rows' source.
    if (model != m_headings)
        horizontalHeader()->setModel(m_headings);
}

int TDBGrid::columnCount() const {
    return m_headings->columnCount();
}

void TDBGrid::setColumnCaptions(const QStringList& captions) {
    m_headings->setColumnCount(static_cast<int>(captions.size()));
    m_headings->setHorizontalHeaderLabels(captions);
}

QString TDBGrid::columnCaption(int column) const {
    return m_headings->headerData(column, Qt::Horizontal).toString();
}

void TDBGrid::setColumnCaption(int column, const QString& text) {
    m_headings->setHeaderData(column, Qt::Horizontal, text);
}

}  // namespace kovanix
