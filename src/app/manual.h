#pragma once

#include "desktop/folders.h"
#include "desktop/shell.h"

namespace kovanix {

/// Opens the user's manual through the desktop. @return whether a program for it was started
inline bool openManual() {
    return openDocument(sharedFile(QStringLiteral("kullanim/index.html")));
}

}  // namespace kovanix
