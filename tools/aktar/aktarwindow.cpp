#include "aktar/aktarwindow.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "aktar/exporter.h"
#include "aktar/exportpage.h"
#include "aktar/importer.h"
#include "aktar/pageparts.h"
#include "aktar/previewpage.h"
#include "aktar/resultpage.h"
#include "aktar/shopstore.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "desktop/messagebox.h"
#include "kit/filedialog.h"
#include "values/numbers.h"
#include "widgets/activeresize.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize designSize(960, 700);
constexpr int spacing = 16;
constexpr int tileHeight = 220;
constexpr int tileIcon = 64;

vkCommand* makeTile(const QString& name, const QString& caption, const QString& icon, FaceRole face) {
    auto* const tile = new vkCommand;
    tile->setObjectName(name);
    tile->setCaption(caption);
    tile->setIconFile(icon);
    tile->setIconSize({tileIcon, tileIcon});
    tile->setIconPlace(DrawnButton::IconPlace::above);
    tile->setLook(face);
    tile->setProperty("textRole", u"main"_s);
    tile->setMinimumHeight(tileHeight);
    return tile;
}

}  // namespace

AktarWindow::AktarWindow()
    : ToolWindow(u"Veri aktarma"_s, u":/icons/swap.svg"_s, designSize),
      m_pages(new QStackedWidget),
      m_exportPage(new ExportPage),
      m_previewPage(new PreviewPage),
      m_resultPage(new ResultPage),
      m_folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)) {
    m_pages->addWidget(makeChoicePage());
    m_pages->addWidget(m_exportPage);
    m_pages->addWidget(m_previewPage);
    m_pages->addWidget(m_resultPage);
    content().addWidget(m_pages, 1);
    m_back = &addButton(u"geri"_s, u"Geri"_s, u":/icons/back.svg"_s, FaceRole::light, [this] { goBack(); });
    m_choose = &addButton(u"dosyasec"_s, u"Dosya seç"_s, u":/icons/table.svg"_s, FaceRole::navy, [this] {
        if (m_page == Page::exporting)
            chooseTarget();
        else
            chooseFile();
    });
    m_check = &addButton(u"denetle"_s, u"Denetle"_s, u":/icons/search.svg"_s, FaceRole::accent,
                         [this] { checkFile(); });
    m_store = &addButton(u"aktar"_s, u"Aktar"_s, u":/icons/save.svg"_s, FaceRole::store, [this] { store(); });
    connect(m_previewPage, &PreviewPage::changed, this, &AktarWindow::showButtons);
    connect(m_previewPage, &PreviewPage::sheetChosen, this, [this](const QString& sheet) {
        if (isWorking())
            showSheets();
        else
            readFile(m_path, sheet);
    });
    if (auto* const resize = findChild<ActiveResize*>()) {
        connect(resize, &ActiveResize::resized, this, [this, resize] {
            m_previewPage->setScale(resize->scale());
            m_resultPage->setScale(resize->scale());
        });
    }
    finishLayout();
    goTo(Page::choice);
}

AktarWindow::~AktarWindow() = default;

QWidget* AktarWindow::makeChoicePage() {
    auto* const page = new QWidget;
    auto* const layout = new QHBoxLayout(page);
    layout->setContentsMargins({});
    layout->setSpacing(spacing);
    const auto half = [&](vkCommand* tile, const QString& words, Page next) {
        auto* const column = new QVBoxLayout;
        column->addStretch(1);
        column->addWidget(tile, 2);
        QLabel* const note = makeLabel(words, u"text", ColorRole::mutedInk);
        note->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
        column->addWidget(note, 1);
        layout->addLayout(column, 1);
        connect(tile, &DrawnButton::clicked, this, [this, next] { goTo(next); });
    };
    half(makeTile(u"disaaktar"_s, u"Dışa aktar"_s, u":/icons/save.svg"_s, FaceRole::navy),
         u"Ürünleri, müşterileri ya da satışları bir dosyaya yazar."_s, Page::exporting);
    half(makeTile(u"iceaktar"_s, u"İçe aktar"_s, u":/icons/down.svg"_s, FaceRole::accent),
         u"Ürünleri ya da müşterileri bir dosyadan alır. Önce ne olacağını gösterir."_s, Page::preview);
    return page;
}

void AktarWindow::goTo(Page page) {
    m_page = page;
    m_pages->setCurrentIndex(static_cast<int>(page));
    const bool ofFile = page == Page::preview || page == Page::result;
    setNote(page == Page::exporting ? u"Dışa aktar"_s : ofFile ? QFileInfo(m_path).fileName() : QString());
    showButtons();
    if (page == Page::preview && !m_file)
        m_previewPage->setFile(nullptr, {});
    focusSafely();
}

/// The keyboard lies where Enter does no harm: a button that has gone or is dead would leave it to the one
/// that ends the program.
void AktarWindow::focusSafely() {
    if (m_page == Page::choice)
        findChild<DrawnButton*>(u"disaaktar"_s)->setFocus();
    else if (m_page == Page::preview && m_file)
        m_previewPage->focusRows();
    else if (m_page == Page::result)
        m_back->setFocus();
    else
        m_choose->setFocus();
}

/// The choice of sheets says which one was read, whatever was chosen since.
void AktarWindow::showSheets() {
    m_previewPage->setSheets(m_file ? m_file->sheets : QStringList(), m_file ? m_file->sheet : QString());
}

void AktarWindow::workEnded() {
    showSheets();
    focusSafely();
}

void AktarWindow::showButtons() {
    m_back->setVisible(m_page != Page::choice);
    m_choose->setVisible(m_page == Page::exporting || m_page == Page::preview);
    m_choose->setCaption(m_page == Page::exporting ? u"Dosyaya yaz"_s : u"Dosya seç"_s);
    m_choose->setLook(m_page == Page::exporting || !m_file ? FaceRole::accent : FaceRole::navy);
    const bool fits = m_file && faultOf(m_previewPage->mapping(), m_previewPage->kind()).isEmpty();
    m_check->setVisible(m_page == Page::preview && fits);
    const bool toWrite = m_plan && !(m_plan->added.empty() && m_plan->changed.empty());
    m_store->setVisible(m_page == Page::result && toWrite && !m_stored);
}

void AktarWindow::goBack() {
    goTo(m_page == Page::result && !m_stored ? Page::preview : Page::choice);
}

void AktarWindow::chooseTarget() {
    const QString ending = m_exportPage->ending();
    askForFile(*this,
               {.what = FileQuestion::What::fileToWrite,
                .title = u"Nereye yazılsın?"_s,
                .folder = m_folder,
                .kinds = {ending == u"xlsx"_s ? u"Excel (*.xlsx)"_s : u"CSV (*.csv)"_s},
                .name = m_exportPage->usualName(),
                .ending = ending},
               // The dialog asks before it gives out the name of a file that is there.
               [this](const QString& path) { exportTo(path, true); });
}

void AktarWindow::chooseFile() {
    askForFile(*this,
               {.title = u"Hangi dosya?"_s,
                .folder = m_folder,
                .kinds = {u"Tablolar (*.csv *.xlsx *.xls *.txt)"_s, u"Bütün dosyalar (*)"_s}},
               [this](const QString& path) { readFile(path); });
}

void AktarWindow::exportTo(const QString& path, bool overwrite) {
    ExportOrder order = m_exportPage->order();
    order.path = path;
    order.overwrite = overwrite;
    m_folder = QFileInfo(path).absolutePath();
    m_exportPage->tell({});
    if (const QString fault = faultOf(order); !fault.isEmpty()) {
        messageBox(fault, MessageBoxStyle::warning, windowTitle());
        return;
    }
    const auto rows = std::make_shared<qint64>(0);
    work(
        [order, rows](const WorkProgress& progress) {
            Connection connection;
            connection.openToRead(baglantimetnial(), [&](qint64 done, qint64 total) {
                progress.tell(u"Dükkân okunuyor"_s, done, total);
            });
            *rows = exportRows(connection, order, [&](qint64 done) {
                progress.tell(u"%1 satır yazıldı"_s.arg(format(static_cast<double>(done), u"#,##0")), 0, 0);
            });
        },
        [this, rows, path] {
            m_exportPage->tell(u"%1 satır yazıldı"_s.arg(format(static_cast<double>(*rows), u"#,##0")),
                               QDir::toNativeSeparators(path));
            focusSafely();
        });
}

void AktarWindow::readFile(const QString& path, const QString& sheet) {
    m_folder = QFileInfo(path).absolutePath();
    const auto read = std::make_shared<SheetFile>();
    work(
        [path, sheet, read](const WorkProgress& progress) {
            *read = readSheetFile(
                path, sheet, [&](qint64 done, qint64 total) { progress.tell(u"Okunuyor"_s, done, total); });
        },
        [this, read, path] {
            m_file = read;
            m_path = path;
            m_plan.reset();
            m_stored = false;
            QString words =
                u"%1 · %2 satır. Her sütunun üstünde ne olduğunu seçin; stok ancak siz seçerseniz alınır."_s
                    .arg(read->description, format(static_cast<double>(read->table.rowCount()), u"#,##0"));
            if (const QString sheets = wordsOfSheets(*read); !sheets.isEmpty())
                words += u'\n' + sheets + u". Sağ üstten başka sayfa seçebilirsiniz."_s;
            m_previewPage->setFile(&read->table, words);
            showSheets();
            goTo(Page::preview);
        });
}

void AktarWindow::checkFile() {
    const auto plan = std::make_shared<ImportPlan>();
    work(
        [file = m_file, kind = m_previewPage->kind(), mapping = m_previewPage->mapping(),
         plan](const WorkProgress& progress) {
            Connection connection;
            connection.open(baglantimetnial());
            *plan = planImport(
                connection, file->table, kind, mapping,
                [&](const QString& what, qint64 done, qint64 total) { progress.tell(what, done, total); });
        },
        [this, plan] {
            m_plan = plan;
            m_resultPage->setPlan(*plan);
            goTo(Page::result);
        });
}

/// All or nothing, as on the command line: the other lines go in without the refused ones only where somebody
/// has said so.
bool AktarWindow::goesOnWithoutRefused() {
    if (m_plan->refused.empty())
        return true;
    const auto shown = [](size_t count) { return format(static_cast<double>(count), u"#,##0"); };
    return messageBox(
               u"%1 satır reddedildi ve yazılmayacak.\n\nÖbürleri (%2 yeni, %3 değişen) yine de yazılsın mı?"_s
                   .arg(shown(m_plan->refused.size()), shown(m_plan->added.size()),
                        shown(m_plan->changed.size())),
               MessageBoxStyle::yesNo | MessageBoxStyle::warning | MessageBoxStyle::secondIsDefault,
               windowTitle()) == MessageBoxAnswer::yes;
}

void AktarWindow::store() {
    if (!goesOnWithoutRefused())
        return;
    work(
        [plan = m_plan](const WorkProgress& progress) {
            Connection connection;
            connection.open(baglantimetnial());
            applyPlan(connection, *plan,
                      [&](qint64 done, qint64 total) { progress.tell(u"Yazılıyor"_s, done, total); });
        },
        [this] {
            m_stored = true;
            m_resultPage->setDone();
            showButtons();
            focusSafely();
        });
}

}  // namespace kovanix::aktar
