#include "kit/filerows.h"

#include <QDateTime>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLocale>
#include <QPainter>

#include "kit/listlook.h"
#include "widgets/face.h"
#include "widgets/gridcell.h"
#include "widgets/pictures.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSide = 24;  // at the design size

}  // namespace

QVariant FileColumns::data(const QModelIndex& index, int role) const {
    const auto* const files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (role == Qt::TextAlignmentRole && index.column() == size)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    const QModelIndex file = mapToSource(index);
    if (role == isFolderRole && files)
        return files->isDir(file);
    if (role != Qt::DisplayRole || !files)
        return QIdentityProxyModel::data(index, role);
    switch (index.column()) {
        case size:
            return files->isDir(file)
                       ? u"klasör"_s
                       : QLocale(QLocale::Turkish, QLocale::Turkey)
                             .formattedDataSize(files->size(file), 1, QLocale::DataSizeTraditionalFormat);
        case kind:
            return files->isDir(file) ? u"klasör"_s : QFileInfo(files->fileName(file)).suffix();
        case changed:
            return files->lastModified(file).toString(u"dd.MM.yyyy HH:mm"_s);
        default:
            return QIdentityProxyModel::data(index, role);
    }
}

QVariant FileColumns::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return QIdentityProxyModel::headerData(section, orientation, role);
    if (role == Qt::TextAlignmentRole)
        return QVariant((section == size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
        case name:
            return u"Ad"_s;
        case size:
            return u"Boyut"_s;
        case kind:
            return u"Tür"_s;
        default:
            return u"Değiştirilme"_s;
    }
}

QSize FileRowPainter::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return {QStyledItemDelegate::sizeHint(option, index).width(), m_rowHeight};
}

void FileRowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    paintCellGround(*painter, option, index);
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    const double scale = designScale(*option.widget);
    const int padding = qRound(cellPadding * scale);
    QRect room = option.rect.adjusted(padding, 0, -padding, -1);
    if (index.column() == FileColumns::name) {
        const int side = qRound(iconSide * scale);
        const QIcon icon = sharedIcon(index.data(FileColumns::isFolderRole).toBool() ? u":/icons/folder.svg"_s
                                                                                     : u":/icons/page.svg"_s);
        const QPixmap shape = icon.pixmap(QSize(side, side), option.widget->devicePixelRatioF());
        room.setLeft(room.left() + padding);  // the bar of a chosen row
        painter->drawPixmap(QPoint(room.left(), room.top() + (room.height() - side) / 2),
                            inColor(shape, roleColor(ColorRole::ink)));
        room.setLeft(room.left() + side + padding);
    }
    QFont font = option.font;
    font.setWeight(chosen ? QFont::Medium : QFont::Normal);
    painter->setFont(font);
    painter->setPen(roleColor(index.column() == FileColumns::name ? ColorRole::ink : ColorRole::mutedInk));
    const bool isSize = index.column() == FileColumns::size;
    paintCellText(*painter, room, index.data().toString(), isSize ? Qt::AlignRight : Qt::AlignLeft,
                  index.column() == FileColumns::name ? CellText::name : CellText::number);
}

}  // namespace kovanix
