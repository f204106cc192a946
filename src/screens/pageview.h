#pragma once

#include <QPixmap>
#include <QPointF>
#include <QWidget>

#include "printing/gridpages.h"
#include "widgets/pressable.h"

namespace kovanix {

class DrawnButton;

/// Shows one printed page at a time on a dark ground, whole and between two arrows; or as wide as the view,
/// where it can be dragged up and down. A touch on the page, Enter and Space go from the one to the other.
class PageView : public Pressable<QWidget> {
    Q_OBJECT

public:
    explicit PageView(QWidget* parent = nullptr);
    ~PageView() override;

    /// Shows the first of these pages, whole.
    void setPages(GridPages pages);
    const GridPages& pages() const { return m_pages; }

    /// The page shown, counted from 0. Turning stays within the pages.
    int page() const { return m_page; }
    void turnTo(int page);

    bool isWide() const { return m_wide; }
    /// Shows the page from its upper edge where it gets wide.
    void setWide(bool wide);
    /// Where the page stands in the view; a wide one reaches beyond it.
    QRect pageRect() const;
    /// Moves a wide page up by so many pixels, as far as it goes.
    void scroll(int pixels);

Q_SIGNALS:
    /// Another page is shown, or other pages.
    void turned();

protected:
    void pressedByKey() override { setWide(!m_wide); }
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    DrawnButton* addArrow(const QString& name, const QString& icon, const QString& tip, int step);
    void setUsable(DrawnButton& arrow, bool usable);
    void arrange();
    const QPixmap& image();

    GridPages m_pages;
    int m_page = 0;
    bool m_wide = false;
    int m_top = 0;  ///< of a wide page, above the view
    DrawnButton* m_previous;
    DrawnButton* m_next;
    QPixmap m_image;  ///< of the page shown, in the size shown; none before it is painted

    // A press that is down: where, and whether it has become a drag.
    QPoint m_pressed;
    bool m_isDown = false;
    bool m_dragged = false;
};

}  // namespace kovanix
