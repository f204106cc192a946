#pragma once

#include <QList>
#include <QMessageBox>
#include <memory>

class QDialogButtonBox;
class QHBoxLayout;
class QLabel;
class QScrollArea;

namespace kovanix {

class DialogFrame;
class TextLines;

/// A message box in the till's own dress: its title in a strip inside of it, the icon of its kind, the text
/// in lines of a readable size, buttons for a thumb, of which the default one is marked; all of it scaled
/// with the screen. A text that the screen has no room for scrolls. It stands in the middle of its owner.
///
/// Text, title and icon are set as on any message box, before it is shown.
class DressedBox : public QMessageBox {
    Q_OBJECT

public:
    explicit DressedBox(QWidget* owner);
    ~DressedBox() override;

    /// Adds a button, at the right of those that are there.
    /// @param isDefault  whether Enter presses it when the box opens
    QPushButton* addAnswer(const QString& caption, bool isDefault);

    void setVisible(bool visible) override;

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int scaled(int design) const;
    QFont textFont(QFont::Weight weight) const;
    int fitTitle(int width, int highest);
    int titleWidth() const;
    int layOutButtons();
    void dress();
    void arrange();

    double m_scale;
    DialogFrame* m_frame = nullptr;
    QHBoxLayout* m_message = nullptr;
    QScrollArea* m_view = nullptr;
    QLabel* m_text = nullptr;
    QLabel* m_icon = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    std::unique_ptr<TextLines> m_lines;
};

}  // namespace kovanix
