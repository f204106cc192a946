#include "widgets/tdbgrid.h"

#include <QAccessible>
#include <QApplication>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "runtime/runtimeerror.h"
#include "widgets/accessibletable.h"
#include "widgets/adodc.h"
#include "widgets/face.h"
#include "widgets/filterbar.h"
#include "widgets/gridaccessible.h"
#include "widgets/gridbands.h"
#include "widgets/gridcell.h"
#include "widgets/gridmodel.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int badIndex = 381;
// What the last column keeps of the width where the others ask for all of it.
constexpr double smallestRest = 0.08;

}  // namespace

TDBGrid::TDBGrid(QWidget* parent)
    : QAbstractItemView(parent),
      m_rows(new GridModel(*this)),
      m_heading(new GridHeading(*this, m_layout)),
      m_filterBar(new FilterBar(this, m_layout)),
      m_footer(new GridFooter(*this, m_layout)),
      m_rim(new GridRim(this, m_layout)),
      m_aboveBar(new QWidget(this)),
      m_belowBar(new QWidget(this)) {
    installGridAccessibility();
    setFrameShape(QFrame::NoFrame);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setAutoScroll(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setModel(m_rows);
    addScrollBarWidget(m_aboveBar, Qt::AlignTop);
    addScrollBarWidget(m_belowBar, Qt::AlignBottom);
    m_aboveBar->parentWidget()->installEventFilter(this);
    verticalScrollBar()->setSingleStep(1);
    // Every pixel is painted by us.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setMouseTracking(true);

    // A press on heading or bands leaves the keyboard where it is; the rows ask for it themselves.
    setFocusPolicy(Qt::TabFocus);

    connect(m_heading, &GridHeading::pressed, this, &TDBGrid::headClick);
    connect(m_filterBar, &FilterBar::typed, this, &TDBGrid::typedInto);
    connect(m_filterBar, &FilterBar::entered, this, &TDBGrid::enteredIn);
    connect(m_filterBar, &FilterBar::leftForRows, this, [this] {
        setFocus(Qt::OtherFocusReason);
        if (!currentIndex().isValid())
            return;
        const bool chosen = dataSource()->isCurrentChosen();
        moveTo(currentIndex().row(), m_col);
        if (!chosen)
            Q_EMIT rowKeyed();
    });
    connect(this, &QObject::objectNameChanged, this, &TDBGrid::nameParts);
    m_layout.tone = toneOf(*this);  // nobody is told of the palette that a new widget takes from its page
    layOutBands();
}

TDBGrid::~TDBGrid() = default;

void TDBGrid::check(int index) const {
    if (index < 0 || index >= columnCount())
        throw RuntimeError(badIndex, u"Invalid property array index"_s, u"TDBGrid"_s);
}

GridColumn& TDBGrid::column(int index) {
    check(index);
    return *m_columns[static_cast<size_t>(index)];
}

const GridColumn& TDBGrid::column(int index) const {
    check(index);
    return *m_columns[static_cast<size_t>(index)];
}

void TDBGrid::setColumnCount(int count) {
    if (count == columnCount())
        return;
    while (columnCount() > count)
        m_columns.pop_back();
    while (columnCount() < count)
        m_columns.push_back(std::unique_ptr<GridColumn>(new GridColumn(*this, columnCount())));
    m_col = std::clamp(m_col, 0, std::max(0, count - 1));
    m_filterBar->setCount(count);
    showRows();
    layOutColumns();
}

GridColumn& TDBGrid::addColumn(const QString& caption, const QString& dataField, int width,
                               const QString& format) {
    setColumnCount(columnCount() + 1);
    GridColumn& added = *m_columns.back();
    added.setCaption(caption);
    added.setDataField(dataField);
    added.setWidth(width);
    added.setFormat(format);
    return added;
}

void TDBGrid::setColumnCaptions(const QStringList& captions) {
    setColumnCount(static_cast<int>(captions.size()));
    for (int index = 0; index < columnCount(); ++index)
        column(index).setCaption(captions[index]);
}

void TDBGrid::captionChanged(int index) {
    m_filterBar->cell(index).setAccessibleName(column(index).caption());
    m_rows->captionChanged(index);
    m_heading->update();
    m_footer->update();
}

void TDBGrid::nameParts() {
    m_filterBar->setCellNames(objectName());
}

Adodc* TDBGrid::dataSource() const {
    return m_rows->source();
}

void TDBGrid::setDataSource(Adodc& source) {
    if (Adodc* before = dataSource(); before != &source) {
        if (before)
            before->disconnect(this);
        m_rows->setSource(&source);
        connect(&source, &Adodc::rowsChanged, this, &TDBGrid::showRows);
        connect(&source, &Adodc::currentChanged, this, &TDBGrid::followCurrent);
        connect(&source, &QObject::destroyed, this, [this] {
            m_rows->setSource(nullptr);
            showRows();
        });
    }
    showRows();
}

void TDBGrid::refresh() {
    showRows();
}

int TDBGrid::currentRow() const {
    const Adodc* source = dataSource();
    if (!source)
        return -1;
    const qsizetype current = source->recordset().current();
    return current < m_rows->rowCount() ? static_cast<int>(current) : -1;
}

void TDBGrid::showRows() {
    // The current row stays at its height in the view, wherever a new order or choice has put it.
    const int before = currentIndex().row();
    const int height = before >= 0 && isInSight(before) ? before - firstRow() : -1;
    const int first = firstRow();
    if (m_rows->reload()) {
        for (int index = 0; index < columnCount(); ++index)
            m_filterBar->cell(index).setNumber(m_rows->isNumber(index));
        m_heading->update();
    }
    // At once: later, it would paint the rows a second time.
    executeDelayedItemsLayout();
    updateGeometries();
    if (const int current = currentRow(); current >= 0 && height >= 0)
        verticalScrollBar()->setValue(current - height);
    followCurrent();
    // Rows that are where they were stay as they were scrolled.
    if (before >= 0 && height < 0 && currentRow() == before)
        verticalScrollBar()->setValue(first);
    tellEmptyState();
    viewport()->update();
}

void TDBGrid::followCurrent() {
    const int row = currentRow();
    if (row >= m_rows->rowCount())
        return;
    m_following = true;
    const QModelIndex index = row < 0 ? QModelIndex() : m_rows->index(row, m_col);
    if (index.isValid())
        selectionModel()->setCurrentIndex(index,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    else
        selectionModel()->clear();
    m_following = false;
    if (row >= 0)
        bringIntoSight(row);
}

/// Whoever makes another cell the current one: a press, a key, an assistive tool.
void TDBGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QAbstractItemView::currentChanged(current, previous);
    if (previous.isValid())
        viewport()->update(rowRect(previous.row()));
    if (!current.isValid())
        return;
    viewport()->update(rowRect(current.row()));
    m_col = current.column();
    tellCurrentCell(*this);  // the view's own word counts its cells otherwise
    if (!m_following && dataSource() && dataSource()->recordset().current() != current.row())
        dataSource()->setCurrent(current.row());
}

void TDBGrid::moveTo(int row, int column) {
    m_col = column;
    if (row < 0 || row >= m_rows->rowCount())
        return;
    selectionModel()->setCurrentIndex(m_rows->index(row, column),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    // A row that is current because none was chosen becomes the chosen one.
    dataSource()->setCurrent(row);
    bringIntoSight(row);
}

void TDBGrid::setCol(int index) {
    check(index);
    m_col = index;
    followCurrent();
}

void TDBGrid::setEditActive(bool active) {
    if (!active) {
        const QWidget* focused = QApplication::focusWidget();
        if (focused && m_filterBar->isAncestorOf(focused))
            setFocus(Qt::OtherFocusReason);
        return;
    }
    if (m_typingColumn < 0 || m_typingColumn >= m_filterBar->count())
        return;
    FilterCell& cell = m_filterBar->cell(m_typingColumn);
    if (cell.hasFocus())
        return;
    const int caret = cell.cursorPosition();
    cell.setFocus(Qt::OtherFocusReason);
    cell.setCursorPosition(caret);
}

void TDBGrid::setSortMark(int index, Qt::SortOrder order) {
    if (index >= 0)
        check(index);
    const int before = m_heading->sortColumn();
    m_heading->setSortMark(index, order);
    for (const int changed : {before, index}) {
        if (changed < 0 || changed >= columnCount())
            continue;
        // The headings are the grid's first children there.
        QAccessibleEvent told(this, QAccessible::DescriptionChanged);
        told.setChild(changed);
        QAccessible::updateAccessibility(&told);
    }
}

int TDBGrid::sortColumn() const {
    return m_heading->sortColumn();
}

void TDBGrid::setFilterBar(bool shown) {
    m_filterBarShown = shown;
    layOutBands();
}

void TDBGrid::setFilterRefused(int index, bool refused) {
    check(index);
    m_filterBar->cell(index).setRefused(refused);
}

bool TDBGrid::isFilterRefused(int index) const {
    check(index);
    return m_filterBar->cell(index).isRefused();
}

QStringList TDBGrid::footerTexts() const {
    QStringList texts;
    for (const auto& shown : m_columns)
        texts << shown->footerText();
    return texts;
}

int TDBGrid::footerTop() const {
    return m_footer->isHidden() ? height() : m_footer->y();
}

void TDBGrid::setFooterTotal(int index) {
    m_footer->setTotalColumn(index);
}

void TDBGrid::setFooterNote(const QString& text) {
    m_footer->setNote(text);
}

void TDBGrid::setEmptyState(const EmptyState& state) {
    m_emptyState = state;
    tellEmptyState();
    viewport()->update();
}

void TDBGrid::setNoMatchState(const EmptyState& state) {
    m_noMatchState = state;
    tellEmptyState();
    viewport()->update();
}

void TDBGrid::setEditedRow(std::optional<qint64> identity) {
    m_editedRow = identity;
    if (const int row = editedPlace(); row >= 0)
        bringIntoSight(row);
    viewport()->update();
}

int TDBGrid::editedPlace() const {
    return m_editedRow && dataSource() ? static_cast<int>(dataSource()->recordset().placeOf(*m_editedRow))
                                       : -1;
}

void TDBGrid::setScale(double scale) {
    if (scale == m_layout.scale)
        return;
    m_layout.scale = scale;
    layOutBands();
    layOutColumns();
}

const TDBGrid::EmptyState& TDBGrid::emptyStateShown() const {
    const bool noneAtAll = !dataSource() || dataSource()->recordset().totalCount() == 0;
    return noneAtAll ? m_emptyState : m_noMatchState;
}

void TDBGrid::tellEmptyState() {
    QStringList words;
    if (m_rows->rowCount() == 0)
        words = {emptyStateShown().text, emptyStateShown().hint};
    words.removeAll(QString());
    setAccessibleDescription(words.join(u". "_s));
}

// What a change of the rows' choice makes of the focus is this grid's to know: the screen asks for it with
// setEditActive in its answer.
void TDBGrid::typedInto(int column) {
    const QPointer<TDBGrid> self(this);
    m_typingColumn = column;
    Q_EMIT filterChange();
    if (!self)
        return;
    m_typingColumn = -1;
    viewport()->update();
}

void TDBGrid::enteredIn(int column) {
    // While a cell isn't in force, the one row that is left may be the answer to another search.
    for (int other = 0; other < columnCount(); ++other) {
        if (isFilterRefused(other))
            return;
    }
    if (m_rows->rowCount() != 1)
        return;
    // A scan of what isn't here must not choose the row whose code merely contains it.
    if (column == m_scanColumn &&
        m_rows->text(0, column).compare(this->column(column).filterText(), Qt::CaseInsensitive) != 0)
        return;
    moveTo(0, m_col);
    Q_EMIT dblclick();
}

bool TDBGrid::searchFor(const QString& typed) {
    if (!m_filterBarShown || typed.isEmpty())
        return false;
    const QChar first = typed.at(0);
    const bool digit = first.isDigit() && m_scanColumn >= 0;
    if (!digit && !first.isLetterOrNumber())
        return false;
    const int column = digit ? m_scanColumn : m_nameColumn;
    if (column < 0 || column >= m_filterBar->count())
        return false;
    for (int other = 0; digit && other < m_filterBar->count(); ++other)
        m_filterBar->setText(other, {});
    m_filterBar->setText(column, {});
    FilterCell& cell = m_filterBar->cell(column);
    cell.setFocus(Qt::OtherFocusReason);
    cell.insert(typed);
    return true;
}

void TDBGrid::layOutBands() {
    const int left = 1;
    const int across = std::max(0, width() - 2);
    const int target = m_layout.target();
    const bool footers = std::any_of(m_columns.begin(), m_columns.end(),
                                     [](const auto& c) { return !c->footerText().isEmpty(); });
    const int above = 1 + target + (m_filterBarShown ? target : 0);
    const int below = footers ? m_layout.footer() : 0;
    m_heading->setGeometry(left, 1, across, target);
    m_filterBar->setGeometry(left, 1 + target, across, target);
    m_filterBar->setVisible(m_filterBarShown);
    m_footer->setGeometry(left, height() - 1 - below, across, below);
    m_footer->setVisible(footers);
    m_footer->tellTexts();
    m_aboveBar->setFixedHeight(above);
    m_belowBar->setFixedHeight(below + 1);
    if (m_styledScale != m_layout.scale || m_styledTone != m_layout.tone) {
        m_styledScale = m_layout.scale;
        m_styledTone = m_layout.tone;
        verticalScrollBar()->setStyleSheet(scrollBarStyle(m_layout.scale, m_layout.tone));
    }
    const QMargins margins(left, above, 0, below + 1);
    if (viewportMargins() != margins)
        setViewportMargins(margins);
    m_heading->raise();
    m_filterBar->raise();
    m_footer->raise();
    m_rim->layOut();
    m_rim->update();
}

void TDBGrid::layOutColumns() {
    const int room = viewport()->width();
    double asked = 0;
    for (size_t index = 0; index + 1 < m_columns.size(); ++index)
        asked += std::max(0, m_columns[index]->width());
    const double most = room * (1 - smallestRest);
    const double factor = asked > most ? most / asked : 1.0;
    m_layout.edges.assign(1, 0);
    double edge = 0;
    for (size_t index = 0; index < m_columns.size(); ++index) {
        edge += std::max(0, m_columns[index]->width()) * factor;
        m_layout.edges.push_back(index + 1 == m_columns.size() ? room : static_cast<int>(std::lround(edge)));
    }
    m_filterBar->layOut();
    m_heading->update();
    viewport()->update();
}

void TDBGrid::updateGeometries() {
    QAbstractItemView::updateGeometries();
    QScrollBar* bar = verticalScrollBar();
    const int hidden = std::max(0, m_rows->rowCount() - visibleRows());
    const int before = bar->value();
    // The bar is always there. Told of another range, the area would still lay out all its parts and put the
    // bar on top of them, and each key in a filter cell would paint the whole rim.
    const QSignalBlocker quiet(bar);
    bar->setPageStep(visibleRows());
    bar->setRange(0, hidden);
    bar->setEnabled(hidden > 0);
    if (bar->value() != before)
        viewport()->update();
}

}  // namespace kovanix
