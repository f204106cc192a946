#include "aktar/resultpage.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "aktar/pageparts.h"
#include "values/numbers.h"
#include "widgets/drawnframe.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 8;
constexpr int margin = 12;

}  // namespace

void NoteModel::setNotes(std::vector<LineNote> notes) {
    beginResetModel();
    m_notes = std::move(notes);
    endResetModel();
}

int NoteModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_notes.size());
}

int NoteModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 3;
}

QVariant NoteModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) ||
        (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const LineNote& note = m_notes[static_cast<size_t>(index.row())];
    if (index.column() == 0)
        return note.line;
    return index.column() == 1 ? note.key : note.words;
}

QVariant NoteModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const std::array headings{u"Satır"_s, u"Barkod / ad"_s, u"Neden"_s};
    return headings[static_cast<size_t>(section)];
}

ResultPage::ResultPage() : m_notes(new NoteModel(this)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(spacing);
    auto* const figures = new QHBoxLayout;
    figures->setSpacing(spacing);
    const std::array captions{u"yeni"_s, u"değişen"_s, u"aynı"_s, u"reddedilen"_s};
    const std::array inks{ColorRole::success, ColorRole::footerTotal, ColorRole::mutedInk, ColorRole::danger};
    for (size_t place = 0; place < captions.size(); ++place) {
        auto* const card = new vkFrame;
        card->setLook(FrameRole::card);
        auto* const inner = new QVBoxLayout(card);
        inner->setContentsMargins(margin, margin, margin, margin);
        inner->setSpacing(0);
        m_figures[place] = makeLabel(u"0"_s, u"turnover", inks[place]);
        m_figures[place]->setObjectName(captions[place]);
        m_figures[place]->setAlignment(Qt::AlignHCenter);
        QLabel* const caption = makeLabel(captions[place], u"label", ColorRole::mutedInk);
        caption->setAlignment(Qt::AlignHCenter);
        inner->addWidget(m_figures[place]);
        inner->addWidget(caption);
        figures->addWidget(card, 1);
    }
    layout->addLayout(figures);
    m_words = makeLabel({}, u"section");
    m_words->setObjectName(u"ozet"_s);
    layout->addWidget(m_words);
    m_table = new QTableView;
    m_table->setObjectName(u"reddedilenler"_s);
    m_table->setAccessibleName(u"Reddedilen, düzeltilen ve kısaltılan satırlar"_s);
    m_table->setModel(m_notes);
    dressTable(*m_table);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    layout->addWidget(m_table, 1);
}

void ResultPage::setPlan(const ImportPlan& plan) {
    const std::array counts{static_cast<qsizetype>(plan.added.size()),
                            static_cast<qsizetype>(plan.changed.size()), plan.unchanged,
                            static_cast<qsizetype>(plan.refused.size())};
    for (size_t place = 0; place < counts.size(); ++place)
        m_figures[place]->setText(format(static_cast<double>(counts[place]), u"#,##0"));
    std::vector<LineNote> notes = plan.refused;
    notes.insert(notes.end(), plan.settled.begin(), plan.settled.end());
    notes.insert(notes.end(), plan.cut.begin(), plan.cut.end());
    m_anyToWrite = counts[0] + counts[1] > 0;
    QString words = m_anyToWrite ? u"Henüz hiçbir şey yazılmadı."_s : u"Yazılacak bir şey yok."_s;
    if (counts[3] > 0)
        words += u" Reddedilen satırlar yazılmaz; öbürleri ya hep ya hiç yazılır."_s;
    if (!plan.settled.empty())
        words += u" %1 barkod düzeltildi."_s.arg(format(static_cast<double>(plan.settled.size()), u"#,##0"));
    m_words->setText(words);
    m_notes->setNotes(std::move(notes));
    m_table->setVisible(m_notes->rowCount() > 0);
}

void ResultPage::setDone() {
    m_words->setText(m_anyToWrite ? u"Aktarıldı."_s : u"Yazılacak bir şey yoktu."_s);
}

void ResultPage::setScale(double scale) {
    constexpr int lineWidth = 80;
    constexpr int keyWidth = 200;
    scaleTable(*m_table, scale, {lineWidth, keyWidth});
}

}  // namespace kovanix::aktar
