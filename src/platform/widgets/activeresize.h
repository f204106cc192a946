#pragma once

#include <QHash>
#include <QMargins>
#include <QPointer>
#include <QSize>
#include <QWidget>
#include <vector>

class QLayout;

namespace kovanix {

/// The resizing container of a screen: layouts place the controls that it holds, and it scales their fonts,
/// their fixed sizes, and the spacings and margins of their layouts with the window, against the size that
/// the screen was designed at. What can't be read or touched any more gets no smaller: letters of 11 pixels,
/// buttons and fields of 40, rows of the ticket of 32.
///
/// Design values are read once, when a control is first met, and everything is worked out from them: a
/// control that comes later is met at the next scaling or showing. Left as they are: the font of a drawn
/// button with a fontsize, and a control with a true dynamic property "noscale" together with all that it
/// holds.
class ActiveResize : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QSize designSize READ designSize WRITE setDesignSize)
    Q_PROPERTY(bool resizing READ isResizing WRITE setResizing)

public:
    explicit ActiveResize(QWidget* parent = nullptr);

    QSize designSize() const { return m_designSize; }
    void setDesignSize(QSize size);

    /// Whether it scales at all (it does unless told otherwise). Switched off, everything stands at its
    /// design size, whatever the window's is, and the window can't be made smaller than the contents.
    bool isResizing() const { return m_resizing; }
    void setResizing(bool resizing);

    /// The scale in use: the smaller of width and height against the design size; 1 at design size.
    double scale() const { return m_scale; }

    QSize sizeHint() const override;
    /// Far below the design size, so that the window can be made smaller and the contents then follow.
    QSize minimumSizeHint() const override;
    /// Its hint is the design size as it stands, whatever a label that breaks its lines would make of the
    /// height.
    bool hasHeightForWidth() const override { return false; }

Q_SIGNALS:
    void scaled(double scale);
    /// It has a size that it had not when this was last emitted, the same scale or not; the controls stand
    /// where they belong at that size. Nothing is emitted while it isn't shown: the first showing tells its
    /// size.
    void resized(QSize size);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    // In points or in pixels, whichever way a font states it; the other one is -1.
    struct FontSize {
        double points = -1;
        int pixels = -1;

        bool isSet() const { return points > 0 || pixels > 0; }
        FontSize scaled(double scale) const;
        void applyTo(QFont& font) const;
        bool operator==(const FontSize& other) const;
    };
    struct ControlDesign {
        QPointer<QWidget> control;
        FontSize font;
        QSize minimum;
        QSize maximum;
        int rowHeight = 0;
    };
    struct LayoutDesign {
        QPointer<QLayout> layout;
        QMargins margins;
        int horizontal = -1;
        int vertical = -1;
    };

    void applyScale();
    void reportSize();
    void record(QWidget& parent, std::vector<QWidget*>& controls, std::vector<QLayout*>& layouts);
    void recordControl(QWidget& control);
    FontSize designFontSize(const QWidget& control) const;
    void pinFont(QWidget& control);
    void recordLayout(QLayout& layout, std::vector<QLayout*>& layouts);
    void scaleControl(QWidget& control, const ControlDesign& design);
    void scaleLayout(QLayout& layout, const LayoutDesign& design);

    QSize m_designSize{1024, 768};
    QSize m_reportedSize;
    double m_scale = 1.0;
    bool m_resizing = true;
    bool m_scaledOnce = false;
    bool m_applying = false;
    QHash<const QWidget*, ControlDesign> m_controls;
    QHash<QLayout*, LayoutDesign> m_layouts;
};

}  // namespace kovanix
