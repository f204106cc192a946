#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

class QLineEdit;
class QWidget;

namespace kovanix {

class Screen;

/// What a way out of a screen does: the screen goes, it goes back to the one before it, nothing happens, or
/// the user is asked first.
enum class Leaving { closes, goesBack, stays, asks };

/// What must hold for one screen, opened above the sales screen of a stocked shop.
struct ScreenRow {
    const char* name;   ///< of the screen's class
    Screen& (*open)();  ///< opens it the way the till does
    bool (*isOpen)();   ///< whether it is loaded
    QString title;      ///< of the window
    QSize design;    ///< the window's size on a display of 1024×768, scaled on others; empty: it fills them
    Leaving escape;  ///< what Escape does
    Leaving x;       ///< what the window's own close button does
    QString tabOrder;       ///< every control that Tab reaches; the first has the keyboard when it opens
    QString fields{};       ///< what can be written in when it opens
    QStringList symbols{};  ///< texts that keep a symbol of the letter transcription
};

/// The sizes of displays that every screen fits.
QList<QSize> displays();
/// Texts that break out of a statement, a number, a line or a field, with a name for each.
QList<std::pair<QString, QString>> hostileTexts();

// Each check returns what is wrong, a line for each fault; nothing when all is well.

/// Controls that overlap, stand out of the window, cut their text, or are too small for a finger.
QStringList layoutFaults(const QWidget& screen);
/// Captions, tips, accessible names and the title that hold a symbol of the letter transcription.
QStringList symbolsLeft(const Screen& screen, const QStringList& required);
/// Controls that take the keyboard and are not in that order, and those that Tab reaches otherwise.
QStringList tabFaults(const QWidget& screen, QStringList order);

/// Controls that an assistive tool can't tell: that take a press or the keyboard and have no role or no name,
/// and grids without rows and cells.
QStringList untoldControls(const QWidget& screen);
/// The toolkit's own lists and tables that don't expose their rows and cells, or whose columns have no
/// heading.
QStringList untoldTables(const QWidget& window);

/// The fields of a screen that can be written in now.
QList<QLineEdit*> writableFields(const Screen& screen);

}  // namespace kovanix
