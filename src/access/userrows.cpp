#include "access/userrows.h"

#include <QPainter>
#include <array>

#include "values/lettercase.h"
#include "widgets/face.h"
#include "widgets/look.h"
#include "widgets/pictures.h"

namespace kovanix {

namespace {

constexpr int designRowHeight = 48;
constexpr double designDisc = 34;
constexpr double designRadius = 8;
constexpr double designGap = 12;
constexpr double designCheck = 24;

const QColor hovered(0xEA, 0xF1, 0xFB);

// Neighbours in the list are told apart by colour too.
const std::array<QColor, 5> discs{QColor(0x2C, 0x40, 0x5B), QColor(0x0E, 0x7C, 0x6B),
                                  QColor(0x8A, 0x4B, 0x9E), QColor(0xB2, 0x56, 0x18),
                                  QColor(0x3E, 0x56, 0x75)};

QString firstLetter(const QString& name) {
    const QList<uint> characters = name.trimmed().toUcs4();
    if (characters.isEmpty())
        return {};
    const auto first = static_cast<char32_t>(characters.front());
    return upperTurkish(QString::fromUcs4(&first, 1));
}

double scaleOf(const QStyleOptionViewItem& option) {
    return option.widget ? designScale(*option.widget) : 1.0;
}

/// The face of a row: blue for the chosen one, a tint below the pointer, else none. @return its rectangle
QRectF paintRowFace(QPainter& painter, const QStyleOptionViewItem& option) {
    const double scale = scaleOf(option);
    const QRectF row = QRectF(option.rect).adjusted(3 * scale, 2 * scale, -3 * scale, -2 * scale);
    const double radius = designRadius * scale;
    const bool usable = option.state.testFlag(QStyle::State_Enabled);
    if (option.state.testFlag(QStyle::State_Selected)) {
        const FaceColors accent = faceColors(FaceRole::accent);
        if (usable)
            paintFace(painter, row, radius, accent.top, accent.bottom, accent.rim, false);
        else
            paintFace(painter, row, radius, roleColor(ColorRole::disabledTop),
                      roleColor(ColorRole::disabledBottom), roleColor(ColorRole::edge), false);
    } else if (usable && option.state.testFlag(QStyle::State_MouseOver)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(hovered);
        painter.drawRoundedRect(row, radius, radius);
    }
    return row;
}

/// No width of its own: the list gives every row its own width, and long texts are shortened to it.
QSize rowSize(const QStyleOptionViewItem& option) {
    return {1, qRound(designRowHeight * scaleOf(option))};
}

}  // namespace

QSize UserRows::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return rowSize(option);
}

void UserRows::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const double scale = scaleOf(option);
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    const QString name = index.data(Qt::DisplayRole).toString().simplified();
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QRectF row = paintRowFace(*painter, option);

    QRectF disc(0, 0, designDisc * scale, designDisc * scale);
    disc.moveCenter(QPointF(row.left() + designGap * scale / 2 + disc.width() / 2, row.center().y()));
    const QColor discColor = discs.at(static_cast<size_t>(index.row()) % discs.size());
    painter->setPen(Qt::NoPen);
    painter->setBrush(chosen ? QColor(Qt::white) : discColor);
    painter->drawEllipse(disc);
    QFont font = option.font;
    font.setWeight(QFont::DemiBold);
    font.setPixelSize(std::max(1, qRound(disc.height() * 0.5)));
    painter->setFont(font);
    painter->setPen(chosen ? faceColors(FaceRole::accent).bottom : QColor(Qt::white));
    painter->drawText(disc, Qt::AlignCenter, firstLetter(name));

    font = option.font;
    font.setWeight(chosen ? QFont::DemiBold : QFont::Medium);
    painter->setFont(font);
    painter->setPen(chosen ? QColor(Qt::white) : roleColor(ColorRole::ink));
    const QRectF text(disc.right() + designGap * scale, row.top(),
                      row.right() - disc.right() - 2 * designGap * scale, row.height());
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                      QFontMetricsF(font).elidedText(name, Qt::ElideRight, text.width()));
    if (option.state.testFlag(QStyle::State_HasFocus))
        paintFocusRing(*painter, QRectF(option.rect), designRadius * scale);
    painter->restore();
}

QSize RoleRows::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return rowSize(option);
}

void RoleRows::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const double scale = scaleOf(option);
    const bool chosen = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    const QRectF row = paintRowFace(*painter, option);
    const QColor ink = !option.state.testFlag(QStyle::State_Enabled) ? roleColor(ColorRole::disabledInk)
                       : chosen                                      ? QColor(Qt::white)
                                                                     : roleColor(ColorRole::ink);
    QRectF text = row.adjusted(designGap * scale, 0, -designGap * scale, 0);
    if (chosen) {
        const double side = designCheck * scale;
        const QPixmap mark = sharedIcon(QStringLiteral(":/icons/check.svg"))
                                 .pixmap(QSizeF(side, side).toSize(), painter->device()->devicePixelRatioF());
        painter->drawPixmap(QPointF(text.right() - side, row.center().y() - side / 2), inColor(mark, ink));
        text.setRight(text.right() - side - designGap * scale);
    }
    painter->setFont(option.font);
    painter->setPen(ink);
    const QString role = index.data(Qt::DisplayRole).toString().simplified();
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                      QFontMetricsF(option.font).elidedText(role, Qt::ElideRight, text.width()));
    if (option.state.testFlag(QStyle::State_HasFocus))
        paintFocusRing(*painter, QRectF(option.rect), designRadius * scale);
    painter->restore();
}

}  // namespace kovanix
