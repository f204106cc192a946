#include "widgets/activeresize.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QFont>
#include <QFormLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <algorithm>
#include <cmath>

#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/dtpicker.h"
#include "widgets/fittedtext.h"
#include "widgets/tdbgrid.h"
#include "widgets/vsflexgrid.h"

namespace kovanix {
namespace {

constexpr double smallestScale = 0.6;
constexpr double largestScale = 3.0;
constexpr const char* exemptProperty = "noscale";

int scaledLength(int length, double scale) {
    return static_cast<int>(std::lround(length * scale));
}

/// What a thumb needs stays large enough for one on a small display.
int scaledTarget(int length, double scale) {
    constexpr int target = 44;
    constexpr int smallestTarget = 40;
    const int scaled = scaledLength(length, scale);
    return length >= target ? std::max(scaled, smallestTarget) : scaled;
}

/// A row of the ticket is pressed, too, but shows little where it gets as high as a button.
int scaledRow(int height, double scale) {
    constexpr int smallestRow = 32;
    return std::max(scaledLength(height, scale), std::min(height, smallestRow));
}

bool isTarget(const QWidget& control) {
    return qobject_cast<const QAbstractButton*>(&control) || qobject_cast<const QLineEdit*>(&control) ||
           qobject_cast<const DTPicker*>(&control);
}

// A length that no one set (0 or unlimited) stays so.
QSize scaledMinimum(QSize size, double scale) {
    return {scaledLength(size.width(), scale), scaledLength(size.height(), scale)};
}

QSize scaledMaximum(QSize size, double scale) {
    const auto one = [scale](int length) {
        return length >= QWIDGETSIZE_MAX ? QWIDGETSIZE_MAX : scaledLength(length, scale);
    };
    return {one(size.width()), one(size.height())};
}

}  // namespace

ActiveResize::FontSize ActiveResize::FontSize::scaled(double scale) const {
    if (pixels <= 0)
        return FontSize{points * scale, -1};
    return FontSize{-1, std::max(scaledLength(pixels, scale), std::min(pixels, FittedText::smallestLegible))};
}

void ActiveResize::FontSize::applyTo(QFont& font) const {
    if (pixels > 0)
        font.setPixelSize(pixels);
    else
        font.setPointSizeF(points);
}

bool ActiveResize::FontSize::operator==(const FontSize& other) const {
    return pixels == other.pixels && std::abs(points - other.points) < 0.001;
}

ActiveResize::ActiveResize(QWidget* parent) : QWidget(parent) {}

void ActiveResize::setDesignSize(QSize size) {
    if (size == m_designSize || size.isEmpty())
        return;
    m_designSize = size;
    updateGeometry();
    applyScale();
}

void ActiveResize::setResizing(bool resizing) {
    if (resizing == m_resizing)
        return;
    m_resizing = resizing;
    updateGeometry();
    applyScale();
}

QSize ActiveResize::sizeHint() const {
    return m_designSize;
}

QSize ActiveResize::minimumSizeHint() const {
    return m_resizing ? m_designSize * smallestScale : QWidget::minimumSizeHint();
}

void ActiveResize::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    applyScale();
    reportSize();
}

void ActiveResize::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Controls that came since the last scaling.
    m_scaledOnce = false;
    applyScale();
    reportSize();
}

void ActiveResize::reportSize() {
    if (!isVisible() || size() == m_reportedSize)
        return;
    m_reportedSize = size();
    if (layout())
        layout()->activate();
    Q_EMIT resized(m_reportedSize);
}

void ActiveResize::applyScale() {
    const double wanted = std::min(static_cast<double>(width()) / m_designSize.width(),
                                   static_cast<double>(height()) / m_designSize.height());
    const double scale = m_resizing ? std::clamp(wanted, smallestScale, largestScale) : 1.0;
    const bool changed = scale != m_scale;
    if (m_applying || (!changed && m_scaledOnce))
        return;
    m_applying = true;
    m_scaledOnce = true;
    // Design values are read before anything is scaled: a font set on a parent reaches its children.
    std::vector<QWidget*> controls;
    std::vector<QLayout*> layouts;
    record(*this, controls, layouts);
    m_scale = scale;
    for (QWidget* control : controls)
        scaleControl(*control, m_controls[control]);
    for (QLayout* layout : layouts)
        scaleLayout(*layout, m_layouts[layout]);
    m_applying = false;
    // Now, not at the next turn of the event loop: a window that has just been given its size would be
    // painted once with the old places and then again.
    if (isVisible()) {
        for (QWidget* control : controls) {
            if (control->layout())
                control->layout()->activate();
        }
    }
    if (changed)
        Q_EMIT scaled(m_scale);
}

void ActiveResize::record(QWidget& parent, std::vector<QWidget*>& controls, std::vector<QLayout*>& layouts) {
    if (parent.property(exemptProperty).toBool()) {
        pinFont(parent);
        return;
    }
    recordControl(parent);
    controls.push_back(&parent);
    if (QLayout* layout = parent.layout())
        recordLayout(*layout, layouts);
    // A list grid's parts take their sizes from the scale that it is given.
    if (qobject_cast<TDBGrid*>(&parent))
        return;
    const QObjectList children = parent.children();
    for (QObject* child : children) {
        auto* control = qobject_cast<QWidget*>(child);
        if (control && !control->isWindow() && !qobject_cast<ActiveResize*>(control))
            record(*control, controls, layouts);
    }
}

ActiveResize::FontSize ActiveResize::designFontSize(const QWidget& control) const {
    const FontSize own{control.font().pointSizeF(), control.font().pixelSize()};
    // A font that was set only in part (bold, say) has its size from above, and there it may be scaled
    // already.
    for (const QWidget* above = &control; above != this;) {
        above = above->parentWidget();
        const auto found = m_controls.constFind(above);
        if (found == m_controls.cend() || !found->control || !found->font.isSet())
            continue;
        return found->font.scaled(m_scale) == own ? found->font : own;
    }
    return own;
}

void ActiveResize::pinFont(QWidget& control) {
    ControlDesign& design = m_controls[&control];
    if (design.control)
        return;
    design = {};
    design.control = &control;
    QFont font = control.font();
    designFontSize(control).applyTo(font);
    // Its text would otherwise follow the container's font. Setting the size makes it the control's own.
    control.setFont(font);
}

void ActiveResize::recordControl(QWidget& control) {
    ControlDesign& design = m_controls[&control];
    // A null pointer is a new entry, or one of a control that is gone and whose address came round again.
    if (design.control)
        return;
    design = {};
    design.control = &control;
    const bool container = &control == this;
    // A font that was never set follows its parent's by itself.
    if (container || control.testAttribute(Qt::WA_SetFont))
        design.font = designFontSize(control);
    if (container)
        return;
    design.minimum = control.minimumSize();
    design.maximum = control.maximumSize();
    if (const auto* grid = qobject_cast<const VSFlexGrid*>(&control))
        design.rowHeight = grid->rowHeight();
}

void ActiveResize::recordLayout(QLayout& layout, std::vector<QLayout*>& layouts) {
    layouts.push_back(&layout);
    LayoutDesign& design = m_layouts[&layout];
    if (!design.layout) {
        design = {};
        design.layout = &layout;
        design.margins = layout.contentsMargins();
        if (const auto* grid = qobject_cast<const QGridLayout*>(&layout)) {
            design.horizontal = grid->horizontalSpacing();
            design.vertical = grid->verticalSpacing();
        } else if (const auto* form = qobject_cast<const QFormLayout*>(&layout)) {
            design.horizontal = form->horizontalSpacing();
            design.vertical = form->verticalSpacing();
        } else {
            design.horizontal = design.vertical = layout.spacing();
        }
    }
    for (int i = 0; i < layout.count(); ++i) {
        if (QLayout* inner = layout.itemAt(i)->layout())
            recordLayout(*inner, layouts);
    }
}

void ActiveResize::scaleControl(QWidget& control, const ControlDesign& design) {
    const auto* button = qobject_cast<const DrawnButton*>(&control);
    const bool fixedFont = button && button->fontsize() > 0;
    if (!fixedFont && design.font.isSet()) {
        QFont font = control.font();
        design.font.scaled(m_scale).applyTo(font);
        if (font != control.font())
            control.setFont(font);
    }
    if (&control == this)
        return;
    QSize minimum = scaledMinimum(design.minimum, m_scale);
    if (isTarget(control))
        minimum = {scaledTarget(design.minimum.width(), m_scale),
                   scaledTarget(design.minimum.height(), m_scale)};
    const QSize maximum = scaledMaximum(design.maximum, m_scale).expandedTo(minimum);
    if (control.minimumSize() != minimum)
        control.setMinimumSize(minimum);
    if (control.maximumSize() != maximum)
        control.setMaximumSize(maximum);
    if (auto* list = qobject_cast<TDBGrid*>(&control))
        list->setScale(m_scale);
    else if (auto* grid = qobject_cast<VSFlexGrid*>(&control))
        grid->setRowHeight(scaledRow(design.rowHeight, m_scale));
    else if (auto* frame = qobject_cast<vkFrame*>(&control))
        frame->layOutTitle();
}

void ActiveResize::scaleLayout(QLayout& layout, const LayoutDesign& design) {
    const QMargins margins(
        scaledLength(design.margins.left(), m_scale), scaledLength(design.margins.top(), m_scale),
        scaledLength(design.margins.right(), m_scale), scaledLength(design.margins.bottom(), m_scale));
    if (layout.contentsMargins() != margins)
        layout.setContentsMargins(margins);
    const int horizontal = scaledLength(design.horizontal, m_scale);
    const int vertical = scaledLength(design.vertical, m_scale);
    if (auto* grid = qobject_cast<QGridLayout*>(&layout)) {
        if (design.horizontal >= 0 && grid->horizontalSpacing() != horizontal)
            grid->setHorizontalSpacing(horizontal);
        if (design.vertical >= 0 && grid->verticalSpacing() != vertical)
            grid->setVerticalSpacing(vertical);
    } else if (auto* form = qobject_cast<QFormLayout*>(&layout)) {
        if (design.horizontal >= 0 && form->horizontalSpacing() != horizontal)
            form->setHorizontalSpacing(horizontal);
        if (design.vertical >= 0 && form->verticalSpacing() != vertical)
            form->setVerticalSpacing(vertical);
    } else if (design.horizontal >= 0 && layout.spacing() != horizontal) {
        layout.setSpacing(horizontal);
    }
}

}  // namespace kovanix
