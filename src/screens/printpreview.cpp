#include "screens/printpreview.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QVBoxLayout>
#include <algorithm>

#include "app/modTurkce.h"
#include "desktop/focus.h"
#include "printing/printjob.h"
#include "runtime/runtimeerror.h"
#include "screens/boxes.h"
#include "screens/clicks.h"
#include "screens/listrules.h"
#include "screens/pageview.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"
#include "widgets/face.h"
#include "widgets/look.h"
#include "widgets/tdbgrid.h"
#include "widgets/vklabel.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size.
constexpr int spacing = 8;
constexpr int stripHeight = 48;
constexpr int labelMargin = 16;
constexpr QSize printSize(258, 64);

// A job of thousands of pages paints its line as often as it can be seen to grow.
constexpr int progressSteps = 400;

DrawnButton* addButton(QWidget* frame, const QString& name, const QString& caption, FaceRole look,
                       const QString& icon) {
    auto* button = new vkCommand(frame);
    button->setObjectName(name);
    button->setCaption(caption);
    button->setLook(look);
    button->setProperty("textRole", u"command"_s);
    button->setIconFile(icon);
    button->setIconSize({26, 26});
    button->setIconPlace(DrawnButton::IconPlace::above);
    button->setMinimumSize(printSize);
    button->setMaximumSize(printSize);
    return button;
}

template <class Layout>
Layout* tightLayout(QWidget* holder) {
    auto* layout = new Layout(holder);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    return layout;
}

}  // namespace

void printPreview(TDBGrid& grid, Screen& opener) {
    auto& preview = screen<PrintPreview>();
    preview.preview(grid, opener);
    showInFront(preview, {.opener = &opener});
}

PrintPreview::PrintPreview() {
    setObjectName(u"PrintPreview"_s);
    setWindowState(windowState() | Qt::WindowMaximized);
    ui.ActiveResize1 = new ActiveResize(this);
    ui.vkFrame1 = new vkFrame(ui.ActiveResize1);
    ui.vkFrame1->setProperty("textRole", u"title"_s);
    ui.vkFrame1->setLook(FrameRole::page);
    ui.vkFrame1->setTitleIconFile(u":/icons/print.svg"_s);
    ui.sayfalar = new PageView(ui.vkFrame1);
    ui.sayfalar->setObjectName(u"sayfalar"_s);
    ui.sayfa = new vkLabel(ui.vkFrame1);
    ui.sayfa->setObjectName(u"sayfa"_s);
    ui.sayfa->setProperty("textRole", u"range"_s);
    ui.sayfa->setForecolor(roleColor(ColorRole::stripRange));
    ui.sayfa->setCaptionAlignment(Qt::AlignRight | Qt::AlignVCenter);
    ui.yazdir = addButton(ui.vkFrame1, u"yazdir"_s, u"Yazd|r"_s, FaceRole::accent, u":/icons/print.svg"_s);
    ui.kapat = addButton(ui.vkFrame1, u"kapat"_s, u"Kapat"_s, FaceRole::slate, u":/icons/x.svg"_s);
    layOut();
    applyTextRoles(*this);

    clicks(this, {{ui.yazdir, &PrintPreview::yazdir_click}, {ui.kapat, &PrintPreview::kapat_click}});
    connect(ui.sayfalar, &PageView::turned, this, &PrintPreview::tellPage);
    const QList<QWidget*> controls = ui.vkFrame1->findChildren<QWidget*>();
    for (QWidget* control : controls)
        control->installEventFilter(this);
    setCloseButton(*ui.kapat);
}

PrintPreview::~PrintPreview() = default;

void PrintPreview::layOut() {
    tightLayout<QVBoxLayout>(this)->addWidget(ui.ActiveResize1);
    tightLayout<QVBoxLayout>(ui.ActiveResize1)->addWidget(ui.vkFrame1);
    auto* page = tightLayout<QVBoxLayout>(ui.vkFrame1);
    page->addWidget(ui.sayfalar, 1);
    auto* bottom = new QHBoxLayout;
    bottom->setContentsMargins(spacing, spacing, spacing, spacing);
    bottom->setSpacing(spacing);
    bottom->addStretch(1);
    bottom->addWidget(ui.yazdir);
    bottom->addWidget(ui.kapat);
    page->addLayout(bottom);
    connect(ui.ActiveResize1, &ActiveResize::resized, this, [this](QSize size) {
        const double scale = ui.ActiveResize1->scale();
        const int margin = static_cast<int>(labelMargin * scale);
        ui.sayfa->setGeometry(size.width() / 2, 0, size.width() - size.width() / 2 - margin,
                              static_cast<int>(stripHeight * scale));
    });
    // The walk of the Tab key begins where the focus is at first.
    setTabOrder(ui.yazdir, ui.kapat);
    setTabOrder(ui.kapat, ui.sayfalar);
    const QList<DrawnButton*> arrows = ui.sayfalar->findChildren<DrawnButton*>();
    setTabOrder(ui.sayfalar, arrows.first());
    setTabOrder(arrows.first(), arrows.last());
}

void PrintPreview::form_load() {
    ekrandonat(*this);
}

void PrintPreview::preview(TDBGrid& grid, Screen& opener) {
    m_opener = &opener;
    m_info = grid.printInfo();
    setWindowTitle(m_info.previewCaption);
    ui.vkFrame1->setCaption(m_info.previewCaption);
    ui.sayfalar->setPages(GridPages(grid.printTable(), m_info, PrintJob::paper().size(QPageSize::Point)));
}

void PrintPreview::tellPage() {
    ui.sayfa->setCaption(ui.sayfalar->pages().withNumbers(m_info.previewPageOf, ui.sayfalar->page()));
}

bool PrintPreview::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return OpenedScreen::eventFilter(watched, event);
    const auto& pressed = static_cast<const QKeyEvent&>(*event);
    // A scan that arrives here must not print.
    return m_scanned.isEndOfScan(pressed) || turnByKey(pressed.key());
}

/// The keys turn the pages whichever control has the focus. @return whether the key is one of them
bool PrintPreview::turnByKey(int key) {
    PageView& view = *ui.sayfalar;
    const bool scrolls = view.isWide() && (key == Qt::Key_Up || key == Qt::Key_Down);
    if (scrolls) {
        constexpr int stepsAView = 8;
        view.scroll((key == Qt::Key_Up ? -1 : 1) * view.height() / stepsAView);
        return true;
    }
    switch (key) {
        case Qt::Key_PageUp:
        case Qt::Key_Left:
        case Qt::Key_Up:
            view.turnTo(view.page() - 1);
            return true;
        case Qt::Key_PageDown:
        case Qt::Key_Right:
        case Qt::Key_Down:
            view.turnTo(view.page() + 1);
            return true;
        case Qt::Key_Home:
            view.turnTo(0);
            return true;
        case Qt::Key_End:
            view.turnTo(view.pages().pageCount() - 1);
            return true;
        default:
            return false;
    }
}

void PrintPreview::print() {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto restore = qScopeGuard([this] {
        ui.vkFrame1->setProgress({});
        QGuiApplication::restoreOverrideCursor();
    });
    QElapsedTimer timer;
    timer.start();
    const GridPages& pages = ui.sayfalar->pages();
    const int count = pages.pageCount();
    const int step = std::max(1, count / progressSteps);
    printPages(pages, [&](int printed) {
        if (printed % step == 0)
            ui.vkFrame1->setProgress(
                progressShown(printed, count, std::chrono::milliseconds(timer.elapsed())));
    });
}

void PrintPreview::yazdir_click() {
    constexpr int onePress = 1000;  // milliseconds: nothing shows that a job is on its way
    if (m_sinceJob.isValid() && !m_sinceJob.hasExpired(onePress))
        return;
    try {
        print();
        m_sinceJob.start();
    } catch (const RuntimeError& error) {
        tellPrinterFailure(error);
    }
}

void PrintPreview::kapat_click() {
    leave();
}

void PrintPreview::giveFocusBack() {
    Screen* const opener = m_opener;
    if (!opener || !opener->isVisible()) {
        OpenedScreen::giveFocusBack();
        return;
    }
    QWidget* const focused = opener->focusWidget();
    giveFocus(focused ? *focused : *opener);
}

}  // namespace kovanix
