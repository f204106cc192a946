#pragma once

#include <QColor>
#include <QObject>
#include <functional>

class QWidget;

namespace kovanix {

/// The colour dialog of a screen, as a control that remembers its last colour: a ColorDialog opens, and
/// whichever way it is closed, the screen goes on with the colour that the control then holds.
class CommonDialog : public QObject {
    Q_OBJECT

public:
    explicit CommonDialog(QObject* parent = nullptr);

    /// The colour chosen last; a cancelled dialog leaves it as it was.
    QColor color() const { return m_color; }
    void setColor(const QColor& color) { m_color = color; }

    /// Opens the dialog over a window and returns at once.
    /// @param done  runs when the dialog has been closed, by a choice or not
    void showColor(QWidget& above, std::function<void()> done);

private:
    QColor m_color{Qt::black};
};

}  // namespace kovanix
