#pragma once

#include <QWidget>

#include "runtime/screenregistry.h"

namespace kovanix {

/// A screen of the system: a top-level window that the screen registry creates, loads and deletes.
///
/// Screens are made by screen<Name>() (screenregistry.h) and never by hand.
class Screen : public QWidget {
    Q_OBJECT

public:
    explicit Screen(QWidget* parent = nullptr);
    ~Screen() override;

    /// The same as the free screen<S>(), which QWidget::screen() would hide from a screen's own procedures.
    template <class S>
    static S& screen() {
        return kovanix::screen<S>();
    }

    /// The load procedure: runs once, after the screen stands in the registry and before it is shown.
    virtual void form_load() {}

    /// The activation procedure: runs when this screen becomes active and another screen of ours (or none)
    /// was the active one before. A message box that closes over the screen does not run it.
    virtual void form_activate() {}

protected:
    /// The window's own close button unloads the screen.
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;
};

}  // namespace kovanix
