#pragma once

#include <QString>
#include <QStringView>

class QWidget;

namespace kovanix {

class Screen;
class TDBGrid;
class VSFlexGrid;

// Texts are stored with their Turkish letters spelled by twelve punctuation symbols, so that every text is
// plain whatever code page it was typed in. They become letters at run time: on the way out of the catalogue,
// in message boxes, and in the captions of a screen when it is dressed at load.

/// The letter transcription: every one of the twelve symbols becomes its letter. Nothing is escaped, a real
/// percent sign becomes a letter too.
QString harfcevir(const QString& text);

/// Whether the text holds any of the twelve symbols.
bool harfvarmi(QStringView text);

/// Upper case of a name as it is typed: i gives İ, ı gives I, every other character its ordinary upper-case
/// form.
QString buyukharf(QStringView text);

/// The display text of a catalogue key, in any letter case. A key that the catalogue lacks comes back as it
/// is.
QString metin(const QString& key);

/// Whether a text has the form of a catalogue key: no lower-case letter, no surrounding blanks, three
/// characters or more, an underscore among them.
bool metinanahtarmi(const QString& text);

/// Shows a message box and waits for the answer.
///
/// @param text   a catalogue key, or a text that is transcribed
/// @param style  MessageBoxStyle bits (desktop/messagebox.h)
/// @param title  as text; an empty one is titled by the catalogue's BILGI
/// @return a MessageBoxAnswer
int mesaj(const QString& text, int style, const QString& title);

/// The form of mesaj that questions use.
int mesajsor(const QString& text, int style, const QString& title);

/// A warning box, titled by the bare word UYARI: without an underscore that is no catalogue key.
int uyarimesaj(const QString& text, int style);

/// Dresses a screen at its load: title, captions and tips, headings of its list grids. The login screen and
/// the sales screen only get their titles here and dress themselves.
void ekrandonat(Screen& screen);

/// Sets the window title by the screen's name; a screen that has none in the table keeps its stored title.
void ekranbasligi(Screen& screen);

/// Transcribes captions and tips of all controls of a screen, seven levels of containers deep, and gives
/// every control that has no caption to be named by its tip as an accessible name, unless it has one.
void kontrolleridolas(QWidget& screen);

/// Puts the headings on every list grid of a container, seven levels deep.
void gridleridolas(QWidget& container, int depth);

/// The headings of a list grid, and its page-number pattern in the print preview.
void gridbasliklari(TDBGrid& grid);

/// The headings of the ticket grid.
void gridbasliklari(VSFlexGrid& grid);
void satisgridbasliklari(VSFlexGrid& grid);

}  // namespace kovanix
