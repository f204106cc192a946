#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace kovanix {

/// A screen that opens above the sales screen: how a cashier comes into it and out again, and what can be
/// done in it that neither sells nor writes. Its text fields need no mention: what has the focus is typed
/// into.
struct WindowRow {
    enum class Gesture { press, rightPress, doublePress, key };
    struct Way {
        QString from;     ///< the screen in front
        QString control;  ///< the one to press, or the key's name
        Gesture gesture = Gesture::press;
    };

    QString name;  ///< the screen's kind
    std::vector<Way> ways;
    /// Controls that close it; "Escape", "X" for the window's own close button, "" for a press on it
    /// anywhere.
    QStringList exits;
    QStringList harmless = {};  ///< controls to press in it
    QStringList mayAsk = {};    ///< boxes of theirs, by the keys of their texts
    /// A list in which a double press chooses a product: the screen goes, and that is sold a moment later.
    QString choosing = {};
    /// The keys of a number pad that empty its box and hand a barcode over to the counter, where it is sold.
    QString clear = {}, enter = {};
    int weight = 3;              ///< how often it is opened from the counter, beside the other actions there
    bool leadsToBarcode = true;  ///< or back to the box that it fills
};

/// All of them; a new screen gets its row there.
const std::vector<WindowRow>& knownWindows();

}  // namespace kovanix
