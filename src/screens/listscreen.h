#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <chrono>
#include <initializer_list>

#include "screens/listrules.h"
#include "screens/openedscreen.h"

class QLineEdit;

namespace kovanix {

class ActiveResize;
class Adodc;
class TDBGrid;
class vkFrame;

/// What the grid of a list screen tells that copies the current row's number into the hidden box.
enum SelectionEvent : unsigned {
    onClick = 1,
    onDoubleClick = 2,
    onPress = 4,
    onMove = 8,
    onRelease = 16,
};

/// A column of a list as it is stored: its heading with the Turkish letters spelled by symbols, its field,
/// how its numbers are shown, and its width at the design size.
struct ListColumn {
    QString caption;
    QString field;
    QString format;
    int width;
    bool code = false;  ///< its texts aren't for reading, and may lose their end
};

/// In what the list screens differ.
struct ListTraits {
    QString source;  ///< the table
    QList<ListColumn> columns;
    unsigned selection = 0;  ///< SelectionEvent bits
    FilterRules filter;
    bool sorts = true;          ///< a press on a heading sorts; else it chooses as one on a row does
    bool filters = true;        ///< there is a filter bar
    bool focusesToSort = true;  ///< a press on a heading gives the grid the focus first
    QString scanField;          ///< the filter cell that digits go to when they are typed into the rows
    QString nameField;          ///< the filter cell that letters go to
    QString unit;               ///< what the rows are, in the count of the title strip ("ürün")
    QString icon;               ///< path of the picture that stands for an empty list
    QString noneYet;            ///< what an empty list says
    QString noneYetHint;
};

/// A screen that shows a table in a grid: sorting by its headings, the filter bar, column widths that follow
/// the screen's, and the number of the selected row in a hidden box.
///
/// A screen of this kind fills the display. Its procedures run on after a failure, statement by statement.
class ListScreen : public OpenedScreen {
    Q_OBJECT

public:
    /// The traits live as long as the program.
    explicit ListScreen(const ListTraits& traits) : m_traits(traits) {}
    ~ListScreen() override;

protected:
    /// The controls that every list screen has.
    struct Controls {
        TDBGrid* grid = nullptr;
        Adodc* data = nullptr;
        QLineEdit* selected = nullptr;  ///< `sutun2`, the number of the selected row; none where nothing asks
        ActiveResize* resizing = nullptr;
        vkFrame* frame = nullptr;  ///< whose title strip bears the count
    };

    TDBGrid& grid() const { return *m_controls.grid; }
    Adodc& data() const { return *m_controls.data; }
    QLineEdit& selected() const { return *m_controls.selected; }
    const ListTraits& listTraits() const { return m_traits; }

    /// Gives the grid its columns and connects what all list screens connect; behind setupUi.
    void setUpList(const Controls& controls);

    /// Points the data control at the shop's file and the screen's table.
    void connectData() { connectData(m_traits.source); }
    /// The same with a condition behind the table ("satislar where …").
    void connectData(const QString& recordSource);
    /// Binds the grid, reads the rows and shows them; nothing is read that is known to be unchanged.
    /// @return whether they could be read; else those of before stand
    bool showRows();
    /// The order that the rows get at the next reading, in place of what a heading asked for.
    void setOrder(const QString& order) { m_sort = order; }
    /// Keeps the widths of grid and columns as they are at the design size.
    void storeWidths();
    /// Sets what the filter cells ask for. A filter that is refused leaves the former one in force, and its
    /// cell says so.
    void filter();
    /// The milliseconds that reading has taken since it began.
    virtual std::chrono::milliseconds readingTime() const;
    /// Copies the number of the current row into the hidden box.
    void copySelection();
    /// Whether the row whose number the hidden box holds is the current one: a filter may hide it, and
    /// another till may have deleted it.
    bool isSelectedRowCurrent() const;
    /// Brings the current row into sight, so that it is known what a question is about.
    void showCurrentRow() const;
    /// Tells in the title strip how many rows there are.
    virtual void tellCount();
    /// Says in the empty list why there are no rows.
    /// @param readable  whether they could be read
    virtual void tellEmpty(bool readable);

    /// The screen's procedures for the grid's own events.
    virtual void TDBGrid1_dblclick();
    void TDBGrid1_headclick(int column);
    void TDBGrid1_filterchange();
    void boyutlandirma_resize();

private:
    void sort(const QString& order);
    void tellSort();
    QStringList filterTexts() const;

    const ListTraits& m_traits;
    Controls m_controls;
    ListOrder m_order;
    QString m_sort;  ///< what was last asked for
    QElapsedTimer m_reading;
    QStringList m_textsInForce;  ///< the filter cells' texts that the rows answer to
    ColumnWidths m_widths;
};

}  // namespace kovanix
