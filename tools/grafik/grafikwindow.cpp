#include "grafik/grafikwindow.h"

#include <QButtonGroup>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>
#include <utility>

#include "desktop/folders.h"
#include "desktop/messagebox.h"
#include "grafik/chartview.h"
#include "grafik/figuresheet.h"
#include "grafik/figureview.h"
#include "runtime/clock.h"
#include "runtime/runtimeerror.h"
#include "screens/boxes.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/dtpicker.h"
#include "widgets/emptyplace.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize designSize(1024, 768);
constexpr int touchHeight = 62;  // 44 on a display of 800×600, less a title bar and a panel
constexpr int spacing = 8;

QHBoxLayout* addRow(QBoxLayout& outer) {
    auto* row = new QHBoxLayout;
    row->setSpacing(spacing);
    outer.addLayout(row);
    return row;
}

DrawnButton* makeToggle(const QString& name, const QString& caption) {
    auto* button = new vkToggleButton;
    button->setObjectName(name);
    button->setCaption(caption);
    button->setCheckable(true);
    button->setLook(FaceRole::toggle);
    button->setProperty("textRole", u"choice"_s);
    button->setCaptionLines(1);
    button->setFixedHeight(touchHeight);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return button;
}

QLabel* makeLabel(const QString& text, const QString& role) {
    auto* label = new QLabel(text);
    label->setProperty("textRole", role);
    return label;
}

QString fileWord(Division division) {
    switch (division) {
        case Division::hour:
            return u"saat"_s;
        case Division::product:
            return u"urun"_s;
        default:
            return u"gun"_s;
    }
}

}  // namespace

GrafikWindow::GrafikWindow() : ToolWindow(u"Satış grafiği"_s, u":/icons/reports.svg"_s, designSize) {
    content().setSpacing(spacing);
    QHBoxLayout* const upper = addRow(content());
    addDivisions(*upper);
    addPickers(*upper);
    addPresets(*addRow(content()));
    addFigures();
    addTotals();
    addCommands();
    finishLayout();
    setWindowState(windowState() | Qt::WindowMaximized);
    m_presets.first()->click();
}

GrafikWindow::~GrafikWindow() = default;

void GrafikWindow::addDivisions(QLayout& row) {
    auto* group = new QButtonGroup(this);
    for (const auto& [name, caption, division] : {std::tuple(u"gun"_s, u"Gün gün"_s, Division::day),
                                                  {u"saat"_s, u"Saat saat"_s, Division::hour},
                                                  {u"urun"_s, u"Ürün ürün"_s, Division::product}}) {
        DrawnButton* button = makeToggle(name, caption);
        button->setChecked(division == m_division);
        group->addButton(button);
        row.addWidget(button);
        connect(button, &DrawnButton::clicked, this, [this, division] {
            m_division = division;
            showDivision();
        });
    }
}

void GrafikWindow::addPickers(QLayout& row) {
    for (const auto& [picker, name, told] :
         {std::tuple(&m_first, u"ilk"_s, u"İlk gün"_s), {&m_last, u"son"_s, u"Son gün"_s}}) {
        constexpr int width = 216;
        *picker = new DTPicker;
        (*picker)->setObjectName(name);
        (*picker)->setAccessibleName(told);
        (*picker)->setProperty("textRole", u"field"_s);
        (*picker)->setFixedSize(width, touchHeight);
        row.addWidget(*picker);
        connect(*picker, &DTPicker::change, this, &GrafikWindow::readPicked);
    }
}

void GrafikWindow::addPresets(QLayout& row) {
    const auto add = [&](const QString& name, const QString& caption, auto range) {
        DrawnButton* button = makeToggle(name, caption);
        row.addWidget(button);
        m_presets << button;
        connect(button, &DrawnButton::clicked, this,
                [this, button, range] { choosePreset(*button, range()); });
    };
    for (const auto& [name, caption, preset] : {std::tuple(u"bugun"_s, u"Bugün"_s, Preset::today),
                                                {u"dun"_s, u"Dün"_s, Preset::yesterday},
                                                {u"gun8"_s, u"8 gün"_s, Preset::eightDays},
                                                {u"gun31"_s, u"31 gün"_s, Preset::thirtyOneDays},
                                                {u"ay"_s, u"Bu ay"_s, Preset::thisMonth},
                                                {u"yil"_s, u"Bu yıl"_s, Preset::thisYear}})
        add(name, caption, [preset = preset] { return presetRange(preset, Clock::now().date()); });
    add(u"tumu"_s, u"Tümü"_s, [] { return anyDay(); });
}

void GrafikWindow::addFigures() {
    QHBoxLayout* const row = addRow(content());
    content().setStretchFactor(row, 1);
    const auto addCard = [row](QWidget& inner, int share) {
        constexpr int margin = 10;
        auto* card = new vkFrame;
        card->setLook(FrameRole::card);
        auto* layout = new QHBoxLayout(card);
        layout->setContentsMargins(margin, margin, margin, margin);
        layout->addWidget(&inner);
        row->addWidget(card, share);
    };
    m_places = new QStackedWidget;
    m_chart = new ChartView;
    m_chart->setObjectName(u"grafik"_s);
    m_chart->setProperty("textRole", u"heading"_s);
    m_places->addWidget(m_chart);
    auto* none = new EmptyPlace;
    none->setPicture(u":/icons/reports.svg"_s);
    none->setText(u"Bu aralıkta satış yok"_s);
    m_places->addWidget(none);
    constexpr int chartShare = 11;
    constexpr int tableShare = 9;
    addCard(*m_places, chartShare);
    m_figures = new FigureView;
    m_figures->setObjectName(u"rakamlar"_s);
    m_figures->setProperty("textRole", u"small"_s);
    addCard(*m_figures, tableShare);
    connect(m_chart, &ChartView::rowChosen, m_figures, &FigureView::choose);
    connect(m_figures, &FigureView::rowChosen, m_chart, &ChartView::choose);
}

void GrafikWindow::addTotals() {
    auto* band = new vkFrame;
    band->setLook(FrameRole::card);
    auto* row = new QHBoxLayout(band);
    constexpr int margin = 16;
    constexpr int above = 6;
    row->setContentsMargins(margin, above, margin, above);
    row->setSpacing(margin);
    row->addWidget(makeLabel(u"SATIŞ TOPLAMI"_s, u"section"_s), 1);
    for (const auto& [label, name, told, role] :
         {std::tuple(&m_quantity, u"miktar"_s, u"Miktar"_s, u"moment"_s),
          {&m_turnover, u"tutar"_s, u"Tutar"_s, u"footer"_s},
          {&m_profit, u"kazanc"_s, u"Kazanç"_s, u"moment"_s}}) {
        row->addWidget(makeLabel(told, u"label"_s));
        *label = makeLabel({}, role);
        (*label)->setObjectName(name);
        (*label)->setAccessibleName(told);
        row->addWidget(*label);
    }
    QPalette palette = m_turnover->palette();
    palette.setColor(QPalette::WindowText, roleColor(ColorRole::footerTotal));
    m_turnover->setPalette(palette);
    content().addWidget(band);
}

void GrafikWindow::addCommands() {
    addButton(u"yazdir"_s, u"Yazdır"_s, u":/icons/print.svg"_s, FaceRole::navy, [this] { print(); });
    addButton(u"resim"_s, u"Resim kaydet"_s, u":/icons/save.svg"_s, FaceRole::navy, [this] { saveImage(); });
    addButton(u"kopyala"_s, u"Tabloyu kopyala"_s, u":/icons/page.svg"_s, FaceRole::navy, [this] { copy(); });
}

void GrafikWindow::choosePreset(DrawnButton& button, const DayRange& range) {
    for (DrawnButton* preset : std::as_const(m_presets))
        preset->setChecked(preset == &button);
    read(range);
}

void GrafikWindow::readPicked() {
    for (DrawnButton* preset : std::as_const(m_presets))
        preset->setChecked(false);
    read({m_first->date(), m_last->date()});
}

void GrafikWindow::read(const DayRange& range) {
    if (isWorking()) {
        m_next = range;  // the last one that was pressed is shown
        return;
    }
    const auto picture = std::make_shared<SalesPicture>();
    work([picture, range](WorkProgress& progress) { *picture = readShop(range, progress); },
         [this, picture] { showPicture(std::move(*picture)); });
}

void GrafikWindow::workEnded() {
    m_next.reset();
}

void GrafikWindow::showPicture(SalesPicture picture) {
    m_picture = std::move(picture);
    if (m_picture.range.first.isValid() && m_picture.range.last.isValid() && !m_next) {
        m_first->setDate(m_picture.range.first);
        m_last->setDate(m_picture.range.last);
    }
    setNote(rangeText(m_picture.range));
    m_quantity->setText(quantityText(m_picture.total.quantity));
    m_turnover->setText(moneyText(m_picture.total.turnover) + u" TL");
    m_profit->setText(moneyText(m_picture.total.profit) + u" TL");
    showDivision();
    if (m_next)
        read(*std::exchange(m_next, std::nullopt));
}

void GrafikWindow::showDivision() {
    const FigureTable table = drawnTable(m_picture, m_division);
    m_chart->setTable(table);
    m_figures->setTable(table);
    m_places->setCurrentIndex(m_picture.total.lines > 0 ? 0 : 1);
}

void GrafikWindow::print() {
    try {
        printSheet(m_picture, m_division);
        messageBox(u"Yazıcıya gönderildi."_s, MessageBoxStyle::information, windowTitle());
    } catch (const RuntimeError& error) {
        tellPrinterFailure(error);
    }
}

void GrafikWindow::saveImage() {
    const auto day = [](QDate date) { return date.toString(u"yyyy-MM-dd"_s); };
    // An empty shop has no days.
    const QString name =
        u"grafik %1 %2 %3"_s.arg(fileWord(m_division), day(m_picture.range.first), day(m_picture.range.last))
            .simplified();
    const QString path = drivePath(u"C:\\kovanix\\"_s + name + u".png");
    QDir().mkpath(QFileInfo(path).path());
    try {
        writeImage(m_picture, m_division, path);
        messageBox(u"Resim kaydedildi:\n"_s + path, MessageBoxStyle::information, windowTitle());
    } catch (const RuntimeError& error) {
        messageBox(error.description(), MessageBoxStyle::critical, windowTitle());
    }
}

void GrafikWindow::copy() {
    QGuiApplication::clipboard()->setText(plainText(m_picture.table(m_division), m_picture.total));
    messageBox(u"Tablo kopyalandı. Hesap tablosuna yapıştırabilirsiniz."_s, MessageBoxStyle::information,
               windowTitle());
}

}  // namespace kovanix
