#include "runtime/screenregistry.h"

#include <algorithm>
#include <vector>

#include "runtime/screen.h"

namespace kovanix {

namespace {

struct Entry {
    std::type_index type;
    Screen* screen;
};

/// In the order of loading.
std::vector<Entry>& screens() {
    static std::vector<Entry> loadedScreens;
    return loadedScreens;
}

std::vector<Entry>::iterator entryOf(std::type_index type) {
    return std::find_if(screens().begin(), screens().end(),
                        [&](const Entry& entry) { return entry.type == type; });
}

void take(std::vector<Entry>::iterator entry) {
    if (entry == screens().end())
        return;
    Screen* screen = entry->screen;
    screens().erase(entry);
    screen->hide();
    screen->deleteLater();
}

}  // namespace

Screen* ScreenRegistry::find(std::type_index type) {
    const auto found = entryOf(type);
    return found == screens().end() ? nullptr : found->screen;
}

void ScreenRegistry::load(std::type_index type, Screen* created) {
    screens().push_back({type, created});
    try {
        created->form_load();
    } catch (...) {
        unload(type);
        throw;
    }
}

void ScreenRegistry::unload(std::type_index type) {
    take(entryOf(type));
}

void ScreenRegistry::unload(const Screen& screen) {
    take(std::find_if(screens().begin(), screens().end(),
                      [&](const Entry& entry) { return entry.screen == &screen; }));
}

std::vector<Screen*> ScreenRegistry::all() {
    std::vector<Screen*> loadedScreens;
    for (const Entry& entry : screens())
        loadedScreens.push_back(entry.screen);
    return loadedScreens;
}

void ScreenRegistry::unloadAll() {
    while (!screens().empty())
        take(screens().begin());
}

void ScreenRegistry::clear() {
    while (!screens().empty()) {
        const Screen* screen = screens().front().screen;
        screens().erase(screens().begin());
        delete screen;
    }
}

}  // namespace kovanix
