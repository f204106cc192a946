#pragma once

#include <QAbstractButton>
#include <QList>
#include <QPointer>

#include "widgets/drawnframe.h"
#include "widgets/keyfilter.h"

class QLineEdit;

namespace kovanix {

/// The frame of a list screen in which a record is typed: to add it, or to change one.
///
/// Its caption is its mode, compared as a literal, so it is never dressed: a record is added while it is
/// "EKLE", and changed while it is anything else. The strip tells the mode by colour and icon.
///
/// Enter walks through the fields and never types. Line ends and tabs that are pasted become blanks. Escape
/// presses the button that cancels.
class EntryFrame : public vkFrame {
    Q_OBJECT

public:
    /// A text box of the frame.
    struct Field {
        QLineEdit* box;
        QWidget* next = nullptr;           ///< what Enter gives the focus to; nothing for none
        KeyFilter::KeyPress accepts = {};  ///< what the box makes of a character; empty takes all
    };

    explicit EntryFrame(QWidget* parent = nullptr);

    void setFields(const QList<Field>& fields);
    void setCancelButton(QAbstractButton& button) { m_cancel = &button; }

    /// @param record  what is painted at the strip's right end: whose record it is
    void setMode(const QString& caption, const QString& record = {});
    /// Whether a record is being added.
    bool adds() const;

    /// Empties all fields, in a way that can't be undone.
    void clearFields();

Q_SIGNALS:
    /// What is typed from now on belongs to another record, or to none.
    void recordChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QList<QLineEdit*> m_boxes;
    QPointer<QAbstractButton> m_cancel;
};

}  // namespace kovanix
