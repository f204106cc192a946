#pragma once

#include <QStyledItemDelegate>

namespace kovanix {

/// Paints the rows of the list of users: high enough for a thumb, a disc with the name's first letter, then
/// the name, shortened by dots where it is too long. Heights grow with the resizing container.
class UserRows : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// Paints the roles that a user may have: as high, without a disc, and with a mark on the one that is chosen.
class RoleRows : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace kovanix
