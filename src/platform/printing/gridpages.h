#pragma once

#include <QRect>
#include <QSizeF>
#include <QString>
#include <functional>
#include <vector>

#include "widgets/printinfo.h"

class QPainter;

namespace kovanix {

/// The pages of a printed grid: a header, the columns' headings, rows of one height, the footers of the grid
/// as the last row, and a page footer. The columns share the page's width by what their first rows, headings
/// and sums need.
///
/// How many pages there are follows from the number of rows; a page is worked out when it is painted, so that
/// a million rows cost no more than one page of them.
class GridPages {
public:
    /// No columns and no rows: one blank page.
    GridPages() = default;
    /// @param paper  in points, 72 to the inch. Margins that leave too little of it are left out
    GridPages(PrintTable table, PrintInfo info, QSizeF paper);

    int pageCount() const;
    /// In points.
    QSizeF paper() const { return m_paper; }

    /// How far down the page its rows reach, as a share of the paper's height.
    double rowsEnd(int page) const;

    /// Paints a page, counted from 0, without the paper's own white.
    /// @param painter  with the paper's upper left corner at its origin
    /// @param dotsPerInch  of what is painted on
    void paint(QPainter& painter, int page, double dotsPerInch) const;

    /// A text of the page with its number and the number of pages in place of the markers \p and \P.
    QString withNumbers(const QString& text, int page) const;

private:
    int rowsOn(int page) const;
    qsizetype firstLine(int page) const;
    qsizetype lines() const;
    bool hasHeadings(int page) const;
    void paintBand(QPainter& painter, const QRect& band, const QString& text, const PrintFont& font,
                   int page) const;
    void paintHeadings(QPainter& painter, int top) const;
    void paintRows(QPainter& painter, int top, int page) const;
    template <class Text>
    void paintCells(QPainter& painter, int top, const Text& text, bool headings) const;

    PrintTable m_table;
    PrintInfo m_info;
    QSizeF m_paper;
    // In dots of the layout.
    QRect m_room;    ///< the paper within its margins
    QRect m_header;  ///< empty where there is none
    QRect m_footer;
    QRect m_body;              ///< what headings and rows share
    std::vector<int> m_edges;  ///< the columns' left edges, and the right edge of the last
};

/// Prints all pages as one job.
/// @param printed  told how many pages are painted, after each of them; it may paint, but must let no events
/// through
/// @throws RuntimeError (printerError) as PrintJob
void printPages(const GridPages& pages, const std::function<void(int count)>& printed = {});

}  // namespace kovanix
