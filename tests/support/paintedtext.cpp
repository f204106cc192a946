#include "paintedtext.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "widgets/face.h"

namespace kovanix {

namespace {

struct Letters {
    PaintedText painted;
    QImage after;  // the place with the letters on it
};

/// Paints into a picture, and looks at the ground of every text ahead of painting it.
class LookingEngine : public QPaintEngine {
public:
    explicit LookingEngine(QImage& picture) : QPaintEngine(AllFeatures), m_picture(picture) {}

    bool begin(QPaintDevice* device) override {
        Q_UNUSED(device)
        m_clip.reset();
        return m_painter.begin(&m_picture);
    }
    bool end() override { return m_painter.end(); }
    Type type() const override { return User; }

    void updateState(const QPaintEngineState& now) override {
        m_painter.setPen(now.pen());
        m_painter.setBrush(now.brush());
        m_painter.setBrushOrigin(now.brushOrigin());
        m_painter.setBackground(now.backgroundBrush());
        m_painter.setBackgroundMode(now.backgroundMode());
        m_painter.setFont(now.font());
        m_painter.setOpacity(now.opacity());
        m_painter.setCompositionMode(now.compositionMode());
        m_painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform, false);
        m_painter.setRenderHints(now.renderHints());
        m_transform = now.transform();
        if (now.state() & (DirtyClipRegion | DirtyClipPath))
            clip(now.clipOperation(),
                 now.state() & DirtyClipRegion
                     ? m_transform.map(now.clipRegion())
                     : QRegion(m_transform.map(now.clipPath()).toFillPolygon().toPolygon()));
    }

    void drawPath(const QPainterPath& path) override {
        prepare();
        m_painter.drawPath(path);
    }
    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        prepare();
        if (mode == PolylineMode)
            m_painter.drawPolyline(points, count);
        else
            m_painter.drawPolygon(points, count, mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
    }
    void drawPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source) override {
        prepare();
        m_painter.drawPixmap(target, pixmap, source);
    }
    void drawImage(const QRectF& target, const QImage& image, const QRectF& source,
                   Qt::ImageConversionFlags flags) override {
        prepare();
        m_painter.drawImage(target, image, source, flags);
    }
    void drawTiledPixmap(const QRectF& target, const QPixmap& pixmap, const QPointF& offset) override {
        prepare();
        m_painter.drawTiledPixmap(target, pixmap, offset);
    }
    void drawTextItem(const QPointF& base, const QTextItem& item) override {
        prepare();
        const QRectF bounds = QFontMetricsF(item.font()).tightBoundingRect(item.text()).translated(base);
        const QRect place = m_painter.transform().mapRect(bounds).toAlignedRect() &
                            m_painter.transform().map(m_painter.clipRegion()).boundingRect() &
                            m_picture.rect();
        const QImage ground = m_picture.copy(place);
        m_painter.setFont(item.font());
        m_painter.drawText(base, item.text());
        if (!place.isEmpty() && !item.text().trimmed().isEmpty())
            note(item.text().trimmed(), place, ground);
    }

    QList<Letters> letters;

private:
    void clip(Qt::ClipOperation operation, const QRegion& region) {
        if (operation == Qt::NoClip)
            m_clip.reset();
        else
            m_clip = operation == Qt::IntersectClip && m_clip ? *m_clip & region : region;
    }

    /// A window's parts are clipped by what the toolkit knows of them, which changes without a word.
    void prepare() {
        QRegion visible = systemClip().isEmpty() ? QRegion(m_picture.rect()) : systemClip();
        if (m_clip)
            visible &= *m_clip;
        m_painter.resetTransform();
        m_painter.setClipRegion(visible);
        m_painter.setTransform(m_transform);
    }

    void note(const QString& text, const QRect& place, const QImage& ground) {
        const QColor ink = m_painter.pen().color();
        const double opacity = ink.alphaF() * m_painter.opacity();
        std::vector<double> ratios;
        for (int y = 0; y < ground.height(); ++y) {
            for (int x = 0; x < ground.width(); ++x) {
                const QColor behind = ground.pixelColor(x, y);
                ratios.push_back(contrast(mixed(behind, QColor(ink.rgb()), opacity), behind));
            }
        }
        std::ranges::sort(ratios);
        // Letters that are painted twice, as those with an outline, count as they are painted last.
        letters.removeIf([&](const Letters& before) {
            return before.painted.text == text &&
                   (before.painted.place.center() - place.center()).manhattanLength() <= 4;
        });
        letters.append({{text,
                         {},
                         ink,
                         place,
                         ratios[ratios.size() / 2],
                         ratios[ratios.size() / 20],
                         QFontInfo(m_painter.font()).pixelSize()},
                        m_picture.copy(place)});
    }

    QImage& m_picture;
    QPainter m_painter;
    QTransform m_transform;
    std::optional<QRegion> m_clip;  // of the painter's own, in the picture's pixels
};

class LookingDevice : public QPaintDevice {
public:
    explicit LookingDevice(const QSize& size)
        : m_picture(size, QImage::Format_ARGB32_Premultiplied), engine(m_picture) {
        m_picture.fill(Qt::white);
    }

    QPaintEngine* paintEngine() const override { return &engine; }

    bool isCovered(const Letters& letters) const {
        const QImage now = m_picture.copy(letters.painted.place);
        int changed = 0;
        for (int y = 0; y < now.height(); ++y) {
            for (int x = 0; x < now.width(); ++x)
                changed += now.pixel(x, y) != letters.after.pixel(x, y) ? 1 : 0;
        }
        return changed * 2 > now.width() * now.height();
    }

protected:
    int metric(PaintDeviceMetric metric) const override {
        constexpr int dots = 96;
        constexpr double millimetres = 25.4 / dots;
        switch (metric) {
            case PdmWidth:
                return m_picture.width();
            case PdmHeight:
                return m_picture.height();
            case PdmWidthMM:
                return qRound(m_picture.width() * millimetres);
            case PdmHeightMM:
                return qRound(m_picture.height() * millimetres);
            case PdmNumColors:
                return std::numeric_limits<int>::max();
            case PdmDepth:
                return m_picture.depth();
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return dots;
            case PdmDevicePixelRatio:
                return 1;
            case PdmDevicePixelRatioScaled:
                return static_cast<int>(devicePixelRatioFScale());
        }
        return 0;
    }

private:
    QImage m_picture;

public:
    mutable LookingEngine engine;
};

/// The control that a place of a window belongs to: one with a name, or the named one around it.
const QWidget* controlAt(const QWidget& window, const QPoint& place) {
    const QWidget* found = window.childAt(place);
    while (found && found != &window &&
           (found->objectName().isEmpty() || found->objectName().startsWith("qt_")))
        found = found->parentWidget();
    return found ? found : &window;
}

}  // namespace

QList<PaintedText> paintedTexts(QWidget& window) {
    LookingDevice device(window.size());
    window.render(&device);
    QList<PaintedText> texts;
    for (Letters& letters : device.engine.letters) {
        const QWidget* const control = controlAt(window, letters.painted.place.center());
        if (!control->isEnabled() || device.isCovered(letters))
            continue;
        letters.painted.control = control->objectName();
        texts.append(letters.painted);
    }
    return texts;
}

}  // namespace kovanix
