#include "kit/toolwindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "desktop/messagebox.h"
#include "desktop/windowplace.h"
#include "widgets/activeresize.h"
#include "widgets/drawnbutton.h"
#include "widgets/drawnframe.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 16;
constexpr int spacing = 12;
constexpr int buttonHeight = 64;
constexpr int buttonWidth = 150;

template <class Layout>
Layout* layoutIn(QLayout* outer, QMargins margins = {}) {
    auto* const layout = new Layout;
    layout->setContentsMargins(margins);
    layout->setSpacing(spacing);
    if (auto* const box = qobject_cast<QBoxLayout*>(outer))
        box->addLayout(layout);
    return layout;
}

QVBoxLayout* fill(QWidget& outer, QWidget& inner) {
    auto* const layout = new QVBoxLayout(&outer);
    layout->setContentsMargins({});
    layout->addWidget(&inner);
    return layout;
}

}  // namespace

ToolWindow::ToolWindow(const QString& title, const QString& icon, QSize designSize)
    : m_resize(new ActiveResize(this)), m_frame(new vkFrame) {
    setWindowTitle(title);
    // Ahead of the frame's coming: what is in there is met with the font that it has, and this one gets its
    // own later.
    m_resize->setDesignSize(designSize);
    fill(*this, *m_resize);
    fill(*m_resize, *m_frame);
    m_frame->setLook(FrameRole::page);
    m_frame->setProperty("textRole", u"title"_s);
    m_frame->setCaption(title);
    m_frame->setTitleIconFile(icon);

    auto* const whole = new QVBoxLayout(m_frame);
    whole->setContentsMargins(margin, margin, margin, margin);
    whole->setSpacing(spacing);
    m_content = layoutIn<QVBoxLayout>(whole);
    whole->setStretchFactor(m_content, 1);
    m_state = new QLabel;
    m_state->setObjectName(u"durum"_s);
    m_state->setProperty("textRole", u"label"_s);
    m_state->setWordWrap(true);
    whole->addWidget(m_state);
    m_buttons = layoutIn<QHBoxLayout>(whole);
    m_buttons->addStretch(1);
    m_leave = nullptr;
    m_leave = &addButton(u"kapat"_s, u"Kapat"_s, u":/icons/x.svg"_s, FaceRole::slate, [this] { leave(); });

    connect(&m_work, &BackgroundWork::progressed, this, &ToolWindow::showProgress);
    connect(&m_work, &BackgroundWork::finished, this, [this] {
        setWorking(false);
        std::exchange(m_done, nullptr)();
    });
    connect(&m_work, &BackgroundWork::cancelled, this, [this] {
        setWorking(false);
        workEnded();
    });
    connect(&m_work, &BackgroundWork::failed, this, [this](const QString& words) {
        setWorking(false);
        workEnded();
        messageBox(words, MessageBoxStyle::critical, windowTitle());
    });
    resize(designSize * screenScale());
}

ToolWindow::~ToolWindow() = default;

void ToolWindow::setNote(const QString& note) {
    m_frame->setTitleNote(note);
}

DrawnButton& ToolWindow::addButton(const QString& name, const QString& caption, const QString& icon,
                                   FaceRole face, std::function<void()> pressed) {
    auto* const button = new vkCommand;
    button->setObjectName(name);
    button->setCaption(caption);
    button->setIconFile(icon);
    button->setLook(face);
    button->setProperty("textRole", u"choice"_s);
    button->setFixedHeight(buttonHeight);
    button->setMinimumWidth(buttonWidth);
    connect(button, &DrawnButton::clicked, this, std::move(pressed));
    m_buttons->insertWidget(m_leave ? m_buttons->count() - 1 : m_buttons->count(), button);
    return *button;
}

void ToolWindow::work(std::function<void(WorkProgress&)> work, std::function<void()> done) {
    m_done = std::move(done);
    setWorking(true);
    m_work.start(std::move(work));
}

void ToolWindow::finishLayout() {
    applyTextRoles(*this);
    move(placeFor(size(), nullptr).topLeft());
}

void ToolWindow::setWorking(bool working) {
    for (int i = 0; i < m_buttons->count(); ++i) {
        if (QWidget* const button = m_buttons->itemAt(i)->widget(); button && button != m_leave)
            button->setEnabled(!working);
    }
    m_leave->setCaption(working ? u"Vazgeç"_s : u"Kapat"_s);
    if (!working) {
        m_frame->setProgress(std::nullopt);
        m_state->clear();
    }
    if (!working && m_leaves)
        close();
}

void ToolWindow::showProgress(const QString& what, qint64 done, qint64 total) {
    m_state->setText(what);
    m_frame->setProgress(total > 0 ? std::optional(static_cast<double>(done) / static_cast<double>(total))
                                   : std::nullopt);
}

void ToolWindow::leave() {
    if (isWorking())
        m_work.cancel();
    else
        close();
}

void ToolWindow::closeEvent(QCloseEvent* event) {
    if (!isWorking()) {
        event->accept();
        return;
    }
    // What was begun is taken back first.
    m_leaves = true;
    m_work.cancel();
    event->ignore();
}

void ToolWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        leave();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kovanix
