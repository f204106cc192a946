#pragma once

#include <QProxyStyle>

namespace kovanix {

/// The style of the till's entry fields and of the lists that are chosen from, on top of the toolkit's own: a
/// rim of one pixel, two in the colour of the focus while the field has it, and a ground that shows whether
/// it can be used.
class FieldStyle : public QProxyStyle {
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

}  // namespace kovanix
