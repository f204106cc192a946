#pragma once

#include <QMarginsF>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace kovanix {

/// The letters of a printed page's header or footer.
struct PrintFont {
    QString name = QStringLiteral("Roboto");
    double size = 10;  ///< points
    bool bold = false;
    bool italic = false;
};

/// How a grid's rows are printed: what stands around them on each page, and what the preview says.
struct PrintInfo {
    /// Up to three parts at the left, in the middle and at the right, with "\t" (a backslash and a t) between
    /// them; "\p" stands for the page's number, "\P" for the number of pages.
    QString pageHeader;
    PrintFont pageHeaderFont;
    QString pageFooter;  ///< as the header
    PrintFont pageFooterFont;
    bool repeatColumnHeaders = false;  ///< the headings stand on every page, not on the first alone
    QMarginsF margins;                 ///< twips, 1440 to the inch
    QString previewCaption;            ///< the preview's title
    QString previewPageOf;  ///< what the preview says of the page shown, with the markers \p and \P
};

/// A column of a grid as it is printed.
struct PrintColumn {
    QString heading;
    double width;  ///< as a share of the sum of all columns' widths
    bool number;   ///< stands at the right
    bool code;     ///< may lose its end
};

/// What is printed of a grid: its columns and rows as it showed them at one moment.
struct PrintTable {
    std::vector<PrintColumn> columns;
    qsizetype rowCount = 0;
    /// The text of a cell; asked for when its page is made.
    std::function<QString(qsizetype row, std::size_t column)> text;
    QStringList footers;  ///< one for each column; none where the grid has no footers
};

}  // namespace kovanix
