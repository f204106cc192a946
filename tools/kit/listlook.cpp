#include "kit/listlook.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyleOptionViewItem>
#include <algorithm>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

void paintCellGround(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
    constexpr int barWidth = 5;
    const QRect& cell = option.rect;
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    const ColorRole ground = chosen                 ? ColorRole::selection
                             : index.row() % 2 == 1 ? ColorRole::zebra
                                                    : ColorRole::card;
    painter.fillRect(cell, roleColor(ground));
    painter.fillRect(QRect(cell.bottomLeft(), QSize(cell.width(), 1)), roleColor(ColorRole::rowLine));
    if (chosen && index.column() == 0)
        painter.fillRect(
            QRect(cell.topLeft(), QSize(qRound(barWidth * designScale(*option.widget)), cell.height())),
            roleColor(ColorRole::selectionBar));
}

QFont headingFont(const QFont& list, double scale) {
    constexpr int letters = 14;
    QFont font = list;
    font.setPixelSize(std::max(FittedText::smallestLegible, qRound(letters * scale)));
    font.setWeight(QFont::Medium);
    return font;
}

void dressHeading(QHeaderView& heading, double scale, int height) {
    heading.setFixedHeight(height);
    heading.setStyleSheet(
        u"QHeaderView { background: %1; } QHeaderView::section { background: %1; color: %2; border: none; "
        u"padding: 0 %3px; font-size: %4px; font-weight: 500; }"_s
            .arg(roleColor(ColorRole::heading).name(), roleColor(ColorRole::headingInk).name())
            .arg(qRound(cellPadding * scale))
            .arg(headingFont({}, scale).pixelSize()));
}

}  // namespace kovanix
