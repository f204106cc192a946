#include "sales/quickkeymap.h"

#include <QPainter>
#include <algorithm>

#include "widgets/drawnbutton.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/look.h"
#include "widgets/pictures.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 4;
// At the design size.
constexpr double mapWidth = 344;
constexpr double keyHeight = 34;
constexpr double gap = 6;
constexpr double radius = 6;
constexpr double pencilSide = 18;
constexpr double lineHeight = 22;
constexpr double lineGap = 8;
constexpr double linePixels = 15;
constexpr double smallestLine = 11;
const QColor rimGrey(0x88, 0x94, 0xA2);

}  // namespace

QuickKeyMap::QuickKeyMap(std::vector<const CommandButton*> keys, QWidget* parent)
    : QWidget(parent), m_keys(std::move(keys)), m_pencil(sharedIcon(u":/icons/pencil.svg"_s)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void QuickKeyMap::mark(int place, const QString& words) {
    m_marked = place;
    m_words = words;
    setAccessibleDescription(words);
    update();
}

QSize QuickKeyMap::sizeHint() const {
    const int rows = (static_cast<int>(m_keys.size()) + columns - 1) / columns;
    return (QSizeF(mapWidth, lineHeight + lineGap + rows * (keyHeight + gap) - gap) * designScale(*this))
        .toSize();
}

QSize QuickKeyMap::minimumSizeHint() const {
    return sizeHint() * 0.7;
}

void QuickKeyMap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QSizeF wanted(sizeHint());
    const double scale = designScale(*this);
    // Whole wherever it stands: smaller where there is less room than it asks for.
    const double shrink = std::min({1.0, width() / wanted.width(), height() / wanted.height()});
    const double unit = scale * shrink;
    const double left = (width() - mapWidth * unit) / 2;
    double top = (height() - wanted.height() * shrink) / 2;

    QFont plain = font();
    plain.setWeight(QFont::Normal);
    FittedText line;
    line.fit(m_words, plain, static_cast<int>(std::max(smallestLine, linePixels * scale)),
             QRectF(0, top, width(), lineHeight * unit), Qt::AlignCenter, 1);
    line.paint(painter, roleColor(ColorRole::mutedInk, standsOnDark(*this) ? Tone::dark : Tone::light));
    top += (lineHeight + lineGap) * unit;

    const double keyWidth = (mapWidth - (columns - 1) * gap) / columns;
    for (int place = 0; place < static_cast<int>(m_keys.size()); ++place) {
        const int row = place / columns;
        const int column = place % columns;
        paintKey(painter,
                 QRectF(left + column * (keyWidth + gap) * unit, top + row * (keyHeight + gap) * unit,
                        keyWidth * unit, keyHeight * unit),
                 place);
    }
}

void QuickKeyMap::paintKey(QPainter& painter, const QRectF& cell, int place) const {
    const double corner = radius * cell.height() / keyHeight;
    const CommandButton& key = *m_keys[static_cast<std::size_t>(place)];
    if (place == m_marked) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(roleColor(ColorRole::selectionBar));
        painter.drawRoundedRect(cell, corner, corner);
        const double side = pencilSide * cell.height() / keyHeight;
        const QPixmap pencil =
            inColor(m_pencil.pixmap(QSizeF(side, side).toSize(), devicePixelRatioF()), Qt::white);
        const QSizeF real = pencil.deviceIndependentSize();
        painter.drawPixmap(cell.center() - QPointF(real.width() / 2, real.height() / 2), pencil);
    } else if (key.caption().isEmpty()) {
        QPen dashes(rimGrey, 1.5);
        dashes.setDashPattern({3.0, 2.5});
        painter.setPen(dashes);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(cell.adjusted(0.75, 0.75, -0.75, -0.75), corner, corner);
    } else {
        // A face as pale as the panel would not be seen on it.
        const QColor face = key.backcolor1();
        const QColor ground = palette().color(QPalette::Window);
        painter.setPen(Qt::NoPen);
        painter.setBrush(contrast(face, ground) < legibleLarge / 2 ? mixed(face, rimGrey, 0.25) : face);
        painter.drawRoundedRect(cell, corner, corner);
    }
}

}  // namespace kovanix
