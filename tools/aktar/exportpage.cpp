#include "aktar/exportpage.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "aktar/pageparts.h"
#include "runtime/clock.h"
#include "widgets/checkbox.h"
#include "widgets/dtpicker.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 12;
constexpr int fieldHeight = 48;

constexpr int salesPlace = 2;

}  // namespace

ExportPage::ExportPage() {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(spacing);
    layout->addWidget(makeLabel(u"Ne verilsin?"_s, u"label"));
    m_kind = new Switches(u"nedisa"_s, {u"Ürünler"_s, u"Müşteriler"_s, u"Satışlar"_s});
    layout->addWidget(m_kind);

    m_range = new QWidget;
    auto* const range = new QHBoxLayout(m_range);
    range->setContentsMargins({});
    range->setSpacing(spacing);
    m_all = new CheckBox;
    m_all->setObjectName(u"hepsi"_s);
    m_all->setText(u"Bütün satışlar"_s);
    m_all->setProperty("textRole", u"choice"_s);
    m_all->setMinimumHeight(fieldHeight);
    m_from = new DTPicker;
    m_to = new DTPicker;
    m_from->setObjectName(u"ilkgun"_s);
    m_to->setObjectName(u"songun"_s);
    m_from->setAccessibleName(u"İlk gün"_s);
    m_to->setAccessibleName(u"Son gün"_s);
    for (DTPicker* picker : {m_from, m_to}) {
        picker->setFixedHeight(fieldHeight);
        picker->setProperty("textRole", u"field"_s);
    }
    m_from->setDate(Clock::now().date().addDays(1 - Clock::now().date().day()));
    range->addWidget(m_all, 2);
    range->addWidget(makeLabel(u"İlk gün"_s, u"label"));
    range->addWidget(m_from, 2);
    range->addWidget(makeLabel(u"Son gün"_s, u"label"));
    range->addWidget(m_to, 2);
    layout->addWidget(m_range);

    layout->addWidget(makeLabel(u"Nasıl bir dosya?"_s, u"label"));
    m_format = new Switches(u"bicim"_s, {u"Excel (.xlsx)"_s, u"Düz tablo (.csv)"_s});
    layout->addWidget(m_format);
    layout->addWidget(
        makeLabel(u"Excel dosyasında barkodlar yazı, fiyatlar sayıdır. Düz tablo her programda açılır; "
                  "barkodların önündeki görünmez işaret son hanelerini korur."_s,
                  u"note", ColorRole::mutedInk));
    layout->addStretch(1);
    m_result = makeLabel({}, u"notice", ColorRole::success);
    m_result->setObjectName(u"sonuc"_s);
    m_detail = makeLabel({}, u"text", ColorRole::mutedInk);
    m_detail->setObjectName(u"sonucdosyasi"_s);
    layout->addWidget(m_result);
    layout->addWidget(m_detail);
    layout->addStretch(1);

    connect(m_kind, &Switches::changed, this, [this] {
        tell({});
        showRange();
    });
    connect(m_format, &Switches::changed, this, [this] { tell({}); });
    connect(m_all, &CheckBox::toggled, this, &ExportPage::showRange);
    showRange();
}

void ExportPage::showRange() {
    // Its place stays, so that nothing below it moves.
    const bool sales = m_kind->chosen() == salesPlace;
    for (QWidget* part : m_range->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        part->setEnabled(sales);
    m_from->setEnabled(sales && !m_all->isChecked());
    m_to->setEnabled(sales && !m_all->isChecked());
}

ExportOrder ExportPage::order() const {
    ExportOrder order;
    order.kind = m_kind->chosen() == 0   ? Kind::products
                 : m_kind->chosen() == 1 ? Kind::customers
                                         : Kind::sales;
    if (order.kind == Kind::sales && !m_all->isChecked()) {
        order.from = m_from->date();
        order.to = m_to->date();
    }
    return order;
}

QString ExportPage::ending() const {
    return m_format->chosen() == 0 ? u"xlsx"_s : u"csv"_s;
}

QString ExportPage::usualName() const {
    const QStringList names{u"urunler"_s, u"musteriler"_s, u"satislar"_s};
    return names[m_kind->chosen()] + u'.' + ending();
}

void ExportPage::tell(const QString& words, const QString& detail) {
    m_result->setText(words);
    m_detail->setText(detail);
}

}  // namespace kovanix::aktar
