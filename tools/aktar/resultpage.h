#pragma once

#include <QAbstractTableModel>
#include <QWidget>
#include <array>

#include "aktar/importplan.h"

class QLabel;
class QTableView;

namespace kovanix::aktar {

/// The lines of a file of which something is to be said.
class NoteModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;
    void setNotes(std::vector<LineNote> notes);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::vector<LineNote> m_notes;
};

/// What an import would do, or has done: four figures, and the lines that are refused, settled
/// or cut.
class ResultPage : public QWidget {
    Q_OBJECT

public:
    ResultPage();
    void setPlan(const ImportPlan& plan);
    /// Says that it has been done.
    void setDone();
    void setScale(double scale);

private:
    std::array<QLabel*, 4> m_figures{};
    QLabel* m_words;
    NoteModel* m_notes;
    QTableView* m_table;
    bool m_anyToWrite = false;
};

}  // namespace kovanix::aktar
