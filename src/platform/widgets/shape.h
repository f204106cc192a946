#pragma once

#include <QColor>
#include <QWidget>

namespace kovanix {

/// A rounded outline that marks what lies below it; presses go through.
class Shape : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QColor bordercolor READ bordercolor WRITE setBordercolor)

public:
    explicit Shape(QWidget* parent = nullptr);

    QColor bordercolor() const { return m_bordercolor; }
    void setBordercolor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_bordercolor{0xE0, 0xA8, 0x00};
};

}  // namespace kovanix
