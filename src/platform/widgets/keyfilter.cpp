#include "widgets/keyfilter.h"

#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QList>
#include <QPointer>
#include <QWidget>

namespace kovanix {
namespace {

constexpr int lastPassingControl = 26;

// What a key brings to the press stage: its characters as the stage counts them; none for keys that bring
// none.
QList<int> charactersOf(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Delete)
        return {};  // X11 gives it the text 127
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    if (control && !alt && event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z)
        return {event.key() - Qt::Key_A + 1};
    switch (event.key()) {
        // The text of these differs between platforms.
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return {13};
        case Qt::Key_Backspace:
            return {8};
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return {};  // moves the focus and types nothing
        default:
            break;
    }
    if (control && !alt)
        return {};
    QList<int> characters;
    for (const char32_t character : event.text().toUcs4())
        characters.append(static_cast<int>(character));
    return characters;
}

// Alt with a letter is a command. Control and Alt together are AltGr, which writes letters.
bool isCommandWithText(const QKeyEvent& event) {
    return event.modifiers().testFlag(Qt::AltModifier) && !event.modifiers().testFlag(Qt::ControlModifier) &&
           !event.text().isEmpty() && event.text().front().isPrint();
}

QKeyEvent keyEventOf(int code) {
    int key = Qt::Key_unknown;
    if (code == 8)
        key = Qt::Key_Backspace;
    else if (code == 9)
        key = Qt::Key_Tab;
    else if (code == 13)
        key = Qt::Key_Return;
    const auto character = static_cast<char32_t>(code);
    return {QEvent::KeyPress, key, Qt::NoModifier, QString::fromUcs4(&character, 1)};
}

}  // namespace

KeyFilter::KeyFilter(QWidget& field, KeyDown keyDown, KeyPress keyPress)
    : QObject(&field), m_field(field), m_keyDown(std::move(keyDown)), m_keyPress(std::move(keyPress)) {
    field.installEventFilter(this);
}

bool KeyFilter::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &m_field || event == m_replacement)
        return false;
    if (event->type() == QEvent::InputMethod)
        return filterCommit(static_cast<QInputMethodEvent&>(*event));
    if (event->type() != QEvent::KeyPress)
        return false;
    auto& key = static_cast<QKeyEvent&>(*event);
    // A stage may delete the field, and with it this filter and its functions.
    const QPointer<KeyFilter> self(this);
    if (m_keyDown) {
        const KeyDown keyDown = m_keyDown;
        keyDown(key.key() == Qt::Key_Enter ? int(Qt::Key_Return) : key.key());
        if (!self) {
            event->accept();
            return true;
        }
    }
    if (!m_keyPress)
        return false;
    if (isCommandWithText(key)) {
        event->accept();
        return true;
    }
    const QList<int> codes = charactersOf(key);
    const QList<int> results = pressed(codes);
    if (self && results == codes)
        return false;
    event->accept();
    for (const int result : results) {
        if (!self)
            break;
        if (result != 0) {
            QKeyEvent replacement = keyEventOf(result);
            sendReplacement(replacement);
        }
    }
    return true;
}

/// What the press stage makes of these characters; stops where it deletes the field.
QList<int> KeyFilter::pressed(const QList<int>& codes) {
    const QPointer<KeyFilter> self(this);
    const KeyPress keyPress = m_keyPress;
    QList<int> results;
    for (const int code : codes) {
        if (!self)
            break;
        results.append(keyPress(code));
    }
    return results;
}

/// A composed character (a dead key's, an input method's) is a character like any other.
bool KeyFilter::filterCommit(QInputMethodEvent& event) {
    if (!m_keyPress || event.commitString().isEmpty())
        return false;
    QList<int> codes;
    for (const char32_t character : event.commitString().toUcs4())
        codes.append(static_cast<int>(character));
    const QPointer<KeyFilter> self(this);
    QList<int> results = pressed(codes);
    if (!self)
        return true;
    if (results == codes)
        return false;
    results.removeAll(0);
    QString text;
    for (const int result : results) {
        const auto character = static_cast<char32_t>(result);
        text += QString::fromUcs4(&character, 1);
    }
    QInputMethodEvent replacement(event.preeditString(), event.attributes());
    replacement.setCommitString(text, event.replacementStart(), event.replacementLength());
    sendReplacement(replacement);
    return true;
}

void KeyFilter::sendReplacement(QEvent& replacement) {
    const QPointer<KeyFilter> self(this);
    m_replacement = &replacement;
    QCoreApplication::sendEvent(&m_field, &replacement);
    if (self)
        m_replacement = nullptr;
}

KeyFilter::KeyPress onlyCharacters(QStringView allowed) {
    return [characters = allowed.toUcs4()](int code) {
        return code <= lastPassingControl || characters.contains(static_cast<uint>(code)) ? code : 0;
    };
}

}  // namespace kovanix
