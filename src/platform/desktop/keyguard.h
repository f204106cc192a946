#pragma once

#include <QElapsedTimer>
#include <QObject>

class QKeyEvent;

namespace kovanix {

/// Marks the presses of a key that is held down as repeated where the toolkit doesn't: some displays send a
/// release and a press of the same moment for each, and the toolkit misses the pair where it arrives in two
/// parts. Keys that write a letter are left alone.
///
/// Of two Enters right behind one another, as some scanners end a code with them, the second is dropped: it
/// would go on to the next field, or press what the first one has opened.
///
/// One watches the whole program.
class RepeatedKeys : public QObject {
    Q_OBJECT

public:
    /// Watches from now on; needs the application object.
    explicit RepeatedKeys(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int m_key = 0;  ///< released last
    quint64 m_released = 0;
    quint64 m_entered = 0;  ///< the moment of the last Enter; 0 where a character came behind it
};

/// Tells what a scanner types at the end of a code (Enter, Tab, a blank, also twice) from what a person
/// presses: it comes right behind a character.
class ScannedKeys {
public:
    /// To be asked about every press of a key, in their order. @return whether a scanner has sent it
    bool isEndOfScan(const QKeyEvent& press);

private:
    QElapsedTimer m_sinceCharacter;  ///< or since what followed it as quickly
    quint64 m_characterAt = 0;       ///< the same moment by the keyboard's clock, where it has one
};

/// Keeps from the buttons of a window that asks something what wasn't pressed for it: a key that is held
/// down, and a scan. To be installed as their event filter.
class UnmeantKeys : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ScannedKeys m_scanned;
};

}  // namespace kovanix
