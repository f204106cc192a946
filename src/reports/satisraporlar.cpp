#include "reports/satisraporlar.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QKeyEvent>
#include <QScopeGuard>

#include "app/modTurkce.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/folders.h"
#include "desktop/messagebox.h"
#include "desktop/shell.h"
#include "desktop/waitcursor.h"
#include "printing/printer.h"
#include "reports/rangewords.h"
#include "runtime/attempt.h"
#include "runtime/clock.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "screens/printpreview.h"
#include "values/dates.h"
#include "values/numbers.h"
#include "widgets/controlcolor.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// The cells of the two panels, by their index in Label1.
constexpr int firstHour = 0;
constexpr int hours = 24;
constexpr int closesHours = 27;
constexpr int closesMinutes = 50;
constexpr int firstMinute = 51;
constexpr int minutes = 60;

constexpr QStringView newestFirst = u"tarih DESC ";

constexpr int quantityColumn = 5;
constexpr int turnoverColumn = 6;
constexpr int profitColumn = 7;

const QString& money() {
    static const QString pattern = u"#,##0.00 TL."_s;
    return pattern;
}

const ListTraits& traits() {
    static const ListTraits sales{
        .source = u"satislar"_s,
        .columns = {{u"NO"_s, u"no"_s, {}, 106},
                    {u"TAR!H! ve SAAT"_s, u"tarih"_s, {}, 156},
                    {u"BARKOD"_s, u"barkod"_s, {}, 130},
                    {u"~R~N ADI"_s, u"urun"_s, {}, 146},
                    {u"F!YAT"_s, u"fiyat"_s, money(), 110},
                    {u"M!KTAR"_s, u"adet"_s, {}, 88},
                    {u"TOPLAM"_s, u"toplam"_s, money(), 110},
                    {u"KAZAN!"_s, u"kar"_s, money(), 90}},
        .selection = 0,  // a deletion reads the grid itself
        .filter = {.numericFields = {u"fiyat"_s, u"adet"_s, u"toplam"_s, u"kar"_s},
                   .blankedField = u"urun"_s},
        .scanField = u"barkod"_s,
        .nameField = u"urun"_s,
        .unit = u"satış"_s,
        .icon = u":/icons/reports.svg"_s,
        .noneYet = u"Bu aralıkta satış yok"_s,
        .noneYetHint = u"Başka bir gün ya da saat seçin"_s,
    };
    return sales;
}

QString cellName(int index) {
    return u"Label1_"_s + QString::number(index);
}

/// The moment of a literal as sqltarihsaat writes it; an invalid one for what is no time.
QDateTime momentOf(const QString& literal) {
    const QDate day = QDate::fromString(literal.section(u' ', 0, 0), u"#M/d/yyyy"_s);
    const QTime time = QTime::fromString(literal.section(u' ', 1), u"HH:mm:ss#"_s);
    // Of no zone: an hour that the clock skips in spring can be asked for, too.
    return time.isValid() ? QDateTime(day, time, Qt::UTC) : QDateTime();
}

}  // namespace

satisraporlar::satisraporlar() : ListScreen(traits()) {
    ui.setupUi(this);
    // Painted ahead of the red words, no control.
    auto* square = new vkFrame;
    for (const auto set : {&vkFrame::setBackcolor1, &vkFrame::setBackcolor2, &vkFrame::setBordercolor})
        (square->*set)(roleColor(ColorRole::filterStrip));
    square->setCornerRadius(3);
    square->setFixedSize(14, 14);
    ui.kirmiziLayout->insertWidget(0, square);
    setForeColor(*ui.hhhhh, roleColor(ColorRole::redWords));
    addCells(*ui.Picture1,
             {.columns = 6, .width = 80, .first = firstHour, .count = hours, .closes = closesHours});
    addCells(*ui.Picture2,
             {.columns = 10, .width = 54, .first = firstMinute, .count = minutes, .closes = closesMinutes});
    applyTextRoles(*this);
    setUpList({.grid = ui.TDBGrid1, .data = ui.Adodc1, .resizing = ui.boyutlandirma, .frame = ui.Label10});
    ui.TDBGrid1->setFooterTotal(turnoverColumn);
    ui.TDBGrid1->setFooterNote(u"seçilen aralığın tümü"_s);
    // No longer than what can be meant: a scan fits into none of them.
    for (QLineEdit* time : {ui.saat1, ui.saat2})
        time->setMaxLength(12);
    for (QLineEdit* part : {ui.saat, ui.Text2, ui.Text3, ui.Text6, ui.Text5, ui.Text4})
        part->setMaxLength(2);
    connectControls();
    setCloseButton(*ui.vkCommand4);
}

satisraporlar::~satisraporlar() = default;

/// Fills a panel with its cells of Label1, whose captions count from 0, and with the one that closes it.
void satisraporlar::addCells(vkFrame& panel, const Cells& cells) {
    auto* places = new QGridLayout(&panel);
    constexpr int margin = 10;
    constexpr int gap = 6;
    places->setContentsMargins(margin, margin, margin, margin);
    places->setSpacing(gap);
    auto* walk = new QButtonGroup(&panel);  // its arrow keys go from cell to cell
    walk->setExclusive(false);
    const auto add = [&](int index, const QString& caption, const QString& textRole, FaceRole look) {
        constexpr int height = 48;
        auto* cell = new vkCommand(&panel);
        cell->setObjectName(cellName(index));
        cell->setCaption(caption);
        cell->setProperty("textRole", textRole);
        cell->setLook(look);
        cell->setMinimumSize(cells.width, height);
        cell->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
        connect(cell, &QAbstractButton::clicked, this,
                [this, index, cell] { Label1_click(index, cell->caption()); });
        walk->addButton(cell);
        return cell;
    };
    for (int i = 0; i < cells.count; ++i)
        places->addWidget(add(cells.first + i, QString::number(i), u"wide"_s, FaceRole::light),
                          i / cells.columns, i % cells.columns);
    DrawnButton* close = add(cells.closes, u"KAPAT"_s, u"choice"_s, FaceRole::slate);
    close->setIconFile(u":/icons/x.svg"_s);
    close->setIconSize({22, 22});
    close->setIconPlace(DrawnButton::IconPlace::beside);
    places->addWidget(close, cells.count / cells.columns, 0, 1, cells.columns);
}

void satisraporlar::connectControls() {
    connect(&acilis, &Timer::tick, this, &satisraporlar::acilis_tick);
    for (DTPicker* picker : {ui.ilktarih1, ui.ilktarih2})
        connect(picker, &DTPicker::closeUp, this, &satisraporlar::showRange);
    connect(ui.boyutlandirma, &ActiveResize::resized, this, [this] {
        for (vkFrame* panel : {ui.Picture1, ui.Picture2})
            placePanel(*panel);
    });
    clicks(this, {{ui.bugunkusatis, &satisraporlar::bugunkusatis_click},
                  {ui.dunkusatis, &satisraporlar::dunkusatis_click},
                  {ui.haftaliksatis, &satisraporlar::haftaliksatis_click},
                  {ui.ayliksatis, &satisraporlar::ayliksatis_click},
                  {ui.tarihlerarasi, &satisraporlar::tarihlerarasi_click},
                  {ui.Button_XP12, &satisraporlar::Button_XP12_click},
                  {ui.Button_XP14, &satisraporlar::Button_XP14_click},
                  {ui.Button_XP15, &satisraporlar::Button_XP15_click},
                  {ui.vkToggleButton1, &satisraporlar::vkToggleButton1_click},
                  {ui.urunsil, &satisraporlar::urunsil_click},
                  {ui.excelekaydet, &satisraporlar::excelekaydet_click},
                  {ui.vkCommand1, &satisraporlar::vkCommand1_click},
                  {ui.htmlkaydet, &satisraporlar::htmlkaydet_click},
                  {ui.yazdir, &satisraporlar::yazdir_click},
                  {ui.vkCommand4, &satisraporlar::vkCommand4_click}});
}

void satisraporlar::form_load() {
    ekrandonat(*this);
    attempt([this] { storeWidths(); });
    ui.saat1->setText(u"00:00:00"_s);
    ui.saat2->setText(u"23:59:59"_s);
    ui.Picture1->hide();
    ui.Picture2->hide();
    const QDate today = Clock::now().date();
    ui.ilktarih1->setDate(today);
    ui.ilktarih2->setDate(today);
    if (girisyetki == 0)
        ui.urunsil->setEnabled(false);
    satisgetir();
    acilis.setInterval(1000);
}

void satisraporlar::acilis_tick() {
    // Who is typing or choosing a day or a time already goes on.
    const bool typing = qobject_cast<QLineEdit*>(focusWidget()) || qobject_cast<DTPicker*>(focusWidget());
    const bool choosing = ui.ilktarih1->isDropped() || ui.ilktarih2->isDropped() ||
                          ui.Picture1->isVisible() || ui.Picture2->isVisible();
    satisgetir(!typing && !choosing);
    acilis.setInterval(0);
}

// --- the range

void satisraporlar::bugunkusatis_click() {
    preset(0, 0);
}

void satisraporlar::dunkusatis_click() {
    preset(1, 0);
}

void satisraporlar::haftaliksatis_click() {
    preset(7, 7);
}

void satisraporlar::ayliksatis_click() {
    preset(30, 30);
}

/// @param daysBack  when the range begins, in days before today
/// @param daysLong  how many days after that it ends
void satisraporlar::preset(int daysBack, int daysLong) {
    const QDate begin = Clock::now().date().addDays(-daysBack);
    ui.ilktarih1->setDate(begin);
    ui.ilktarih2->setDate(begin.addDays(daysLong));
    for (QLineEdit* part : {ui.saat, ui.Text2, ui.Text3})
        part->setText(u"00"_s);
    ui.Text6->setText(u"23"_s);
    for (QLineEdit* part : {ui.Text5, ui.Text4})
        part->setText(u"59"_s);
    joinTimes();
    showRange();
    ui.satislarim->setFocus();
}

void satisraporlar::joinTimes() {
    const auto joined = [](const QLineEdit* hour, const QLineEdit* minute,
                           const QLineEdit* second) -> QString {
        return hour->text() + u':' + minute->text() + u':' + second->text();
    };
    ui.saat1->setText(joined(ui.saat, ui.Text2, ui.Text3));
    ui.saat2->setText(joined(ui.Text6, ui.Text5, ui.Text4));
}

void satisraporlar::tarihlerarasi_click() {
    const bool shown = ui.satislarim->isVisible();
    ui.satislarim->setVisible(!shown);
    if (!shown)
        ui.bugunkusatis->setFocus();
}

void satisraporlar::Button_XP12_click() {
    openPanel(*ui.Picture1, u"1"_s);
}

void satisraporlar::Button_XP14_click() {
    openPanel(*ui.Picture1, u"2"_s);
}

void satisraporlar::Button_XP15_click() {
    openPanel(*ui.Picture2, u"1"_s);
}

void satisraporlar::vkToggleButton1_click() {
    openPanel(*ui.Picture2, u"2"_s);
}

/// @param end  "1" for the start time, "2" for the end time
void satisraporlar::openPanel(vkFrame& panel, const QString& end) {
    ui.sec1->setText(end);
    const bool start = end == u"1";
    const bool setsHours = &panel == ui.Picture1;
    panel.setTitleNote(start ? u"başlangıç saati"_s : u"bitiş saati"_s);
    (setsHours ? ui.Picture2 : ui.Picture1)->hide();  // one at a time, both stand in the same place
    panel.show();
    panel.raise();
    placePanel(panel);
    const QLineEdit* part = setsHours ? (start ? ui.saat : ui.Text6) : (start ? ui.Text2 : ui.Text5);
    const int index = (setsHours ? firstHour : firstMinute) + part->text().toInt();
    auto* current = panel.findChild<vkCommand*>(cellName(index));
    const QList<vkCommand*> cells = panel.findChildren<vkCommand*>();
    for (vkCommand* cell : cells) {
        if (cell->look() != FaceRole::slate)
            cell->setLook(cell == current ? FaceRole::accent : FaceRole::light);
    }
    (current ? current : cells.front())->setFocus();
}

/// Over the list, from the card's lower edge to the footers, or as far above the edge as the cells need.
void satisraporlar::placePanel(vkFrame& panel) {
    if (!panel.isVisible())
        return;
    panel.layout()->invalidate();
    const QSize size = panel.layout()->totalMinimumSize();
    const QWidget& page = *ui.boyutlandirma;
    const QPoint card = ui.tarihKarti->mapTo(&page, QPoint(0, ui.tarihKarti->height() - 2));
    const int left = ui.saat1->mapTo(&page, QPoint(0, 0)).x();
    const int footers = ui.TDBGrid1->mapTo(&page, QPoint(0, ui.TDBGrid1->footerTop())).y();
    panel.setGeometry(QRect(QPoint(left, std::min(card.y(), footers - size.height())), size));
}

void satisraporlar::Label1_click(int index, const QString& caption) {
    if (index == closesHours) {
        ui.Picture1->hide();
    } else if (index == closesMinutes) {
        ui.Picture2->hide();
    } else {
        const int number = caption.toInt();
        const QString text = number >= 0 && number < 10 ? u'0' + caption : caption;
        const bool minute = index >= closesMinutes;
        if (ui.sec1->text() == u"1")
            (minute ? ui.Text2 : ui.saat)->setText(text);
        else
            (minute ? ui.Text5 : ui.Text6)->setText(text);
        (minute ? ui.Picture2 : ui.Picture1)->hide();
    }
    joinTimes();
    showRange();
}

// --- the report

/// Shows a range that was just chosen, from its newest line on.
void satisraporlar::showRange() {
    satisgetir();
    if (data().recordset().recordCount() > 0)
        data().setCurrent(0);
}

void satisraporlar::satisgetir(bool takesFocus) {
    if (!baglantihazir()) {  // which has said so
        ListScreen::tellEmpty(false);
        return;
    }
    const QString start = sqltarihsaat(ui.ilktarih1->date(), ui.saat1->text());
    const QString end = sqltarihsaat(ui.ilktarih2->date(), ui.saat2->text());
    const QString range = start + u" and " + end;
    attempt([&] { connectData(u"satislar where tarih between "_s + range); });
    setOrder(newestFirst.toString());
    // A range that can't be read leaves rows, sums and words as they are: they belong together.
    if (!showRows()) {
        // Lost with the connection, a range has neither sales nor none.
        if (!baglanti().isOpen())
            ListScreen::tellEmpty(false);
    } else if (showSums(range)) {
        ui.Label10->setTitleNote(rangeWords(momentOf(start), momentOf(end)));
    }
    // A filter cell that is being typed in is a part of the list.
    if (takesFocus && !ui.TDBGrid1->isAncestorOf(focusWidget()))
        ui.TDBGrid1->setFocus();
}

void satisraporlar::tellEmpty(bool readable) {
    if (readable || !m_wasRead)
        ListScreen::tellEmpty(readable);
    m_wasRead = m_wasRead || readable;
}

/// @return whether the footers are those of the range; where a server has failed, they are empty then
bool satisraporlar::showSums(const QString& range) {
    const ReadEnd end = readToEnd([&] {
        const WaitCursor reading;
        const ChangeMark mark = baglanti().changeMark();
        if (range == m_sums.range && mark == m_sums.mark)
            return;
        Recordset sums;
        sums.open(
            u"select sum(adet) as adet, sum(toplam) as toplam  , sum(kar) as kar  from satislar where "
            u"tarih between "_s +
                range,
            baglanti());
        const QVariant quantity = sums.field(u"adet"_s);
        const bool none = quantity.isNull();
        const auto amount = [&](const QString& field) {
            return none ? u"0,00 TL."_s : format(sayicevir(sums.field(field)), money());
        };
        m_sums = {range, mark, (none ? u"0"_s : nullmetin(quantity)) + u" Adet", amount(u"toplam"_s),
                  amount(u"kar"_s)};
    });
    if (end == ReadEnd::part)
        return false;
    if (end == ReadEnd::nothing)
        m_sums = {};
    TDBGrid& list = grid();
    list.column(3).setFooterText(metin(u"SATIS_TOPLAMI_FOOTER"_s));
    list.column(quantityColumn).setFooterText(m_sums.quantity);
    list.column(turnoverColumn).setFooterText(m_sums.turnover);
    list.column(profitColumn).setFooterText(m_sums.profit);
    return true;
}

/// Deletes the current line, pressed or not. The goods stay deducted.
void satisraporlar::urunsil_click() {
    const QString number = grid().column(0).value();
    if (number.isEmpty()) {
        uyarimesaj(u"MSG_SATIS_SIL_SEC"_s, MessageBoxStyle::ok);
        giveFocus(grid());
        return;
    }
    showCurrentRow();
    const int style = MessageBoxStyle::yesNo | MessageBoxStyle::warning;
    const int answer = mesajsor(u"MSG_SIL_ONAY"_s, style, metin(u"MSG_SILME_ONAY_BASLIK"_s));
    giveFocus(grid());  // the Enter of the next scan must not press the button again
    if (answer != MessageBoxAnswer::yes)
        return;
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    attempt([&] { deleteSale(number); });
    uyarimesaj(u"MSG_SILINDI"_s, MessageBoxStyle::ok);  // whatever became of it, as required
    // The list stays where it was, unless its order goes: the same place then holds any line.
    const bool staysInOrder = data().recordset().sort().trimmed() == newestFirst.trimmed();
    const qsizetype place = staysInOrder ? data().recordset().current() : 0;
    satisgetir();
    if (const qsizetype rows = data().recordset().recordCount(); rows > 0 && place >= 0)
        data().setCurrent(std::min(place, rows - 1));
    giveFocus(grid());
}

/// @throws RuntimeError where there is no such line, too
void satisraporlar::deleteSale(const QString& number) {
    Recordset lines;
    lines.open(u" select * from satislar"_s, baglanti());
    lines.setFilter(u"no = '"_s + number + u'\'');
    storeTogether([&] {
        lines.deleteCurrent();
        lines.update();
    });
    lines.close();
}

// --- files and paper

/// A path that can't be written to gives no error, as required: the notice comes all the same.
void satisraporlar::exportTo(const QString& path) {
    attempt([&] { grid().exportToFile(path, false); });
    uyarimesaj(u"MSG_SATIS_EXPORT"_s, MessageBoxStyle::ok);
    giveFocus(grid());
}

void satisraporlar::excelekaydet_click() {
    exportTo(drivePath(u"c:\\satis raporu.xls"_s));
}

void satisraporlar::vkCommand1_click() {
    exportTo(joinStored(applicationFolder(), u"\\SITE.doc"_s));
}

void satisraporlar::htmlkaydet_click() {
    const QString path = joinStored(applicationFolder(), u"\\satis raporu.html"_s);
    if (!attempt([&] { grid().exportToFile(path, false, u"100%"_s); }))
        openDocument(path);
    giveFocus(grid());
}

void satisraporlar::yazdir_click() {
    setCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard([this] { unsetCursor(); });
    // Half an inch of a printer with 600 dots to the inch, in twips.
    constexpr double dots = 0.5 * 600;
    const double across = Printer::twipsPerPixelX() * dots;
    const double down = Printer::twipsPerPixelY() * dots;
    const QString letters = u"Times New Roman"_s;
    PrintInfo& page = grid().printInfo();
    page.pageHeaderFont = {.name = letters, .size = 14, .bold = true, .italic = true};
    page.pageHeader = u"Rapor"_s + longDateText(Clock::now().date());
    page.pageFooterFont.name = letters;
    page.pageFooterFont.italic = true;
    page.pageFooter = u"ACME International Co.\\t\\tPage \\p of \\P"_s;
    page.repeatColumnHeaders = true;
    page.margins = {across, down, across, down};
    page.previewCaption = u"Rapor"_s;
    giveFocus(grid());  // a scan that comes when the preview is closed must not open it again
    attempt([this] { printPreview(grid(), *this); });
}

void satisraporlar::vkCommand4_click() {
    leave();
}

void satisraporlar::keyPressEvent(QKeyEvent* event) {
    for (const auto& [panel, closing] :
         {std::pair(ui.Picture1, closesHours), std::pair(ui.Picture2, closesMinutes)}) {
        if (event->key() == Qt::Key_Escape && panel->isVisible()) {
            panel->findChild<QAbstractButton*>(cellName(closing))->click();
            return;
        }
    }
    ListScreen::keyPressEvent(event);
}

}  // namespace kovanix
