#include "widgets/gridcolumn.h"

#include "widgets/adodc.h"
#include "widgets/filterbar.h"
#include "widgets/gridmodel.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

void GridColumn::setCaption(const QString& text) {
    if (m_caption == text)
        return;
    m_caption = text;
    m_grid.captionChanged(m_index);
}

void GridColumn::setDataField(const QString& name) {
    if (m_dataField == name)
        return;
    m_dataField = name;
    m_grid.showRows();
}

void GridColumn::setFormat(const QString& pattern) {
    if (m_format == pattern)
        return;
    m_format = pattern;
    m_grid.viewport()->update();
}

void GridColumn::setWidth(int pixels) {
    if (m_width == pixels)
        return;
    m_width = pixels;
    m_grid.layOutColumns();
}

QString GridColumn::filterText() const {
    return m_grid.m_filterBar->cell(m_index).text();
}

void GridColumn::setFilterText(const QString& text) {
    m_grid.m_filterBar->setText(m_index, text);
}

void GridColumn::setFooterText(const QString& text) {
    if (m_footerText == text)
        return;
    m_footerText = text;
    m_grid.layOutBands();
}

void GridColumn::setCode(bool code) {
    m_code = code;
    m_grid.viewport()->update();
}

bool GridColumn::isNumber() const {
    return m_grid.m_rows->isNumber(m_index);
}

QString GridColumn::value() const {
    const Adodc* source = m_grid.dataSource();
    const int field = m_grid.m_rows->field(m_index);
    if (!source || field < 0 || source->recordset().current() < 0)
        return {};
    return source->recordset().text(source->recordset().current(), field);
}

}  // namespace kovanix
