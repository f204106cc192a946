#pragma once

#include <functional>

#include "screens/listscreen.h"

namespace kovanix {

class EntryFrame;

/// What a record screen says, by the keys of the text catalogue, and where it exports to.
struct RecordTraits {
    QString newRecord;        ///< what the frame's strip says of a record that is being added
    QString nothingToEdit;    ///< no row is selected
    QString emptyList;        ///< there is no row to select
    QString nothingToDelete;  ///< no row is selected
    QString deleteQuestion;
    QString deleted;
    QString exportPath;  ///< with a drive letter
    QString exported;
};

/// A list screen whose rows are added, changed and deleted, through an entry frame below the list.
class RecordScreen : public ListScreen {
    Q_OBJECT

public:
    /// Both live as long as the program.
    RecordScreen(const ListTraits& list, const RecordTraits& records);
    ~RecordScreen() override;

protected:
    struct RecordControls {
        EntryFrame* frame = nullptr;
        QWidget* firstField = nullptr;
        Adodc* deletionData = nullptr;    ///< `eklemedatasi2`
        TDBGrid* deletionGrid = nullptr;  ///< `kayitgridi2`, never seen
    };

    /// Behind setUpList.
    void setUpRecords(const RecordControls& controls);

    /// Opens the frame, emptied, for a new record.
    void openToAdd();

    /// Turns the frame to changing a record, and reads the list's current row anew: a list that is hours old
    /// would bring old values back. Without a selected row that can be seen it says so.
    /// @return whether there is a row, whose cells can be taken now
    bool takeSelectedRow();
    /// A cell of the current row as bare text.
    QString cell(int column) const;
    /// Opens the frame for the row that was taken.
    /// @param name  whose record it is
    void openToEdit(const QString& name, QWidget& focus);

    /// Runs the statements that store the frame's record on the shared connection, through the shared
    /// recordset. A failure is shown. @return whether they succeeded
    bool store(const std::function<void()>& statements);
    /// What follows a save: the list is read anew, and the frame stands open for the next record.
    void goOnAdding();
    /// Turns the frame back to adding and hides it; the list has the focus. The fields are the screen's
    /// matter.
    void closeFrame();

    /// Shows a notice, by its key, and gives the focus to the list: the Enter of a scan that follows must not
    /// press the button again.
    void tell(const QString& notice);

    /// Asks, then deletes the row whose number the hidden box holds. One that can't be seen isn't deleted.
    void deleteSelected();

    /// Writes the list as it is shown. A path that can't be written to gives no error, as required: the
    /// notice comes all the same.
    void exportList();

private:
    bool deleteRow(const QString& number);

    const RecordTraits& m_records;
    RecordControls m_controls;
};

}  // namespace kovanix
