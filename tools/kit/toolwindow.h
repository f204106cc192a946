#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "kit/backgroundwork.h"
#include "widgets/look.h"

class QVBoxLayout;
class QHBoxLayout;
class QLabel;

namespace kovanix {

class ActiveResize;
class DrawnButton;
class vkFrame;

/// The window of a program beside the till, in the till's look: a title strip, the content, a line that says
/// how far the work is, and a row of buttons whose last one leaves. An ordinary window of the desktop that
/// stands in the middle of the screen at the screen's scale; Escape leaves, too.
class ToolWindow : public QWidget {
    Q_OBJECT

public:
    /// @param icon  a file of the till's icons, ":/icons/save.svg"
    /// @param designSize  its size on a screen of 1024×768
    ToolWindow(const QString& title, const QString& icon, QSize designSize);
    ~ToolWindow() override;

    /// Where the content goes, from top to bottom.
    QVBoxLayout& content() { return *m_content; }
    /// What the strip tells at its right end.
    void setNote(const QString& note);

    /// A button of the bottom row, ahead of the one that leaves. It is dead while work runs.
    DrawnButton& addButton(const QString& name, const QString& caption, const QString& icon, FaceRole face,
                           std::function<void()> pressed);

    /// Has a piece of work done beside the window; the buttons are dead meanwhile, and the one that leaves
    /// cancels.
    /// @param done  called at its end, unless it fails or is cancelled: a failure is told in a box
    void work(std::function<void(WorkProgress&)> work, std::function<void()> done);
    bool isWorking() const { return m_work.isRunning(); }

    /// Gives every control below the size that its "textRole" names; called once the content stands.
    void finishLayout();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    /// The work was cancelled or has failed.
    virtual void workEnded() {}

private:
    void showProgress(const QString& what, qint64 done, qint64 total);
    void setWorking(bool working);
    void leave();

    BackgroundWork m_work;
    std::function<void()> m_done;
    ActiveResize* m_resize;
    vkFrame* m_frame;
    QVBoxLayout* m_content;
    QLabel* m_state;
    QHBoxLayout* m_buttons;
    DrawnButton* m_leave;
    bool m_leaves = false;  // as soon as the work has ended
};

}  // namespace kovanix
