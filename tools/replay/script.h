#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace kovanix {

/// One line of a replay script: a command with its words.
struct ScriptStep {
    int line = 0;
    QString command;
    QString argument;  ///< all behind the command, without surrounding blanks

    /// The first word of the argument, and what stands behind it.
    QString first() const;
    QString rest() const;
};

/// Reads a script: one command a line, "#" starts a comment line, empty lines count for nothing.
///
/// A control is named by its objectName, looked for on the active screen first, or by its screen's name too
/// ("menu.kapat").
///
///   size 1024x768            tells the till that its display is that large, and resizes the screens that
///   fill it clock 2026-05-03T10:15   lets the till's clock stand at that moment scan 8690000000012 types the
///   text into whatever has the focus, then Enter, as a scanner does type adet 2,5            gives a control
///   the focus and types a text into it, key by key key F2                   presses one key in whatever has
///   the focus press kaydet             presses a control right toplam             presses a control with the
///   right mouse button double saat              presses a control twice in a row touch 1 3 presses a cell of
///   the ticket (row, column) answer Evet              queues the button that answers the next message box
///   expect toplam 12,50      a control's text or caption must be this
///   cell 1 3 2               a cell of the ticket (row, column) must hold this
///   screenshot ticket.png    saves a picture of the active screen into the output folder
///   rows sales.txt select …  saves the rows of a select into the output folder, tabs between the fields
///   repeat 20 / end          plays the lines between so many times
///   say TEXT                 writes a line to standard output
///   pause                    waits for a line at standard input
///   close                    asks the active screen to close, as its window's close button does
///   stay                     plays nothing more: the program ends when the till ends
///
/// Sizes, clocks and answers that stand before every other line are done before the till starts.
QList<ScriptStep> readScript(const QString& text, QStringList& errors);

}  // namespace kovanix
