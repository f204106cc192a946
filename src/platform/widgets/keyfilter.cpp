#include "widgets/keyfilter.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QList>
#include <QPointer>
#include <QWidget>
#include <optional>

namespace kovanix {
namespace {

constexpr int lastPassingControl = 26;

// The character that a key brings, as the press stage counts it; nothing for keys that bring none.
std::optional<int> characterOf(const QKeyEvent& event) {
    if (event.key() == Qt::Key_Delete)
        return std::nullopt;  // X11 gives it the text 127
    const auto modifiers = event.modifiers();
    const bool control = modifiers.testFlag(Qt::ControlModifier);
    const bool alt = modifiers.testFlag(Qt::AltModifier);
    if (control && !alt && event.key() >= Qt::Key_A && event.key() <= Qt::Key_Z)
        return event.key() - Qt::Key_A + 1;
    switch (event.key()) {
        // The text of these differs between platforms.
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return 13;
        case Qt::Key_Backspace:
            return 8;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            return 9;
        default:
            break;
    }
    // Both together are AltGr, which writes letters; one alone is a command.
    if (control != alt)
        return std::nullopt;
    const QList<uint> characters = event.text().toUcs4();
    if (characters.size() != 1)
        return std::nullopt;
    return static_cast<int>(characters.first());
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
    if (watched != &m_field || event->type() != QEvent::KeyPress || event == m_replacement)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    // A stage may delete the field, and with it this filter and its functions.
    const QPointer<KeyFilter> self(this);
    if (m_keyDown) {
        const KeyDown keyDown = m_keyDown;
        keyDown(key->key() == Qt::Key_Enter ? int(Qt::Key_Return) : key->key());
        if (!self) {
            event->accept();
            return true;
        }
    }
    const std::optional<int> code = m_keyPress ? characterOf(*key) : std::nullopt;
    if (!code)
        return false;
    const KeyPress keyPress = m_keyPress;
    const int result = keyPress(*code);
    if (self && result == *code)
        return false;
    event->accept();
    if (self && result != 0) {
        QKeyEvent replacement = keyEventOf(result);
        m_replacement = &replacement;
        QCoreApplication::sendEvent(&m_field, &replacement);
        if (self)
            m_replacement = nullptr;
    }
    return true;
}

KeyFilter::KeyPress onlyCharacters(QStringView allowed) {
    return [characters = allowed.toUcs4()](int code) {
        return code <= lastPassingControl || characters.contains(static_cast<uint>(code)) ? code : 0;
    };
}

}  // namespace kovanix
