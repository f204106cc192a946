#include "widgets/filterbar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "widgets/face.h"
#include "widgets/gridcell.h"
#include "widgets/gridlayout.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// The ring of the focus, which keeps its width at any size.
constexpr int outerRing = 3;
constexpr int innerRing = 2;
constexpr int ring = outerRing + innerRing;
constexpr double warningSide = 20;  // at the design size

}  // namespace

FilterCell::FilterCell(QWidget* parent) : QLineEdit(parent) {
    setFrame(false);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    connect(this, &QLineEdit::textChanged, this, &FilterCell::dress);
    dress();
}

void FilterCell::setRefused(bool refused) {
    if (m_refused == refused)
        return;
    m_refused = refused;
    setAccessibleDescription(refused ? u"Bu metinle arama yapılamadı; önceki arama geçerli."_s : QString());
    dress();
}

void FilterCell::setNumber(bool number) {
    if (m_number == number)
        return;
    m_number = number;
    setAlignment((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    dress();
}

void FilterCell::setMeasures(const GridLayout& layout) {
    m_scale = layout.scale;
    m_target = layout.target();
    m_tone = layout.tone;
    QFont letters = font();
    letters.setFamilies(parentWidget()->font().families());
    letters.setPixelSize(layout.filterText());
    letters.setWeight(QFont::Medium);
    setFont(letters);
    dress();
}

QRectF FilterCell::well() const {
    return QRectF(rect()).adjusted(3 * m_scale, 4 * m_scale, -3 * m_scale, -4 * m_scale);
}

/// How far within the well a sign stands: clear of the ring.
double FilterCell::signInset() const {
    return std::max(5 * m_scale, ring + 1.0);
}

QColor FilterCell::color(ColorRole role) const {
    return roleColor(role, m_tone);
}

bool FilterCell::showsCross() const {
    // A narrow cell has no room for the struck-out text, its sign and a cross; whoever goes into the cell to
    // mend the text finds the cross there.
    return !text().isEmpty() && (!m_refused || hasFocus());
}

QRect FilterCell::crossTarget() const {
    if (!showsCross())
        return {};
    return {std::max(0, width() - m_target), 0, std::min(m_target, width()), height()};
}

void FilterCell::dress() {
    const QColor ink = color(m_refused ? ColorRole::refusedInk : ColorRole::filterInk);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, ink);
    colors.setColor(QPalette::Highlight, ink);
    colors.setColor(QPalette::HighlightedText, color(ColorRole::filterInForce));
    if (colors != palette())
        setPalette(colors);
    QFont letters = font();
    letters.setStrikeOut(m_refused);
    if (letters != font())
        setFont(letters);
    const auto inset = [this](double length) { return static_cast<int>(std::lround(length * m_scale)); };
    const int sign = inset(30);
    const int clear = static_cast<int>(std::ceil(well().left())) + ring;
    const int warned = static_cast<int>(std::ceil(well().left() + signInset() + warningSide * m_scale)) + 1;
    setTextMargins(m_refused ? std::max(sign, warned) : std::max(inset(8), clear), 0,
                   showsCross() ? sign : std::max(inset(5), clear), 0);
    update();
}

void FilterCell::paintEvent(QPaintEvent* event) {
    const QRectF box = well();
    const bool filled = !text().isEmpty();
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color(filled ? ColorRole::filterInForce : ColorRole::filterCell));
        painter.drawRoundedRect(box, 5 * m_scale, 5 * m_scale);
        const auto rim = [&](const QColor& color, double inset, double pen) {
            painter.setPen(QPen(color, pen));
            painter.setBrush(Qt::NoBrush);
            const double half = inset + pen / 2;
            painter.drawRoundedRect(box.adjusted(half, half, -half, -half), 4 * m_scale, 4 * m_scale);
        };
        if (hasFocus()) {
            rim(color(ColorRole::focus), 0, outerRing);
            rim(color(m_refused ? ColorRole::refusedRim : ColorRole::filterInk), outerRing, innerRing);
        } else if (m_refused) {
            rim(color(ColorRole::refusedRim), 0, 2);
        } else if (filled) {
            rim(color(ColorRole::filterInk), 0, 2);
        }
    }
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    const double size = 18 * m_scale;
    const double clear = signInset();
    const auto at = [&](bool right, double side) {
        const double left = right ? box.right() - clear - side : box.left() + clear;
        return QRectF(left, box.center().y() - side / 2, side, side);
    };
    if (!filled) {
        // Not where the caret stands.
        paintMagnifier(painter, at(m_number != hasFocus(), size), color(ColorRole::filterHint));
        return;
    }
    if (m_refused)
        paintWarning(painter, at(false, warningSide * m_scale), color(ColorRole::refusedInk));
    if (showsCross())
        paintCross(painter, at(true, size), color(ColorRole::filterInk));
}

void FilterCell::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    update();
}

void FilterCell::mousePressEvent(QMouseEvent* event) {
    m_onCross = event->button() == Qt::LeftButton && crossTarget().contains(event->position().toPoint());
    if (!m_onCross)
        QLineEdit::mousePressEvent(event);
}

void FilterCell::mouseMoveEvent(QMouseEvent* event) {
    const bool onCross = crossTarget().contains(event->position().toPoint());
    setCursor(onCross ? Qt::ArrowCursor : Qt::IBeamCursor);
    if (!m_onCross)
        QLineEdit::mouseMoveEvent(event);
}

void FilterCell::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_onCross) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    m_onCross = false;
    if (crossTarget().contains(event->position().toPoint()))
        clear();
}

void FilterCell::mouseDoubleClickEvent(QMouseEvent* event) {
    if (crossTarget().contains(event->position().toPoint()))
        mousePressEvent(event);
    else
        QLineEdit::mouseDoubleClickEvent(event);
    event->accept();
}

void FilterCell::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            if (text().isEmpty()) {
                event->ignore();
                return;
            }
            clear();
            event->accept();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            event->accept();
            // A scanner ends with Enter; what it reads next is another search.
            selectAll();
            Q_EMIT entered();
            return;
        case Qt::Key_Down:
            event->accept();
            Q_EMIT leftForRows();
            return;
        default:
            break;
    }
    QLineEdit::keyPressEvent(event);
    // What the cell has no room for must not begin a search of its own at the rows.
    if (!event->text().isEmpty() && event->text().at(0).isPrint() &&
        (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0)
        event->accept();
}

void FilterCell::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    dress();
}

void FilterCell::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    dress();
}

FilterBar::FilterBar(QWidget* parent, const GridLayout& layout) : QWidget(parent), m_layout(layout) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void FilterBar::setCount(int count) {
    while (this->count() > count) {
        delete m_cells.back();
        m_cells.pop_back();
    }
    while (this->count() < count) {
        const int column = this->count();
        auto* cell = new FilterCell(this);
        connect(cell, &FilterCell::textChanged, this, [this, cell, column] {
            cell->setRefused(false);
            if (!m_setting)
                Q_EMIT typed(column);
        });
        connect(cell, &FilterCell::entered, this, [this, column] { Q_EMIT entered(column); });
        connect(cell, &FilterCell::leftForRows, this, &FilterBar::leftForRows);
        // Tab goes from the rows through the cells, whatever was made in between.
        QWidget::setTabOrder(m_cells.empty() ? parentWidget() : m_cells.back(), cell);
        m_cells.push_back(cell);
    }
    setCellNames(m_gridName);
}

void FilterBar::setText(int column, const QString& text) {
    m_setting = true;
    cell(column).setText(text);
    m_setting = false;
}

void FilterBar::setCellNames(const QString& grid) {
    m_gridName = grid;
    for (int column = 0; column < count(); ++column)
        cell(column).setObjectName(u"%1_filter_%2"_s.arg(grid).arg(column));
}

void FilterBar::layOut() {
    for (int column = 0; column < std::min(count(), m_layout.columns()); ++column) {
        FilterCell& shown = cell(column);
        shown.setMeasures(m_layout);
        shown.setGeometry(m_layout.cell(column, 0, height()));
        shown.setVisible(shown.width() > 0);
    }
}

void FilterBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), m_layout.color(ColorRole::filterStrip));
}

// A press beside the cells is none on the rows.
void FilterBar::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void FilterBar::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}

}  // namespace kovanix
