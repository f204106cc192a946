#pragma once

#include <QString>

namespace kovanix {

class TDBGrid;

/// A column of a list grid: the heading, the field that it shows and how. Columns belong to their grid.
class GridColumn {
public:
    GridColumn(const GridColumn&) = delete;
    GridColumn& operator=(const GridColumn&) = delete;

    int index() const { return m_index; }

    /// The heading; the name of the filter cell too.
    const QString& caption() const { return m_caption; }
    void setCaption(const QString& text);

    /// The field of the rows that is shown; a name that the rows don't have shows nothing.
    const QString& dataField() const { return m_dataField; }
    void setDataField(const QString& name);

    /// The pattern (see kovanix::format) that numbers are shown in; texts are left as they are.
    const QString& format() const { return m_format; }
    void setFormat(const QString& pattern);

    /// The width in pixels of the display. The last column reaches to the right edge whatever its width says;
    /// where the others leave it no room, they give way in proportion. 0 or less hides a column.
    int width() const { return m_width; }
    void setWidth(int pixels);

    /// What the column's filter cell holds. Set from here it is no FilterChange.
    QString filterText() const;
    void setFilterText(const QString& text);

    /// The text in the band below the rows; the band is there while any column has one.
    const QString& footerText() const { return m_footerText; }
    void setFooterText(const QString& text);

    /// Whether its texts are codes that nobody reads: muted, and cut short at their end by dots where they
    /// don't fit.
    bool isCode() const { return m_code; }
    void setCode(bool code);

    /// Whether the field is a number, and so stands at the right. A counter is a name.
    bool isNumber() const;

    /// The current row's value as bare text ("12,5"); empty where no row is current.
    QString value() const;

private:
    friend class TDBGrid;
    GridColumn(TDBGrid& grid, int index) : m_grid(grid), m_index(index) {}

    TDBGrid& m_grid;
    int m_index;
    QString m_caption;
    QString m_dataField;
    QString m_format;
    QString m_footerText;
    int m_width = 100;
    bool m_code = false;
};

}  // namespace kovanix
