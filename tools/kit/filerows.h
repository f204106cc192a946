#pragma once

#include <QIdentityProxyModel>
#include <QStyledItemDelegate>

namespace kovanix {

/// The columns of a folder's list in the shop's words: name, size, kind, when it was changed. The toolkit's
/// own would be in the language of the desktop, or in English.
class FileColumns : public QIdentityProxyModel {
    Q_OBJECT

public:
    enum Column { name, size, kind, changed };
    static constexpr int isFolderRole = Qt::UserRole + 100;

    using QIdentityProxyModel::QIdentityProxyModel;

    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
};

/// Paints a folder's list as the till's lists: long names in two lines, a folder known by its picture.
class FileRowPainter : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setRowHeight(int pixels) { m_rowHeight = pixels; }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    int m_rowHeight = 0;
};

}  // namespace kovanix
