#include "runtime/screenregistry.h"

#include <map>

#include "runtime/screen.h"

namespace kovanix {

namespace {
std::map<std::type_index, Screen*>& screens() {
    static std::map<std::type_index, Screen*> loadedScreens;
    return loadedScreens;
}
}  // namespace

Screen* ScreenRegistry::find(std::type_index type) {
    const auto found = screens().find(type);
    return found == screens().end() ? nullptr : found->second;
}

void ScreenRegistry::load(std::type_index type, Screen* created) {
    screens()[type] = created;
    try {
        created->form_load();
    } catch (...) {
        unload(type);
        throw;
    }
}

void ScreenRegistry::unload(std::type_index type) {
    const auto found = screens().find(type);
    if (found == screens().end())
        return;
    Screen* screen = found->second;
    screens().erase(found);
    screen->hide();
    screen->deleteLater();
}

void ScreenRegistry::clear() {
    while (!screens().empty()) {
        Screen* screen = screens().begin()->second;
        screens().erase(screens().begin());
        delete screen;
    }
}

}  // namespace kovanix
