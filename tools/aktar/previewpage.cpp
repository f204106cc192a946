#include "aktar/previewpage.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "aktar/pageparts.h"
#include "widgets/checkbox.h"
#include "widgets/emptyplace.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 8;
constexpr int touchHeight = 48;
constexpr int columnWidth = 150;
constexpr qsizetype shownRows = 12;
constexpr qsizetype shownColumns = 64;

}  // namespace

PreviewPage::PreviewPage() {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(spacing);
    auto* const top = new QHBoxLayout;
    top->setSpacing(spacing);
    m_kind = new Switches(u"neice"_s, {u"Ürünler"_s, u"Müşteriler"_s});
    m_heading = new CheckBox;
    m_heading->setObjectName(u"baslik"_s);
    m_heading->setText(u"İlk satır başlıktır"_s);
    m_heading->setProperty("textRole", u"choice"_s);
    m_heading->setMinimumHeight(touchHeight);
    top->addWidget(m_kind, 2);
    top->addWidget(m_heading, 1);
    m_sheet = new QComboBox;
    m_sheet->setObjectName(u"sayfa"_s);
    m_sheet->setAccessibleName(u"Dosyanın sayfası"_s);
    m_sheet->setToolTip(u"Dosyanın hangi sayfası okunsun?"_s);
    m_sheet->setProperty("textRole", u"text"_s);
    m_sheet->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_sheet->hide();
    top->addWidget(m_sheet, 1);
    layout->addLayout(top);
    m_about = makeLabel({}, u"note", ColorRole::mutedInk);
    m_about->setObjectName(u"dosyabilgisi"_s);
    layout->addWidget(m_about);

    m_choices = new QTableWidget;
    m_choices->setObjectName(u"secimler"_s);
    m_choices->setAccessibleName(u"Sütunların anlamı"_s);
    m_choices->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_choices->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_choices->setFrameShape(QFrame::NoFrame);
    m_choices->setFocusPolicy(Qt::NoFocus);
    m_rows = new QTableWidget;
    m_rows->setObjectName(u"onizleme"_s);
    m_rows->setAccessibleName(u"Dosyanın ilk satırları"_s);
    m_rows->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (QTableWidget* table : {m_choices, m_rows}) {
        dressTable(*table);
        table->horizontalHeader()->hide();
        table->horizontalHeader()->setStretchLastSection(true);
    }
    // Both move sideways together; downwards the rows alone.
    connect(m_rows->horizontalScrollBar(), &QScrollBar::valueChanged, m_choices->horizontalScrollBar(),
            &QScrollBar::setValue);
    layout->addWidget(m_choices);
    layout->addWidget(m_rows, 1);
    m_empty = new EmptyPlace;
    m_empty->setPicture(u":/icons/table.svg"_s);
    m_empty->setText(u"Bir dosya seçin: .csv, .xlsx ya da kasanın .xls dökümü"_s);
    layout->addWidget(m_empty, 1);
    m_fault = makeLabel({}, u"label", ColorRole::danger);
    m_fault->setObjectName(u"eksik"_s);
    layout->addWidget(m_fault);

    connect(m_sheet, &QComboBox::textActivated, this, &PreviewPage::sheetChosen);
    connect(m_kind, &Switches::changed, this, [this] {
        proposeColumns();
        Q_EMIT changed();
    });
    connect(m_heading, &CheckBox::clicked, this, [this] {
        showRows();
        Q_EMIT changed();
    });
}

Kind PreviewPage::kind() const {
    return m_kind->chosen() == 0 ? Kind::products : Kind::customers;
}

void PreviewPage::setFile(const CellTable* table, const QString& words) {
    m_table = table;
    m_about->setText(words);
    m_empty->setVisible(!table);
    for (QWidget* part : std::initializer_list<QWidget*>{m_heading, m_choices, m_rows})
        part->setVisible(table);
    if (table)
        m_kind->choose(knownHeadings(*table, Kind::customers) > knownHeadings(*table, Kind::products) ? 1
                                                                                                      : 0);
    proposeColumns();
}

void PreviewPage::setSheets(const QStringList& sheets, const QString& read) {
    m_sheet->clear();
    m_sheet->addItems(sheets);
    m_sheet->setCurrentText(read);
    m_sheet->setVisible(sheets.size() > 1);
    fitToTouch(*m_sheet);
}

void PreviewPage::focusRows() {
    m_rows->setFocus();
}

/// Makes what it offers high enough for a finger, at the window's scale.
void PreviewPage::fitToTouch(QComboBox& choice) const {
    const QSize touch(0, static_cast<int>(std::lround(touchHeight * m_scale)));
    choice.setItemDelegate(new QStyledItemDelegate(&choice));  // a menu's own takes no height from its rows
    for (int item = 0; item < choice.count(); ++item)
        choice.setItemData(item, touch, Qt::SizeHintRole);
}

QComboBox* PreviewPage::makeChoice(int column) {
    auto* const choice = new QComboBox;
    choice->setObjectName(u"sutun%1"_s.arg(column));
    choice->setAccessibleName(u"%1. sütun"_s.arg(column + 1));
    QFont font = choice->font();
    constexpr int fontSize = 16;
    font.setPixelSize(std::max(11, static_cast<int>(std::lround(fontSize * m_scale))));
    choice->setFont(font);
    choice->addItem(u"(alınmaz)"_s);
    for (const Field& field : fieldsOf(kind()))
        choice->addItem(field.heading);
    fitToTouch(*choice);
    connect(choice, &QComboBox::activated, this, [this] {
        showFault();
        Q_EMIT changed();
    });
    return choice;
}

void PreviewPage::proposeColumns() {
    const int columns = m_table ? static_cast<int>(std::min(m_table->columnCount(), shownColumns)) : 0;
    const Mapping proposed = m_table ? mapByHeadings(*m_table, kind(), false) : Mapping();
    m_headingRow = std::max<qsizetype>(proposed.headingRow, 0);
    m_heading->setChecked(proposed.headingRow >= 0);
    m_choices->clear();
    m_choices->setRowCount(columns > 0 ? 1 : 0);
    m_choices->setColumnCount(columns);
    m_rows->setColumnCount(columns);
    for (int column = 0; column < columns; ++column) {
        QComboBox* const choice = makeChoice(column);
        choice->setCurrentIndex(proposed.fields[static_cast<size_t>(column)] + 1);
        m_choices->setCellWidget(0, column, choice);
    }
    setScale(m_scale);
    showRows();
}

void PreviewPage::showRows() {
    const auto rows = m_table ? static_cast<int>(std::min(m_table->rowCount(), shownRows)) : 0;
    m_rows->clearContents();
    m_rows->setRowCount(rows);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < m_rows->columnCount(); ++column) {
            auto* const item = new QTableWidgetItem(m_table->text(row, column).trimmed());
            if (m_heading->isChecked() && row <= m_headingRow) {
                item->setForeground(roleColor(ColorRole::headingInk));
                item->setBackground(roleColor(ColorRole::heading));
            }
            if (m_table->kind(row, column) == CellKind::number)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_rows->setItem(row, column, item);
        }
    }
    showFault();
}

void PreviewPage::showFault() {
    m_fault->setText(m_table ? faultOf(mapping(), kind()) : QString());
    nameColumns();
}

/// The headings are hidden, but assistive tools tell them with each cell.
void PreviewPage::nameColumns() {
    for (int column = 0; column < m_choices->columnCount(); ++column) {
        const QString number = u"%1. sütun"_s.arg(column + 1);
        const auto* const choice = qobject_cast<QComboBox*>(m_choices->cellWidget(0, column));
        m_choices->setHorizontalHeaderItem(column, new QTableWidgetItem(number));
        m_rows->setHorizontalHeaderItem(
            column,
            new QTableWidgetItem(choice && choice->currentIndex() > 0 ? choice->currentText() : number));
    }
}

Mapping PreviewPage::mapping() const {
    Mapping mapping;
    mapping.headingRow = m_heading->isChecked() ? m_headingRow : -1;
    mapping.fields.assign(m_table ? static_cast<size_t>(m_table->columnCount()) : 0, Mapping::none);
    for (int column = 0; column < m_choices->columnCount(); ++column) {
        if (const auto* choice = qobject_cast<QComboBox*>(m_choices->cellWidget(0, column)))
            mapping.fields[static_cast<size_t>(column)] = choice->currentIndex() - 1;
    }
    return mapping;
}

void PreviewPage::setScale(double scale) {
    m_scale = scale;
    const int columns = m_rows->columnCount();
    // A few columns share the width.
    const int room = static_cast<int>(m_rows->viewport()->width() / std::max(scale, 0.1));
    const int width = std::max(columnWidth, columns > 0 ? room / columns : columnWidth);
    const QList<int> widths(columns, width);
    scaleTable(*m_rows, scale, widths);
    scaleTable(*m_choices, scale, widths);
    const int touch = std::max(40, static_cast<int>(std::lround(touchHeight * scale)));
    m_choices->verticalHeader()->setDefaultSectionSize(touch);
    m_choices->setFixedHeight(touch);
    m_sheet->setFixedHeight(touch);
    fitToTouch(*m_sheet);
}

}  // namespace kovanix::aktar
