#include "screens/pageview.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "widgets/drawnbutton.h"
#include "widgets/face.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int abovePage = 6;
constexpr int besidePage = 16;
constexpr QSize arrowSize(72, 160);
constexpr QSize arrowIcon(40, 40);

constexpr double pointsPerInch = 72;

}  // namespace

PageView::PageView(QWidget* parent)
    : Pressable(parent),
      m_previous(addArrow(u"onceki"_s, u":/icons/previous.svg"_s, u"&nceki sayfa"_s, -1)),
      m_next(addArrow(u"sonraki"_s, u":/icons/next.svg"_s, u"sonraki sayfa"_s, 1)) {
    setFocusPolicy(Qt::TabFocus);
    tellAsButton(*this);
    setAccessibleName(u"Sayfa"_s);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    // The arrows' faces are those of a dark page.
    QPalette colors = palette();
    colors.setColor(QPalette::Window, roleColor(ColorRole::previewGround));
    colors.setColor(QPalette::WindowText, Qt::white);
    setPalette(colors);
}

PageView::~PageView() = default;

DrawnButton* PageView::addArrow(const QString& name, const QString& icon, const QString& tip, int step) {
    auto* arrow = new vkCommand(this);
    arrow->setObjectName(name);
    arrow->setToolTip(tip);
    arrow->setLook(FaceRole::navy);
    arrow->setIconFile(icon);
    arrow->setIconSize(arrowIcon);
    connect(arrow, &QAbstractButton::clicked, this, [this, step] { turnTo(m_page + step); });
    return arrow;
}

void PageView::setPages(GridPages pages) {
    m_pages = std::move(pages);
    m_page = 0;
    m_wide = false;
    arrange();
    Q_EMIT turned();
}

void PageView::turnTo(int page) {
    const int within = std::clamp(page, 0, m_pages.pageCount() - 1);
    if (within == m_page)
        return;
    m_page = within;
    arrange();
    Q_EMIT turned();
}

void PageView::setWide(bool wide) {
    m_wide = wide;
    arrange();
}

QRect PageView::pageRect() const {
    const QSizeF paper = m_pages.paper();
    if (paper.isEmpty())
        return {};
    if (m_wide) {
        const int height = static_cast<int>(std::lround(width() * paper.height() / paper.width()));
        return {0, height <= this->height() ? (this->height() - height) / 2 : -m_top, width(), height};
    }
    const double scale = designScale(*this);
    const QSizeF room(width() - 2 * scale * (arrowSize.width() + 2 * besidePage),
                      height() - 2 * scale * abovePage);
    QRect page(QPoint(), paper.scaled(room, Qt::KeepAspectRatio).toSize());
    page.moveCenter(rect().center());
    return page;
}

void PageView::scroll(int pixels) {
    const int most = std::max(0, pageRect().height() - height());
    const int top = std::clamp(m_top + pixels, 0, most);
    if (!m_wide || top == m_top)
        return;
    m_top = top;
    update();
}

void PageView::setUsable(DrawnButton& arrow, bool usable) {
    // The toolkit would give the focus to the next control, which prints.
    if (arrow.hasFocus() && (!usable || m_wide))
        setFocus();
    arrow.setEnabled(usable);
    arrow.setVisible(!m_wide);
}

/// After any change of the page or of its size.
void PageView::arrange() {
    m_image = {};
    m_top = 0;
    setUsable(*m_previous, m_page > 0);
    setUsable(*m_next, m_page < m_pages.pageCount() - 1);

    const QRect page = pageRect();
    const double scale = designScale(*this);
    QRect arrow(QPoint(), (QSizeF(arrowSize) * scale).toSize());
    const int gap = static_cast<int>(std::lround(besidePage * scale));
    arrow.moveCenter(page.center());
    arrow.moveRight(page.left() - 1 - gap);
    m_previous->setGeometry(arrow);
    arrow.moveLeft(page.right() + 1 + gap);
    m_next->setGeometry(arrow);
    update();
}

void PageView::resizeEvent(QResizeEvent*) {
    arrange();
}

const QPixmap& PageView::image() {
    const QSize size = pageRect().size() * devicePixelRatioF();
    if (m_image.size() != size) {
        m_image = QPixmap(size);
        m_image.fill(Qt::white);
        QPainter painter(&m_image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        m_pages.paint(painter, m_page, size.width() * pointsPerInch / m_pages.paper().width());
        painter.end();
        m_image.setDevicePixelRatio(devicePixelRatioF());
    }
    return m_image;
}

void PageView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    const QRect page = pageRect();
    if (page.isEmpty())
        return;
    painter.drawPixmap(page.topLeft(), image());
    painter.setPen(roleColor(ColorRole::windowRim));
    painter.drawRect(page.adjusted(-1, -1, 0, 0));
    if (hasFocus()) {
        constexpr int ring = 4;
        paintFocusRing(painter, QRectF(page.adjusted(-ring, -ring, ring, ring).intersected(rect())), 0);
    }
}

void PageView::focusInEvent(QFocusEvent*) {
    update();
}

void PageView::focusOutEvent(QFocusEvent*) {
    update();
}

void PageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = event->pos();
    m_isDown = pageRect().contains(m_pressed);
    m_dragged = false;
}

void PageView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_isDown)
        return;
    const int distance = m_pressed.y() - event->pos().y();
    if (!m_dragged && (event->pos() - m_pressed).manhattanLength() < QApplication::startDragDistance())
        return;
    m_dragged = true;
    m_pressed = event->pos();
    scroll(distance);
}

void PageView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(m_isDown, false) || m_dragged)
        return;
    if (m_wide) {
        setWide(false);
        return;
    }
    // What was touched stays below the finger, as far as the page goes, and where nothing is printed the last
    // rows come into sight.
    const QRect before = pageRect();
    const double share = static_cast<double>(event->pos().y() - before.top()) / before.height();
    setWide(true);
    const double height = pageRect().height();
    const double lowest = m_pages.rowsEnd(m_page) * height - this->height() / 2.0;
    scroll(static_cast<int>(std::min(share * height - event->pos().y(), lowest)));
}

void PageView::wheelEvent(QWheelEvent* event) {
    scroll(-event->angleDelta().y());
}

}  // namespace kovanix
