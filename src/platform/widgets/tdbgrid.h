#pragma once

#include <QString>
#include <QTableView>
#include <vector>

class QStandardItemModel;

namespace kovanix {

/// The list grid: columns with headings of their own, apart from the fields that they show.
class TDBGrid : public QTableView {
    Q_OBJECT

public:
    /// What the print preview of a grid says around its pages.
    struct PrintInfo {
        QString previewPageOf;  ///< page-number pattern with the markers \p and \P
    };

    explicit TDBGrid(QWidget* parent = nullptr);

    /// The source of the rows; the headings stay.
    void setModel(QAbstractItemModel* model) override;

    int columnCount() const;
    /// Gives the grid that many columns, with these headings.
    void setColumnCaptions(const QStringList& captions);
    QString columnCaption(int column) const;
    void setColumnCaption(int column, const QString& text);

    /// The first print-information entry.
    PrintInfo& printInfo() { return m_printInfo; }

private:
    QStandardItemModel* m_headings;
    PrintInfo m_printInfo;
};

}  // namespace kovanix
