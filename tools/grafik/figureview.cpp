#include "grafik/figureview.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <numeric>
#include <vector>

#include "grafik/figuremodel.h"
#include "kit/listlook.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/gridcell.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int designRow = 44;

// In pixels.
constexpr int smallestRow = 40;
constexpr int smallestLetters = 6;
constexpr int aroundName = 3;

constexpr int mostLines = 6;

/// A name breaks between its words, and within one that is longer than a line.
QTextOption nameOption() {
    QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return option;
}

int lineCount(const QString& name, const QFont& letters, int width) {
    QTextLayout layout(name, letters);
    layout.setTextOption(nameOption());
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(width);
    layout.endLayout();
    return layout.lineCount();
}

/// A name as it is shown in that width: whole, unless it is longer than any that a till stores.
QString shownName(const QString& name, const QFontMetrics& letters, int width) {
    constexpr int wellFilled = 4;  // of five parts of a line: words don't end at its end
    return letters.elidedText(onOneLine(name), Qt::ElideMiddle, mostLines * width * wellFilled / 5);
}

}  // namespace

/// A row as the till's lists paint it, but in letters of one size all over the table: nothing in it is cut,
/// so nothing has to shrink by itself.
class FigurePainter : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setLetters(int pixels) { m_letters = pixels; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        paintCellGround(*painter, option, index);
        QFont font = option.font;
        font.setPixelSize(m_letters);
        font.setWeight(option.state.testFlag(QStyle::State_Selected) ? QFont::Medium : QFont::Normal);
        painter->setFont(font);
        const QVariant ink = index.data(Qt::ForegroundRole);
        painter->setPen(ink.isValid() ? ink.value<QColor>() : roleColor(ColorRole::ink));
        const int side = qRound(cellPadding * designScale(*option.widget));
        const QRect room = option.rect.adjusted(side, 0, -side, -1);
        const QString text = index.data().toString();
        if (index.column() == 0)
            painter->drawText(QRectF(room), shownName(text, painter->fontMetrics(), room.width()),
                              nameOption());
        else
            painter->drawText(room, Qt::AlignRight | Qt::AlignVCenter, text);
    }

private:
    int m_letters = 1;
};

FigureView::FigureView(QWidget* parent)
    : QTableView(parent), m_model(new FigureModel(this)), m_painter(new FigurePainter(this)) {
    setModel(m_model);
    setItemDelegate(m_painter);
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

/// The longest text of each column of figures.
QStringList FigureView::longestFigures() const {
    const QFontMetrics letters(font());
    QStringList longest;
    for (int column = 1; column < m_model->columnCount(); ++column) {
        QString text;
        for (int row = 0, most = 0; row < m_model->rowCount(); ++row) {
            const QString figure = m_model->index(row, column).data().toString();
            const int width = letters.horizontalAdvance(figure);
            if (width > most) {
                most = width;
                text = figure;
            }
        }
        longest << text;
    }
    return longest;
}

/// The figures take what the longest of them needs, the names the rest, at least a third: where there is less
/// room, the whole table has smaller letters, and names break into more lines.
void FigureView::layOut() {
    const double scale = designScale(*this);
    const int padding = 2 * qRound(cellPadding * scale) + 2;
    verticalScrollBar()->setStyleSheet(scrollBarStyle(scale));
    dressHeading(*horizontalHeader(), scale, std::max(smallestRow, qRound(designRow * scale)));
    const QFontMetrics headings(headingFont(font(), scale));
    const QStringList longest = longestFigures();
    QFont letters = font();
    letters.setWeight(QFont::Medium);  // as the chosen row's
    const int all = viewport()->width();
    std::vector<int> widths;
    for (int pixels = FittedText::pixelSizeOf(font(), logicalDpiY());; --pixels) {
        letters.setPixelSize(pixels);
        widths.clear();
        for (int column = 1; column <= longest.size(); ++column) {
            const QString heading = m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
            widths.push_back(padding +
                             std::max(headings.horizontalAdvance(heading),
                                      QFontMetrics(letters).horizontalAdvance(longest[column - 1])));
        }
        if (pixels <= smallestLetters || std::accumulate(widths.begin(), widths.end(), 0) <= all * 2 / 3)
            break;
    }
    m_painter->setLetters(letters.pixelSize());
    int left = all;
    for (int column = 1; column <= longest.size(); ++column) {
        const int width = widths[static_cast<std::size_t>(column - 1)];
        setColumnWidth(column, width);
        left -= width;
    }
    setColumnWidth(0, std::max(1, left));
    const int name = nameHeight(letters, std::max(1, left - padding));
    verticalHeader()->setDefaultSectionSize(std::max({smallestRow, qRound(designRow * scale), name}));
    viewport()->update();
}

/// @return the height of the row whose name takes the most lines
int FigureView::nameHeight(const QFont& letters, int width) const {
    const QFontMetrics metrics(letters);
    int lines = 1;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QString name = shownName(m_model->index(row, 0).data().toString(), metrics, width);
        lines =
            std::max(lines, metrics.horizontalAdvance(name) <= width ? 1 : lineCount(name, letters, width));
    }
    return lines * metrics.lineSpacing() + 2 * aroundName;
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
