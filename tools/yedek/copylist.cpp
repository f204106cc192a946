#include "yedek/copylist.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "widgets/face.h"
#include "widgets/gridcell.h"
#include "widgets/look.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr int rowHeight = 44;
constexpr int leastRowHeight = 40;
constexpr int momentRole = Qt::UserRole;
constexpr int placeRole = Qt::UserRole + 1;
constexpr int sizeRole = Qt::UserRole + 2;

class RowPainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        constexpr int padding = 12;
        constexpr int barWidth = 5;
        const QRect row = option.rect;
        const bool chosen = option.state.testFlag(QStyle::State_Selected);
        const double scale = designScale(*option.widget);
        const ColorRole ground = chosen                 ? ColorRole::selection
                                 : index.row() % 2 == 1 ? ColorRole::zebra
                                                        : ColorRole::card;
        painter->fillRect(row, roleColor(ground));
        painter->fillRect(QRect(row.bottomLeft(), QSize(row.width(), 1)), roleColor(ColorRole::rowLine));
        if (chosen)
            painter->fillRect(QRect(row.topLeft(), QSize(qRound(barWidth * scale), row.height())),
                              roleColor(ColorRole::selectionBar));
        QFont font = option.font;
        font.setWeight(chosen ? QFont::Medium : QFont::Normal);
        painter->setFont(font);
        painter->setPen(roleColor(ColorRole::ink));
        const int side = qRound(padding * scale);
        const QRect room = row.adjusted(side, 0, -side, -1);
        const int momentWidth = room.width() * 45 / 100;
        const int sizeWidth = room.width() * 15 / 100;
        const auto text = [&](int left, int width, int role, Qt::Alignment alignment, CellText kind) {
            paintCellText(*painter, {room.left() + left, room.top(), width, room.height()},
                          index.data(role).toString(), alignment, kind);
        };
        text(0, momentWidth, momentRole, Qt::AlignLeft, CellText::name);
        text(momentWidth, room.width() - momentWidth - sizeWidth, placeRole, Qt::AlignLeft, CellText::name);
        text(room.width() - sizeWidth, sizeWidth, sizeRole, Qt::AlignRight, CellText::number);
    }
};

}  // namespace

CopyList::CopyList(QWidget* parent) : QListWidget(parent) {
    setAccessibleName(u"Yedekler"_s);
    setProperty("textRole", u"body"_s);
    setItemDelegate(new RowPainter(this));
    setUniformItemSizes(true);
    setSelectionMode(SingleSelection);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setScale(1);
}

void CopyList::addCopy(const QString& moment, const QString& place, const QString& size) {
    // As one text for whoever has it read aloud.
    auto* const item = new QListWidgetItem(QStringList{moment, place, size}.join(u", "_s), this);
    item->setData(momentRole, moment);
    item->setData(placeRole, place);
    item->setData(sizeRole, size);
    item->setSizeHint({0, m_rowHeight});
}

void CopyList::setScale(double scale) {
    m_rowHeight = std::max(leastRowHeight, qRound(rowHeight * scale));
    verticalScrollBar()->setStyleSheet(scrollBarStyle(scale));
    for (int i = 0; i < count(); ++i)
        item(i)->setSizeHint({0, m_rowHeight});
}

}  // namespace kovanix::yedek
