#include "aktar/pageparts.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPalette>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <cmath>

#include "kit/listlook.h"
#include "widgets/controlcolor.h"
#include "widgets/gridcell.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int switchHeight = 48;
constexpr int rowHeight = 44;
constexpr int smallestRow = 40;
constexpr int spacing = 8;

}  // namespace

QLabel* makeLabel(const QString& text, const char16_t* textRole, ColorRole ink) {
    auto* const label = new QLabel(text);
    label->setProperty("textRole", QString::fromUtf16(textRole));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    setForeColor(*label, roleColor(ink));
    return label;
}

Switches::Switches(const QString& name, const QStringList& captions) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(spacing);
    for (const QString& caption : captions) {
        auto* const button = new vkToggleButton;
        const auto place = static_cast<int>(m_buttons.size());
        button->setObjectName(name + QString::number(place));
        button->setCheckable(true);
        button->setLook(FaceRole::toggle);
        button->setCaption(caption);
        button->setProperty("textRole", u"choice"_s);
        button->setFixedHeight(switchHeight);
        connect(button, &DrawnButton::clicked, this, [this, place] {
            const bool other = place != m_chosen;
            choose(place);
            if (other)
                Q_EMIT changed(place);
        });
        layout->addWidget(button, 1);
        m_buttons.append(button);
    }
    choose(0);
}

void Switches::choose(int place) {
    m_chosen = place;
    for (int button = 0; button < m_buttons.size(); ++button)
        m_buttons[button]->setChecked(button == place);
}

void dressTable(QTableView& table) {
    QPalette colors = table.palette();
    colors.setColor(QPalette::Base, roleColor(ColorRole::card));
    colors.setColor(QPalette::AlternateBase, roleColor(ColorRole::zebra));
    colors.setColor(QPalette::Text, roleColor(ColorRole::ink));
    colors.setColor(QPalette::Highlight, roleColor(ColorRole::selection));
    colors.setColor(QPalette::HighlightedText, roleColor(ColorRole::ink));
    table.setPalette(colors);
    table.setAlternatingRowColors(true);
    table.setShowGrid(false);
    table.setTabKeyNavigation(false);  // Tab goes on to the next control
    table.setWordWrap(true);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setSelectionMode(QAbstractItemView::SingleSelection);
    table.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.setProperty("textRole", u"text"_s);
}

void scaleTable(QTableView& table, double scale, const QList<int>& widths) {
    const int row = std::max(smallestRow, static_cast<int>(std::lround(rowHeight * scale)));
    table.verticalHeader()->setDefaultSectionSize(row);
    dressHeading(*table.horizontalHeader(), scale, row);
    for (QScrollBar* bar : {table.verticalScrollBar(), table.horizontalScrollBar()})
        bar->setStyleSheet(scrollBarStyle(scale));
    for (int column = 0; column < widths.size(); ++column)
        table.setColumnWidth(column, static_cast<int>(std::lround(widths[column] * scale)));
}

}  // namespace kovanix::aktar
