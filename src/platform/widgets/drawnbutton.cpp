#include "widgets/drawnbutton.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QScopedValueRollback>
#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/pictures.h"

namespace kovanix {
namespace {

constexpr double designRadius = 8.0;
constexpr int designTouchSize = 44;
constexpr int smallestCommand = 7;  // pixels
const QColor slotGrey(0x7C, 0x87, 0x94);
const QColor slotRim(0x88, 0x94, 0xA2);
constexpr double lineShare = 1.4;  // what a line takes of the letters' size
constexpr double plusArm = 8.0;    // of a sign of 24, at the design size

}  // namespace

// Where everything stands on the face, worked out anew only when something that it hangs on has changed.
struct DrawnButton::Arrangement {
    using Key = std::tuple<QSizeF, QFont, int, int, QString, QString, Qt::Alignment, int, qint64, QSize,
                           double, double>;

    Key key;
    QRectF icon;
    QIcon shared;
    qint64 sharedOf = 0;  // the key of the icon that it was looked up for
    QPixmap iconPixmap;
    QRectF pill;
    FittedText caption;
    FittedText hint;
};

// What a painting goes by.
struct DrawnButton::State {
    QColor top;
    QColor bottom;
    QColor border;
    QColor ink;
    bool enabled;
    bool pressed;
};

DrawnButton::DrawnButton(QWidget* parent)
    : Pressable(parent),
      m_backcolor1(0xFB, 0xFB, 0xFB),
      m_backcolor2(0xDD, 0xE2, 0xE8),
      m_backcolorpushed1(0xC6, 0xCE, 0xD8),
      m_backcolorpushed2(0xD9, 0xDF, 0xE6),
      m_forecolor(0x12, 0x1A, 0x22),
      m_arrangement(std::make_unique<Arrangement>()) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setFocusPolicy(Qt::StrongFocus);
}

DrawnButton::~DrawnButton() = default;

void DrawnButton::setCaption(const QString& text) {
    if (m_caption == text)
        return;
    m_caption = text;
    nameAfterCaption();
    captionChanged();
    update();
}

void DrawnButton::nameAfterCaption() {
    // A name that the screen gave itself stays.
    if (!accessibleName().isEmpty() && accessibleName() != m_givenName)
        return;
    m_givenName = m_caption.trimmed().isEmpty() ? toolTip() : m_caption.trimmed();
    setAccessibleName(m_givenName);
}

void DrawnButton::setColor(QColor& member, const QColor& color) {
    m_look = FaceRole::none;
    if (member == color)
        return;
    member = color;
    update();
}

void DrawnButton::setLook(FaceRole role) {
    if (role == m_look)
        return;
    if (role != FaceRole::none) {
        const FaceColors colors = kovanix::faceColors(role);
        m_backcolor1 = colors.top;
        m_backcolor2 = colors.bottom;
        m_backcolorpushed1 = colors.pressedTop;
        m_backcolorpushed2 = colors.pressedBottom;
        m_forecolor = colors.ink;
    }
    m_look = role;
    update();
}

void DrawnButton::setBackcolor1(const QColor& color) {
    setColor(m_backcolor1, color);
}

void DrawnButton::setBackcolor2(const QColor& color) {
    setColor(m_backcolor2, color);
}

void DrawnButton::setBackcolorpushed1(const QColor& color) {
    setColor(m_backcolorpushed1, color);
}

void DrawnButton::setBackcolorpushed2(const QColor& color) {
    setColor(m_backcolorpushed2, color);
}

void DrawnButton::setForecolor(const QColor& color) {
    setColor(m_forecolor, color);
}

void DrawnButton::setKeyHint(const QString& hint) {
    if (m_keyHint == hint)
        return;
    m_keyHint = hint;
    update();
}

void DrawnButton::setFontsize(int points) {
    points = std::max(0, points);
    if (m_fontsize == points)
        return;
    m_fontsize = points;
    update();
}

void DrawnButton::setIconFile(const QString& path) {
    m_iconFile = path;
    setIcon(sharedIcon(path));
}

void DrawnButton::setIconPlace(IconPlace place) {
    if (m_iconPlace == place)
        return;
    m_iconPlace = place;
    m_arrangement->key = {};
    update();
}

void DrawnButton::setIconAtEdge(bool atEdge) {
    if (m_iconAtEdge == atEdge)
        return;
    m_iconAtEdge = atEdge;
    m_arrangement->key = {};
    update();
}

void DrawnButton::setCaptionAlignment(Qt::Alignment alignment) {
    if (m_captionAlignment == alignment)
        return;
    m_captionAlignment = alignment;
    update();
}

void DrawnButton::setCaptionLines(int lines) {
    lines = std::max(1, lines);
    if (m_captionLines == lines)
        return;
    m_captionLines = lines;
    update();
}

void DrawnButton::setCaptionIsName(bool isName) {
    if (m_captionIsName == isName)
        return;
    m_captionIsName = isName;
    m_arrangement->key = {};
    update();
}

void DrawnButton::setHoldTime(int milliseconds) {
    m_holdTime = std::max(0, milliseconds);
    if (m_holdTime == 0)
        m_hold.stop();
}

QSize DrawnButton::sizeHint() const {
    return QSizeF(2.2 * designTouchSize * designScale(*this), 1.1 * designTouchSize * designScale(*this))
        .toSize();
}

QSize DrawnButton::minimumSizeHint() const {
    return QSizeF(designTouchSize * designScale(*this), designTouchSize * designScale(*this)).toSize();
}

bool DrawnButton::event(QEvent* event) {
    if (event->type() == QEvent::ToolTipChange)
        nameAfterCaption();
    return QAbstractButton::event(event);
}

void DrawnButton::mousePressEvent(QMouseEvent* event) {
    const QPointer<DrawnButton> self(this);
    Q_EMIT mousedown(event->button());
    if (!self)
        return;
    if (event->button() != Qt::LeftButton) {
        // What another button has done meanwhile, a finger that is down doesn't do once more.
        m_hold.stop();
        m_held = isDown();
        setDown(false);
        event->accept();
        return;
    }
    m_held = false;
    QAbstractButton::mousePressEvent(event);
    if (self && m_holdTime > 0 && isDown())
        m_hold.start(m_holdTime, this);
}

void DrawnButton::mouseMoveEvent(QMouseEvent* event) {
    // A finger that comes back onto the button would press it anew.
    if (m_held) {
        event->accept();
        return;
    }
    const QPointer<DrawnButton> self(this);
    QAbstractButton::mouseMoveEvent(event);
    if (!self)
        return;
    if (!isDown())
        m_hold.stop();  // it has slipped off
    else if (m_holdTime > 0 && !m_hold.isActive())
        m_hold.start(m_holdTime, this);  // and come back
}

void DrawnButton::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_hold.stop();
    const bool held = m_held;                   // a click may delete the button
    QAbstractButton::mouseReleaseEvent(event);  // one that isn't down any more isn't clicked
    if (held)
        event->accept();
}

void DrawnButton::hideEvent(QHideEvent* event) {
    m_hold.stop();
    setDown(false);
    QAbstractButton::hideEvent(event);
}

void DrawnButton::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_hold.timerId()) {
        QAbstractButton::timerEvent(event);
        return;
    }
    m_hold.stop();
    m_held = true;
    setDown(false);
    Q_EMIT mousedown(Qt::RightButton);
}

std::pair<QColor, QColor> DrawnButton::faceColors(bool pressed) const {
    return pressed ? std::pair{m_backcolorpushed1, m_backcolorpushed2}
                   : std::pair{m_backcolor1, m_backcolor2};
}

QColor DrawnButton::ink() const {
    return m_forecolor;
}

QColor DrawnButton::rim(const QColor& top, const QColor& bottom) const {
    return borderFor(top, bottom);
}

double DrawnButton::cornerRadius() const {
    return std::min(designRadius * designScale(*this), std::min(width(), height()) / 3.0);
}

void DrawnButton::setLargestCaption(int pixels) {
    if (m_largestCaption == pixels)
        return;
    m_largestCaption = pixels;
    update();
}

int DrawnButton::captionSize() {
    arrange();
    return m_arrangement->caption.pixelSize();
}

int DrawnButton::fittingCaptionSize() {
    const QScopedValueRollback unlimited(m_largestCaption, 0);
    return captionSize();
}

void equalizeCaptions(std::span<DrawnButton* const> row) {
    int smallest = std::numeric_limits<int>::max();
    for (DrawnButton* button : row)
        smallest = std::min(smallest, button->fittingCaptionSize());
    for (DrawnButton* button : row)
        button->setLargestCaption(smallest);
}

void DrawnButton::fitCaption(const QRectF& box, int wanted) {
    m_arrangement->caption.fit(m_caption, font(), wanted, box, m_captionAlignment, m_captionLines,
                               m_captionIsName ? FittedText::smallestLegible : smallestCommand);
}

void DrawnButton::arrange() {
    const double scale = designScale(*this);
    const double ratio = devicePixelRatioF();
    Arrangement::Key key(size(), font(), m_fontsize, m_largestCaption, m_caption, m_keyHint,
                         m_captionAlignment, m_captionLines, icon().cacheKey(), iconSize(), scale, ratio);
    if (m_arrangement->key == key)
        return;
    m_arrangement->key = std::move(key);

    Arrangement& parts = *m_arrangement;
    const int unlimited = m_fontsize > 0 ? std::max(1, m_fontsize * logicalDpiY() / 72)
                                         : FittedText::pixelSizeOf(font(), logicalDpiY());
    const int wanted = m_largestCaption > 0 ? std::min(unlimited, m_largestCaption) : unlimited;
    const double paddingX = std::min(8 * scale, width() / 8.0);
    const double paddingY = std::min(5 * scale, height() / 10.0);
    QRectF box =
        QRectF(rect()).adjusted(paddingX, paddingY, -paddingX, -paddingY).marginsRemoved(captionMargins());

    parts.icon = {};
    parts.iconPixmap = {};
    if (!icon().isNull() && box.width() >= 1 && box.height() >= 1) {
        const bool alone = m_caption.trimmed().isEmpty();
        const QSizeF given = QSizeF(iconSize()) * scale;
        const bool low = m_iconPlace == IconPlace::above;
        const double textRoom = (low ? 1.3 : 2.2) * std::min(wanted, 40);
        const bool above =
            !alone && m_iconPlace != IconPlace::beside && (low || box.height() >= given.height() + textRoom);
        QSizeF room = box.size();
        if (above)
            room.setHeight(room.height() - textRoom);
        else if (!alone)
            room.setWidth(room.width() * 0.45);
        const QSizeF allowed = given.scaled(given.boundedTo(room), Qt::KeepAspectRatio);
        if (parts.sharedOf != icon().cacheKey()) {
            parts.sharedOf = icon().cacheKey();
            parts.shared = sharedIcon(icon());
        }
        parts.iconPixmap = parts.shared.pixmap(allowed.toSize(), ratio);
        const QSizeF real = parts.iconPixmap.deviceIndependentSize();
        parts.icon = QRectF(QPointF(0, 0), real);
        if (alone) {
            parts.icon.moveCenter(box.center());
        } else if (above) {
            // Icon and caption together stand in the middle of the face.
            QFont letters = font();
            letters.setPixelSize(wanted);
            const bool breaks = m_caption.trimmed().contains(u' ') &&
                                QFontMetricsF(letters).horizontalAdvance(m_caption.trimmed()) > box.width();
            const int lines = breaks ? 2 : 1;
            const double textHeight =
                std::min(box.height() - real.height(), low ? 1.5 * wanted : lineShare * wanted * lines);
            const double top = box.top() + std::max(0.0, (box.height() - real.height() - textHeight) / 2);
            parts.icon.moveTopLeft(QPointF(box.center().x() - real.width() / 2, top));
            box.setTop(parts.icon.bottom());
            box.setBottom(std::min(box.bottom(), box.top() + textHeight));
        } else {
            parts.icon.moveTopLeft(QPointF(box.left(), box.center().y() - real.height() / 2));
            box.setLeft(parts.icon.right() + paddingX);
        }
    }

    fitCaption(box, wanted);
    if (parts.caption.pixelSize() < std::min(wanted, FittedText::smallestLegible)) {
        // The margins make way first.
        box.adjust(-paddingX / 2, 0, paddingX / 2, paddingY * 3 / 4);
        fitCaption(box, wanted);
    }
    parts.pill = {};
    if (m_keyHint.isEmpty()) {
        const bool beside = !parts.icon.isNull() && box.left() > parts.icon.right();
        if (beside && !m_iconAtEdge && m_captionAlignment.testFlag(Qt::AlignHCenter)) {
            // The two of them together stand in the middle of the face.
            const double wide = parts.icon.width() + paddingX + parts.caption.bounds().width();
            parts.icon.moveLeft((width() - wide) / 2);
            box.translate(parts.icon.right() + paddingX - parts.caption.bounds().left(), 0);
            fitCaption(box, wanted);
        }
        return;
    }
    const int smallestHint = static_cast<int>(FittedText::smallestLegible * std::max(1.0, scale));
    const int hintSize =
        std::clamp(wanted * 6 / 10, smallestHint, std::max(smallestHint, static_cast<int>(16 * scale)));
    QFont hintFont = font();
    hintFont.setPixelSize(std::max(1, hintSize));
    const QFontMetricsF metrics(hintFont);
    const double pillHeight = metrics.height() + 1;
    const double pillWidth = std::max(pillHeight, metrics.horizontalAdvance(m_keyHint) + 0.7 * hintSize);
    const double inset = 5 * scale;
    const bool iconAtLeft = !parts.icon.isNull() && parts.icon.left() < inset + pillWidth;
    const bool atRight = iconAtLeft || m_captionAlignment.testFlag(Qt::AlignLeft);
    parts.pill = QRectF(atRight ? width() - inset - pillWidth : inset, inset, pillWidth, pillHeight);
    parts.hint.fit(m_keyHint, hintFont, hintSize, parts.pill, Qt::AlignCenter, 1);
    if (!parts.caption.bounds().intersects(parts.pill))
        return;

    // The caption makes way: below the pill or beside it, where its glyphs stay larger.
    QRectF below = box;
    below.setTop(std::max(box.top(), parts.pill.bottom()));
    QRectF beside = box;
    const bool centred = m_captionAlignment.testFlag(Qt::AlignHCenter);
    if (!atRight || centred)
        beside.setLeft(std::max(box.left(), parts.pill.right() + 2));
    if (atRight || centred)
        beside.setRight(std::min(box.right(), width() - inset - pillWidth - 2));
    fitCaption(beside, wanted);
    const int besideSize = parts.caption.pixelSize();
    fitCaption(below, wanted);
    if (besideSize > parts.caption.pixelSize())
        fitCaption(beside, wanted);
}

DrawnButton::State DrawnButton::state() const {
    const bool pressed = isDown() || isChecked();
    const auto [top, bottom] = faceColors(pressed);
    const bool onDark = standsOnDark(*this);
    const Tone tone = onDark ? Tone::dark : Tone::light;
    if (isEnabled()) {
        const QColor border =
            m_look == FaceRole::none ? rim(top, bottom) : kovanix::faceColors(m_look, tone).rim;
        return {top, bottom, border, ink(), true, pressed};
    }
    if (m_look != FaceRole::none) {
        const QColor offTop = roleColor(ColorRole::disabledTop, tone);
        const QColor offBottom = roleColor(ColorRole::disabledBottom, tone);
        return {offTop,
                offBottom,
                mixed(borderFor(offTop, offBottom), offBottom, 0.55),
                roleColor(ColorRole::disabledInk, tone),
                false,
                pressed};
    }
    const QColor paleTop = mutedFace(top, onDark);
    const QColor paleBottom = mutedFace(bottom, onDark);
    return {paleTop,
            paleBottom,
            mixed(borderFor(paleTop, paleBottom), paleBottom, 0.55),
            mutedText(m_forecolor, mixed(paleTop, paleBottom, 0.5)),
            false,
            pressed};
}

// What has to be painted around a shape in this part of the face; nothing where it stands out by itself.
QColor DrawnButton::outlineAt(const State& state, const QRectF& part, double wanted) const {
    if (!state.enabled)
        return {};
    const auto at = [&](double y) { return mixed(state.top, state.bottom, y / height()); };
    return outlineFor(state.ink, at(part.top()), at(part.bottom()), wanted);
}

void DrawnButton::paintIcon(QPainter& painter, const State& state) {
    Arrangement& parts = *m_arrangement;
    if (parts.iconPixmap.isNull())
        return;
    painter.drawPixmap(parts.icon.topLeft(), inColor(parts.iconPixmap, state.ink));
}

void DrawnButton::paintKeyHint(QPainter& painter, const State& state) {
    if (m_keyHint.isEmpty())
        return;
    const QRectF& pill = m_arrangement->pill;
    // A pill is a face of its own: where the ink doesn't stand out, its ground does what an outline does for
    // a caption.
    QColor ground = outlineAt(state, pill, legible);
    QColor ink = state.ink;
    if (!ground.isValid()) {
        ground = state.ink;
        ground.setAlpha(30);
        ink.setAlpha(state.enabled ? 215 : 150);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
    m_arrangement->hint.paint(painter, ink);
}

void DrawnButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    arrange();

    const State now = state();
    const double radius = cornerRadius();
    paintFace(painter, QRectF(rect()), radius, now.top, now.bottom, now.border,
              isLit() && now.enabled && !now.pressed);
    // Some themes give both states the same colours: the shade shows the press all the same.
    if (now.pressed && now.enabled)
        paintPressedShade(painter, QRectF(rect()), radius);
    paintIcon(painter, now);
    const FittedText& text = m_arrangement->caption;
    text.paint(painter, now.ink, outlineAt(now, text.bounds(), text.wantedContrast()));
    paintKeyHint(painter, now);
    if (hasFocus())
        paintFocusRing(painter, QRectF(rect()), radius);
}

std::pair<QColor, QColor> CommandButton::faceColors(bool pressed) const {
    if (look() != FaceRole::none)
        return DrawnButton::faceColors(pressed);
    const QColor face = backcolor1();
    return pressed ? std::pair{mixed(face, Qt::black, 0.16), mixed(face, Qt::black, 0.1)}
                   : std::pair{face, mixed(face, Qt::black, 0.06)};
}

QColor CommandButton::ink() const {
    // By the face at rest: a caption that turned from black to white under the finger would seem another one.
    const auto [top, bottom] = faceColors(false);
    return inkOn(forecolor(), top, bottom);
}

void CommandButton::paintEvent(QPaintEvent* event) {
    if (!caption().isEmpty() || !icon().isNull()) {
        DrawnButton::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = cornerRadius();
    // Greys between the tones, so that it stays quiet on light and dark grounds alike.
    const auto tint = [](float opacity) {
        QColor grey = slotGrey;
        grey.setAlphaF(opacity);
        return grey;
    };
    QColor rim = slotRim;
    if (!isEnabled())
        rim.setAlphaF(0.4F);
    QPen dashes(rim, 1.2);
    dashes.setDashPattern({5.0, 4.0});
    dashes.setCapStyle(Qt::FlatCap);
    painter.setPen(dashes);
    painter.setBrush(tint(isDown() ? 0.24F : 0.1F));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    if (isEnabled())
        paintPlus(painter);
    if (hasFocus())
        paintFocusRing(painter, QRectF(rect()), radius);
}

/// The sign that something can be put here.
void CommandButton::paintPlus(QPainter& painter) const {
    const double scale = designScale(*this);
    const double arm = plusArm * scale;
    const QPointF middle = QRectF(rect()).center();
    painter.setPen(QPen(roleColor(ColorRole::mutedInk, standsOnDark(*this) ? Tone::dark : Tone::light),
                        2.4 * scale, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle - QPointF(arm, 0), middle + QPointF(arm, 0));
    painter.drawLine(middle - QPointF(0, arm), middle + QPointF(0, arm));
}

}  // namespace kovanix
