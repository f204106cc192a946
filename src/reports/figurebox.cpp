#include "reports/figurebox.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyleOptionFrame>

#include "widgets/face.h"
#include "widgets/fittedtext.h"

namespace kovanix {

FigureBox::FigureBox(QWidget* parent) : QLineEdit(parent), m_figure(std::make_unique<FittedText>()) {
    setReadOnly(true);
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, roleColor(ColorRole::quietField));
    setPalette(colors);
    setCursor(Qt::ArrowCursor);
}

FigureBox::~FigureBox() = default;

void FigureBox::setInk(ColorRole role) {
    m_ink = role;
    update();
}

/// The toolkit's own painting would scroll a long figure out of sight.
void FigureBox::paintEvent(QPaintEvent*) {
    constexpr double padding = 13;
    QStyleOptionFrame panel;
    initStyleOption(&panel);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &panel, &painter, this);

    const QString figure = text();
    qsizetype blanks = 0;
    while (blanks < figure.size() && figure[figure.size() - 1 - blanks] == u' ')
        ++blanks;
    const double inset = padding * designScale(*this);
    const double right = inset + QFontMetricsF(font()).horizontalAdvance(figure.last(blanks));
    m_figure->fit(figure, font(), FittedText::pixelSizeOf(font(), logicalDpiY()),
                  QRectF(rect()).adjusted(inset, 2, -right, -2), Qt::AlignRight | Qt::AlignVCenter, 1);
    m_figure->paint(painter, roleColor(m_ink));
}

}  // namespace kovanix
