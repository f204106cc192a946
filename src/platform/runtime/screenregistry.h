#pragma once

#include <typeindex>
#include <vector>

namespace kovanix {

class Screen;

/// The registry behind screen<>(), loaded<>() and unload<>(): the one instance of each screen, by its type.
class ScreenRegistry {
public:
    static Screen* find(std::type_index type);
    /// Takes ownership, then runs the load procedure. When that throws, the screen is taken out again.
    static void load(std::type_index type, Screen* created);
    /// Takes the screen out at once, hides it, and deletes it when the running event is over.
    static void unload(std::type_index type);
    static void unload(const Screen& screen);
    /// All screens that are loaded, in the order of loading.
    static std::vector<Screen*> all();
    /// Unloads every screen, in the order of loading.
    static void unloadAll();
    /// Deletes every screen at once, without running any procedure of theirs: for the end of the process.
    static void clear();
};

/// The one instance of a screen. A screen that isn't loaded is created, registered and then loaded, so that
/// its load procedure may reach back to it through this very call.
template <class S>
S& screen() {
    if (Screen* existing = ScreenRegistry::find(typeid(S)))
        return *static_cast<S*>(existing);
    S* created = new S;
    ScreenRegistry::load(typeid(S), created);
    return *created;
}

/// Whether the screen is loaded; never loads it.
template <class S>
bool loaded() {
    return ScreenRegistry::find(typeid(S)) != nullptr;
}

/// Unloads every screen that is loaded, the caller's own among them.
inline void unloadAllScreens() {
    ScreenRegistry::unloadAll();
}

/// Unloads the screen. The object lives until the running event is over, so code behind this call in one of
/// its own procedures still runs; the next screen<S>() makes a new one with fresh state.
template <class S>
void unload() {
    ScreenRegistry::unload(typeid(S));
}

}  // namespace kovanix
