#include "widgets/image.h"

#include <QEvent>
#include <QImageReader>
#include <QMouseEvent>
#include <QPainter>
#include <QSvgRenderer>

#include "widgets/face.h"
#include "widgets/pictures.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr QSize emptySize(48, 48);
constexpr double designRadius = 8.0;
constexpr double pictureOnFace = 0.6;  // of the face's sides

bool isVector(const QString& path) {
    return path.endsWith(u".svg"_s, Qt::CaseInsensitive) || path.endsWith(u".svgz"_s, Qt::CaseInsensitive);
}

}  // namespace

Image::Image(QWidget* parent) : Pressable(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

Image::~Image() = default;

QSvgRenderer& Image::drawing() const {
    if (!m_drawing)
        m_drawing = sharedDrawing(m_source);
    return *m_drawing;
}

// The picture as large as it goes into that many device pixels, in proportion.
QPixmap Image::rendered(QSize room) const {
    if (isVector(m_source)) {
        if (!drawing().isValid())
            return {};
        const QSize target = drawing().defaultSize().scaled(room, Qt::KeepAspectRatio);
        if (target.isEmpty())
            return {};
        QPixmap pixmap(target);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        drawing().render(&painter, QRectF(QPointF(0, 0), QSizeF(target)));
        return pixmap;
    }
    QImageReader reader(m_source);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return {};
    return QPixmap::fromImage(image.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void Image::setSource(const QString& path) {
    if (m_source == path)
        return;
    m_source = path;
    m_drawing.reset();
    m_rendered = {};
    m_failed = false;
    updateGeometry();
    update();
}

void Image::setLook(FaceRole role) {
    if (m_look == role)
        return;
    m_look = role;
    m_rendered = {};
    update();
}

QSize Image::sizeHint() const {
    QSize natural;
    if (isVector(m_source))
        natural = drawing().defaultSize();
    else if (!m_source.isEmpty())
        natural = QImageReader(m_source).size();
    if (natural.isEmpty())
        natural = emptySize;
    return (QSizeF(natural) * designScale(*this)).toSize();
}

bool Image::event(QEvent* event) {
    if (event->type() == QEvent::ToolTipChange &&
        (accessibleName().isEmpty() || accessibleName() == m_givenName)) {
        m_givenName = toolTip();
        setAccessibleName(m_givenName);
    }
    return Pressable::event(event);
}

void Image::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double radius = designRadius * designScale(*this);
    if (m_look != FaceRole::none) {
        painter.setRenderHint(QPainter::Antialiasing);
        const FaceColors face = faceColors(m_look, standsOnDark(*this) ? Tone::dark : Tone::light);
        paintFace(painter, QRectF(rect()), radius, isDown() ? face.pressedTop : face.top,
                  isDown() ? face.pressedBottom : face.bottom, face.rim, !isDown());
    }
    paintPicture(painter);
    if (!hasFocus())
        return;
    painter.setOpacity(1);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, QRectF(rect()), radius);
}

void Image::paintPicture(QPainter& painter) {
    if (m_source.isEmpty() || m_failed)
        return;
    const double ratio = devicePixelRatioF();
    if (m_rendered.isNull() || m_rendered.devicePixelRatio() != ratio) {
        const double share = m_look == FaceRole::none ? 1 : pictureOnFace;
        m_rendered = rendered((QSizeF(size()) * share * ratio).toSize());
        m_rendered.setDevicePixelRatio(ratio);
        m_failed = m_rendered.isNull();
        if (m_failed)
            return;
    }
    const QSizeF picture = m_rendered.deviceIndependentSize();
    const QPointF corner((width() - picture.width()) / 2, (height() - picture.height()) / 2);
    if (!isEnabled())
        painter.setOpacity(0.35);
    else if (isDown())
        painter.setOpacity(0.62);
    else if (underMouse())
        painter.setOpacity(0.86);
    // What is drawn dark, for the light face, is hardly seen on the dark one.
    const bool onDarkFace = m_look == FaceRole::light && standsOnDark(*this);
    painter.drawPixmap(corner,
                       onDarkFace ? inColor(m_rendered, faceColors(m_look, Tone::dark).ink) : m_rendered);
}

// A press of another button must not reach what lies behind the picture.
void Image::mousePressEvent(QMouseEvent* event) {
    Pressable::mousePressEvent(event);
    event->accept();
}

void Image::resizeEvent(QResizeEvent* event) {
    Pressable::resizeEvent(event);
    m_rendered = {};
    m_failed = false;
}

}  // namespace kovanix
