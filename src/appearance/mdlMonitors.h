#pragma once

#include <QString>
#include <vector>

namespace kovanix {

/// One screen of the machine.
struct Monitor {
    int handle = 0;
    qint16 flags = -1;  ///< all bits set
    QString size;       ///< "1024 x 768", in pixels
    QString workSize;   ///< of the same form
    int width = 0;      ///< pixels
    int height = 0;     ///< pixels
};

/// The table of screens: the program runs on one, entry 0. Empty until monitorlerioku has run.
extern std::vector<Monitor> Monitors;

/// The screen's scale in each direction, in whole twips per pixel; 0 until monitorlerioku has run.
extern int twipsPerPixelX;
extern int twipsPerPixelY;

/// Fills the table from the screen's size and scale of this moment.
void monitorlerioku();

}  // namespace kovanix
