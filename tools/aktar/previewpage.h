#pragma once

#include <QWidget>

#include "aktar/fields.h"

class QComboBox;
class QLabel;
class QTableWidget;

namespace kovanix {
class CheckBox;
class EmptyPlace;
}  // namespace kovanix

namespace kovanix::aktar {

class Switches;

/// The first rows of a file, and above each column the choice of what it is.
class PreviewPage : public QWidget {
    Q_OBJECT

public:
    PreviewPage();

    Kind kind() const;
    /// Shows a file; none where it has gone. It must outlive its showing.
    /// @param words  what is known of the file
    void setFile(const CellTable* table, const QString& words);
    /// Offers the sheets of a workbook. @param read  the one whose rows are shown
    void setSheets(const QStringList& sheets, const QString& read);
    /// The columns as they are chosen now.
    Mapping mapping() const;

    /// Gives the keyboard to the rows, where no key does harm.
    void focusRows();
    /// Gives the table its sizes.
    void setScale(double scale);

Q_SIGNALS:
    /// Something else is chosen.
    void changed();
    /// Another sheet of the workbook is wanted.
    void sheetChosen(const QString& sheet);

private:
    void proposeColumns();
    void showRows();
    void showFault();
    void nameColumns();
    QComboBox* makeChoice(int column);
    void fitToTouch(QComboBox& choice) const;

    const CellTable* m_table = nullptr;
    Switches* m_kind;
    CheckBox* m_heading;
    QComboBox* m_sheet;
    QLabel* m_about;
    QLabel* m_fault;
    QTableWidget* m_choices;
    QTableWidget* m_rows;
    EmptyPlace* m_empty;
    qsizetype m_headingRow = -1;
    double m_scale = 1;
};

}  // namespace kovanix::aktar
