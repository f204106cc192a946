#pragma once

#include <QString>
#include <vector>

namespace kovanix {

/// One screen of the machine.
struct Monitor {
    int handle = 0;
    bool flags = true;
    QString size;      ///< "1024 x 768", in pixels
    QString workSize;  ///< of the same form
    int width = 0;     ///< pixels
    int height = 0;    ///< pixels
};

/// The table of screens: the program runs on one, entry 0. Empty until monitorlerioku has run.
extern std::vector<Monitor> Monitors;

/// Fills the table from the screen's size and scale of this moment.
void monitorlerioku();

}  // namespace kovanix
