#pragma once

#include <QMarginsF>
#include <QString>

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
    QString pageHeader;
    PrintFont pageHeaderFont;
    /// Up to three parts at the left, in the middle and at the right, with "\t" (a backslash and a t) between
    /// them; "\p" stands for the page's number, "\P" for the number of pages.
    QString pageFooter;
    PrintFont pageFooterFont;
    bool repeatColumnHeaders = false;  ///< the headings stand on every page, not on the first alone
    QMarginsF margins;                 ///< twips, 1440 to the inch
    QString previewCaption;            ///< the preview's title
    QString previewPageOf;  ///< what the preview says of the page shown, with the markers \p and \P
};

}  // namespace kovanix
