#include "widgets/fieldedits.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>

#include "values/numbers.h"

namespace kovanix {

namespace {

void replaceText(QLineEdit& field, const QString& text, qsizetype caret) {
    field.setText(text);
    field.setCursorPosition(static_cast<int>(caret));
}

bool partsLines(QChar sign) {
    return (sign >= u'\t' && sign <= u'\r') || sign == u'\u0085' || sign == QChar::LineSeparator ||
           sign == QChar::ParagraphSeparator;
}

/// Tells what a user's edit of a field was: pastes are left alone.
class GroupKeeper : public QObject {
public:
    explicit GroupKeeper(QLineEdit& field) : QObject(&field), m_field(field) {
        field.installEventFilter(this);
        connect(&field, &QLineEdit::textEdited, this, &GroupKeeper::edited);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::KeyPress:
                remember(*event, isTyping(static_cast<QKeyEvent&>(*event)));
                break;
            case QEvent::InputMethod:
                remember(*event, true);
                break;
            case QEvent::ContextMenu:
            case QEvent::KeyRelease:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::Drop:
                remember(*event, false);
                break;
            default:
                break;
        }
        return false;
    }

private:
    // Undoing brings nothing but texts that stood there before.
    static bool isTyping(const QKeyEvent& key) {
        return !key.matches(QKeySequence::Paste) && !key.matches(QKeySequence::Undo) &&
               !key.matches(QKeySequence::Redo);
    }

    void remember(const QEvent& event, bool typing) {
        m_typing = typing;
        m_before = m_field.text();
        // What the menu's cutting and deleting leave; its pasting could leave anything.
        m_cut = event.type() == QEvent::ContextMenu && m_field.hasSelectedText()
                    ? QString(m_before).remove(m_field.selectionStart(), m_field.selectionLength())
                    : QString();
    }

    void edited(const QString& text) {
        if (!m_typing && (m_cut.isNull() || text != m_cut))
            return;
        qsizetype caret = m_field.cursorPosition();
        const QString kept = keptGroups(m_before, text, &caret);
        if (kept != text)
            replaceText(m_field, kept, caret);
    }

    QLineEdit& m_field;
    QString m_before;
    QString m_cut;
    bool m_typing = false;
};

}  // namespace

void keepOnOneLine(QLineEdit& field) {
    QObject::connect(&field, &QLineEdit::textEdited, &field, [&field] {
        const QString text = field.text();
        if (std::ranges::none_of(text, partsLines))
            return;  // a blank at an end is being typed
        QString line;
        qsizetype caret = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool endsPair = text[i] == u'\n' && i > 0 && text[i - 1] == u'\r';
            if (!endsPair)
                line.append(partsLines(text[i]) ? QChar(u' ') : text[i]);
            if (i < field.cursorPosition())
                caret = line.size();
        }
        const QString whole = line.trimmed();
        replaceText(field, whole, std::clamp<qsizetype>(caret - line.indexOf(whole), 0, whole.size()));
    });
}

void keepGroups(QLineEdit& field) {
    new GroupKeeper(field);
}

QString withKey(const QString& text, const QString& caption) {
    return keptGroups(text, text + caption);
}

}  // namespace kovanix
