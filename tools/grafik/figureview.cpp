#include "grafik/figureview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <numeric>
#include <vector>

#include "grafik/figuremodel.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/gridcell.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int designRow = 44;
constexpr int smallestRow = 40;
constexpr int headingSize = 14;
constexpr int padding = 8;
constexpr int barWidth = 5;

/// A row as the till's lists paint it.
class RowPainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const bool chosen = option.state & QStyle::State_Selected;
        const double scale = designScale(*option.widget);
        const ColorRole ground = chosen                 ? ColorRole::selection
                                 : index.row() % 2 == 1 ? ColorRole::zebra
                                                        : ColorRole::card;
        painter->fillRect(option.rect, roleColor(ground));
        painter->fillRect(QRect(option.rect.bottomLeft(), QSize(option.rect.width(), 1)),
                          roleColor(ColorRole::rowLine));
        if (chosen && index.column() == 0)
            painter->fillRect(
                QRect(option.rect.topLeft(), QSize(qRound(barWidth * scale), option.rect.height())),
                roleColor(ColorRole::selectionBar));
        QFont font = option.font;
        font.setWeight(chosen ? QFont::Medium : QFont::Normal);
        painter->setFont(font);
        const QVariant ink = index.data(Qt::ForegroundRole);
        painter->setPen(ink.isValid() ? ink.value<QColor>() : roleColor(ColorRole::ink));
        const int side = qRound(padding * scale);
        const bool name = index.column() == 0;
        paintCellText(*painter, option.rect.adjusted(side, 0, -side, -1), index.data().toString(),
                      name ? Qt::AlignLeft : Qt::AlignRight, name ? CellText::name : CellText::number);
    }
};

}  // namespace

FigureView::FigureView(QWidget* parent) : QTableView(parent), m_model(new FigureModel(this)) {
    setModel(m_model);
    setItemDelegate(new RowPainter(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setFrameShape(NoFrame);
    setShowGrid(false);
    setTabKeyNavigation(false);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // widths don't jump
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    setAccessibleName(u"Rakamlar"_s);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (!m_choosing)
                    Q_EMIT rowChosen(current.row());
            });
}

void FigureView::setTable(const FigureTable& table) {
    const QScopedValueRollback choosing(m_choosing, true);
    m_model->setTable(table);
    layOut();
    scrollToTop();
}

void FigureView::choose(int row) {
    const QScopedValueRollback choosing(m_choosing, true);
    if (row < 0)
        selectionModel()->clear();
    else
        setCurrentIndex(m_model->index(row, 0));
}

/// The figures take what the longest of them needs, the names the rest.
void FigureView::layOut() {
    const double scale = designScale(*this);
    verticalHeader()->setDefaultSectionSize(std::max(smallestRow, qRound(designRow * scale)));
    verticalScrollBar()->setStyleSheet(scrollBarStyle(scale));
    horizontalHeader()->setFixedHeight(std::max(smallestRow, qRound(designRow * scale)));
    const int headingPixels = std::max(FittedText::smallestLegible, qRound(headingSize * scale));
    horizontalHeader()->setStyleSheet(
        u"QHeaderView { background: %1; } QHeaderView::section { background: %1; color: %2; border: none; "
        u"padding: 0 %3px; font-size: %4px; font-weight: 500; }"_s
            .arg(roleColor(ColorRole::heading).name(), roleColor(ColorRole::headingInk).name())
            .arg(qRound(padding * scale))
            .arg(headingPixels));
    QFont wide = font();
    wide.setWeight(QFont::Medium);  // as the chosen row's
    const QFontMetrics metrics(wide);
    const int columns = m_model->columnCount();
    std::vector<int> widths(static_cast<std::size_t>(columns), 0);
    for (int column = 1; column < columns; ++column) {
        int width = metrics.horizontalAdvance(
            m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
        for (int row = 0; row < m_model->rowCount(); ++row)
            width = std::max(width, metrics.horizontalAdvance(m_model->index(row, column).data().toString()));
        widths[static_cast<std::size_t>(column)] = width + 2 * qRound(padding * scale) + 2;
    }
    // The names keep a third; numbers that are too wide then get smaller letters.
    const int all = viewport()->width();
    const int wanted = std::accumulate(widths.begin(), widths.end(), 0);
    const double share = std::min(1.0, all * 2.0 / 3 / wanted);
    int left = all;
    for (int column = 1; column < columns; ++column) {
        const int width = static_cast<int>(widths[static_cast<std::size_t>(column)] * share);
        setColumnWidth(column, width);
        left -= width;
    }
    setColumnWidth(0, std::max(1, left));
}

void FigureView::copyChosen() const {
    QStringList cells;
    for (int column = 0; column < m_model->columnCount(); ++column)
        cells << m_model->index(currentIndex().row(), column).data().toString();
    QGuiApplication::clipboard()->setText(cells.join(u'\t'));
}

void FigureView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy) && currentIndex().isValid())
        copyChosen();
    else if (event->key() == Qt::Key_Escape)
        event->ignore();  // the window's
    else
        QTableView::keyPressEvent(event);
}

void FigureView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    layOut();
}

void FigureView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_model)
        layOut();
}

}  // namespace kovanix
