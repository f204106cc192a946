#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace kovanix {

/// A check that runs when a field is left for another control of its window. It is over before the press that
/// left the field goes on: where the check refuses, that press is dropped. Leaving for another window, or for
/// a message box, is no leaving, and neither is it when the field is hidden.
class LeaveCheck : public QObject {
    Q_OBJECT

public:
    /// Watches the field from now on; belongs to it.
    /// @param check  returns whether the field may be left; it may show a message box and give the focus back
    LeaveCheck(QWidget& field, std::function<bool()> check);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool dropsPress(const QWidget& hit);
    bool leavesFor(const QWidget& hit) const;
    void focusChanged(QWidget* now);

    QWidget& m_field;
    std::function<bool()> m_check;
    bool m_entered = false;    // the field has had the focus and wasn't left yet
    bool m_pressed = false;    // what takes the focus away is a press
    bool m_pressIsOn = false;  // that press is on its way to what it hits
    bool m_passed = false;     // the press that is down was asked for already
};

}  // namespace kovanix
