#pragma once

#include <QList>
#include <QObject>
#include <QStringView>
#include <functional>

class QInputMethodEvent;
class QWidget;

namespace kovanix {

/// The two stages of a key on one field: first key-down, by key, then key press, by character.
///
/// Control characters up to 26 (Backspace, Enter, Ctrl+letter) reach both stages; Tab, Delete, arrows and
/// function keys only the first. A composed character reaches the second like a typed one. Alt with a letter
/// types nothing. Pasted text passes neither.
class KeyFilter : public QObject {
    Q_OBJECT

public:
    /// What happens when a key goes down. The key is a Qt::Key; both Enter keys arrive as Qt::Key_Return.
    using KeyDown = std::function<void(int key)>;
    /// What a field makes of a character: gets its code (Unicode; Enter 13, Backspace 8), gives the
    /// code that goes into the field: the same, another, or 0 to drop it.
    using KeyPress = std::function<int(int code)>;

    /// Watches the field from now on; belongs to it. Either stage may be empty.
    KeyFilter(QWidget& field, KeyDown keyDown, KeyPress keyPress);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QList<int> pressed(const QList<int>& codes);
    bool filterCommit(QInputMethodEvent& event);
    void sendReplacement(QEvent& replacement);

    QWidget& m_field;
    KeyDown m_keyDown;
    KeyPress m_keyPress;
    const QEvent* m_replacement = nullptr;  // the replaced character on its way into the field
};

/// A key-press stage that drops every code above 26 that isn't one of the given characters.
KeyFilter::KeyPress onlyCharacters(QStringView allowed);

}  // namespace kovanix
