#include "screens/listscreen.h"

#include <QGuiApplication>
#include <QLayout>
#include <QLineEdit>
#include <QScopeGuard>

#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/sendkeys.h"
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
        if (stored.field == m_traits.scanField)
            grid.setScanColumn(i);
        if (stored.field == m_traits.nameField)
            grid.setNameColumn(i);
    }
    m_textsInForce = filterTexts();  // none yet
    grid.setEmptyState({m_traits.icon, m_traits.noneYet, m_traits.noneYetHint});
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

void ListScreen::connectData() {
    m_controls.data->setConnectionString(baglantiyazisi());
    m_controls.data->setCommandType(Adodc::CommandType::table);
    m_controls.data->setRecordSource(m_traits.source);
}

void ListScreen::showRows() {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);  // a large catalogue takes a second
    const auto restore = qScopeGuard([this] {
        m_controls.frame->setProgress({});
        QGuiApplication::restoreOverrideCursor();
    });
    attempt([this] { m_controls.grid->setDataSource(*m_controls.data); });
    m_reading.start();
    attempt([this] {
        m_controls.data->refresh([this](qsizetype rows, qsizetype total) {
            m_controls.frame->setProgress(progressShown(rows, total, readingTime()));
        });
    });
    attempt([this] { m_controls.grid->refresh(); });
    // Rows that were read anew keep their filter, unless it could not be set on those of before.
    if (filterTexts() != m_textsInForce)
        filter();
    tellCount();
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

void ListScreen::TDBGrid1_dblclick() {}

void ListScreen::TDBGrid1_headclick(int column) {
    TDBGrid& grid = *m_controls.grid;
    if (m_traits.focusesToSort)
        giveFocus(grid);
    const QString sort = m_order.press(grid.column(column).dataField());
    attempt([&] { m_controls.data->setSort(sort); });
    grid.setSortMark(column, m_order.direction == u"DESC" ? Qt::DescendingOrder : Qt::AscendingOrder);
    sendKey(Qt::Key_Right);  // every sort steps one cell on: that is required
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
    QList<FilterCell> cells;
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
    for (int i = 0; i < m_controls.grid->columnCount(); ++i)
        texts.append(m_controls.grid->column(i).filterText());
    return texts;
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
