#include "screens/listscreen.h"

#include <QLayout>
#include <QLineEdit>
#include <QScopeGuard>

#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/sendkeys.h"
#include "desktop/waitcursor.h"
#include "runtime/attempt.h"
#include "values/numbers.h"
#include "widgets/activeresize.h"
#include "widgets/adodc.h"
#include "widgets/drawnframe.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

ListScreen::~ListScreen() = default;

void ListScreen::setUpList(const Controls& controls) {
    m_controls = controls;
    TDBGrid& grid = *controls.grid;
    QStringList captions;
    for (const ListColumn& column : m_traits.columns)
        captions.append(column.caption);
    grid.setColumnCaptions(captions);
    for (int i = 0; i < grid.columnCount(); ++i) {
        const ListColumn& stored = m_traits.columns[i];
        GridColumn& column = grid.column(i);
        column.setDataField(stored.field);
        column.setFormat(stored.format);
        column.setWidth(stored.width);
        column.setCode(stored.code);
        if (stored.field == m_traits.scanField)
            grid.setScanColumn(i);
        if (stored.field == m_traits.nameField)
            grid.setNameColumn(i);
    }
    grid.setFilterBar(m_traits.filters);
    m_textsInForce = filterTexts();  // none yet
    tellEmpty(true);
    grid.setNoMatchState(
        {{}, u"Aramaya uyan "_s + m_traits.unit + u" yok"_s, u"Kırmızı alandaki × ile aramayı silin"_s});

    const auto copyOn = [this, &grid](SelectionEvent event, auto signal) {
        if (m_traits.selection & event)
            connect(&grid, signal, this, [this] { copySelection(); });
    };
    copyOn(onClick, &TDBGrid::click);
    copyOn(onClick, &TDBGrid::rowKeyed);
    copyOn(onDoubleClick, &TDBGrid::dblclick);
    copyOn(onPress, &TDBGrid::mousedown);
    copyOn(onMove, &TDBGrid::mousemove);
    copyOn(onRelease, &TDBGrid::mouseup);
    connect(&grid, &TDBGrid::dblclick, this, [this] { TDBGrid1_dblclick(); });
    connect(&grid, &TDBGrid::headClick, this, &ListScreen::TDBGrid1_headclick);
    connect(&grid, &TDBGrid::filterChange, this, &ListScreen::TDBGrid1_filterchange);
    connect(controls.resizing, &ActiveResize::resized, this, &ListScreen::boyutlandirma_resize);
    connect(controls.data, &Adodc::rowsChanged, this, &ListScreen::tellCount);

    // The stored widths are those of the design size: controls and columns stand at it before the screen is
    // given the display's.
    setWindowState(windowState() | Qt::WindowMaximized);
    resize(controls.resizing->designSize());
    for (QWidget* holder : {static_cast<QWidget*>(this), static_cast<QWidget*>(controls.resizing),
                            static_cast<QWidget*>(controls.frame)})
        holder->layout()->setGeometry(holder->contentsRect());  // a hidden window gets no resize events
}

void ListScreen::connectData(const QString& recordSource) {
    m_controls.data->setConnectionString(baglantiyazisi());
    m_controls.data->setCommandType(Adodc::CommandType::table);
    m_controls.data->setRecordSource(recordSource);
}

bool ListScreen::showRows() {
    attempt([this] { m_controls.grid->setDataSource(*m_controls.data); });
    const ReadEnd end = readToEnd([this] {
        const WaitCursor reading;  // a large catalogue takes a second
        const auto restore = qScopeGuard([this] { m_controls.frame->setProgress({}); });
        m_reading.start();
        m_controls.data->refresh([this](qsizetype rows, qsizetype total) {
            m_controls.frame->setProgress(progressShown(rows, total, readingTime()));
        });
    });
    const bool readable = end == ReadEnd::whole;
    const WaitCursor sorting;
    attempt([this] { m_controls.grid->refresh(); });
    tellEmpty(readable);
    // Rows that were read anew keep their order and filter, where they could be set on those of before and
    // can be on these.
    const RowSet& rows = m_controls.data->recordset();
    if (rows.sort() != m_sort)
        sort(m_sort);
    if (!rows.isFiltered())
        m_textsInForce.fill({});
    if (filterTexts() != m_textsInForce)
        filter();
    tellCount();
    return readable;
}

std::chrono::milliseconds ListScreen::readingTime() const {
    return std::chrono::milliseconds(m_reading.elapsed());
}

void ListScreen::storeWidths() {
    QList<int> widths;
    for (int i = 0; i < m_controls.grid->columnCount(); ++i)
        widths.append(m_controls.grid->column(i).width());
    m_widths.store(m_controls.grid->width(), widths);
}

void ListScreen::boyutlandirma_resize() {
    const QList<int> widths = m_widths.widthsFor(m_controls.grid->width());
    for (int i = 0; i < widths.size(); ++i)
        m_controls.grid->column(i).setWidth(widths[i]);
}

void ListScreen::copySelection() {
    m_controls.selected->setText(m_controls.grid->column(0).value());
}

bool ListScreen::isSelectedRowCurrent() const {
    return data().recordset().recordCount() > 0 && grid().column(0).value() == selected().text();
}

void ListScreen::showCurrentRow() const {
    grid().scrollTo(grid().currentIndex());
}

void ListScreen::TDBGrid1_dblclick() {}

void ListScreen::TDBGrid1_headclick(int column) {
    TDBGrid& grid = *m_controls.grid;
    if (!m_traits.sorts) {
        copySelection();
        return;
    }
    if (m_traits.focusesToSort)
        giveFocus(grid);
    sort(m_order.press(grid.column(column).dataField()));
    sendKey(Qt::Key_Right);  // every sort steps one cell on: that is required
}

void ListScreen::sort(const QString& order) {
    m_sort = order;
    attempt([&] { m_controls.data->setSort(order); });
    tellSort();
}

/// Marks the column of the order in force, which is the former one where another was refused.
void ListScreen::tellSort() {
    TDBGrid& grid = *m_controls.grid;
    const QString inForce = m_controls.data->recordset().sort().trimmed();
    int marked = -1;
    for (int i = 0; i < grid.columnCount(); ++i) {
        if (inForce.section(u' ', 0, 0) == grid.column(i).dataField())
            marked = i;
    }
    grid.setSortMark(marked, inForce.endsWith(u"DESC") ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ListScreen::TDBGrid1_filterchange() {
    TDBGrid& grid = *m_controls.grid;
    const int col = grid.col();
    grid.holdFields();
    filter();
    grid.setCol(col);
    grid.setEditActive(true);
}

void ListScreen::filter() {
    const QStringList texts = filterTexts();
    QList<FilterInput> cells;
    for (int i = 0; i < texts.size(); ++i)
        cells.append({m_controls.grid->column(i).dataField(), texts[i]});
    attempt([&] {
        m_controls.data->setFilter(filterText(cells, m_traits.filter));
        m_textsInForce = texts;
    });
    // Where the filter is refused, the one of before goes on, and every cell that says something else shows
    // it.
    for (int i = 0; i < texts.size(); ++i)
        m_controls.grid->setFilterRefused(i, texts[i] != m_textsInForce.value(i));
}

QStringList ListScreen::filterTexts() const {
    QStringList texts;
    for (int i = 0; i < m_controls.grid->columnCount(); ++i) {
        const QString text = m_controls.grid->column(i).filterText();
        texts.append(text.trimmed().isEmpty() ? QString() : text);  // blanks alone ask for nothing
    }
    return texts;
}

void ListScreen::tellEmpty(bool readable) {
    if (readable)
        m_controls.grid->setEmptyState({m_traits.icon, m_traits.noneYet, m_traits.noneYetHint});
    else
        m_controls.grid->setEmptyState(
            {m_traits.icon, u"Liste okunamadı"_s, u"Ekranı kapatıp yeniden açın"_s});
}

void ListScreen::tellCount() {
    const RowSet& rows = m_controls.data->recordset();
    const auto count = [](qsizetype number) { return format(static_cast<double>(number), u"###,###,##0"); };
    QString note = count(rows.totalCount()) + u' ' + m_traits.unit;
    if (rows.isFiltered())
        note.prepend(count(rows.recordCount()) + u" / ");
    m_controls.frame->setTitleNote(note);
}

}  // namespace kovanix
