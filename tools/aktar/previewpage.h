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
    /// The columns as they are chosen now.
    Mapping mapping() const;

    /// Gives the table its sizes.
    void setScale(double scale);

Q_SIGNALS:
    /// Something else is chosen.
    void changed();

private:
    void proposeColumns();
    void showRows();
    void showFault();
    void nameColumns();
    QComboBox* makeChoice(int column);

    const CellTable* m_table = nullptr;
    Switches* m_kind;
    CheckBox* m_heading;
    QLabel* m_about;
    QLabel* m_fault;
    QTableWidget* m_choices;
    QTableWidget* m_rows;
    EmptyPlace* m_empty;
    qsizetype m_headingRow = -1;
    double m_scale = 1;
};

}  // namespace kovanix::aktar
