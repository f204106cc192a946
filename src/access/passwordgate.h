#pragma once

#include <QString>

class QWidget;

namespace kovanix {

/// The password in front of what changes products or users: an action is noted, and where the shop wants it
/// the prompt asks for the session's password first and then carries the action out in its screen's place.
///
/// Noting an action loads the prompt, hidden; it goes again with the gate where it was not shown.
class PasswordGate {
public:
    /// The actions, as the configuration holds them.
    static constexpr int add = 0;
    static constexpr int edit = 1;
    static constexpr int remove = 2;

    /// A screen whose actions are guarded.
    struct Guarded {
        QString code;        ///< in the prompt's `nereye`
        QString actionKey;   ///< the setting that keeps the pending action
        QString& pending;    ///< its copy in the process
        QString settingKey;  ///< the setting that does without the prompt; absent is 0
    };
    static Guarded products();
    static Guarded users();

    /// Notes an action, in the configuration and in the process.
    PasswordGate(Guarded guarded, int action);
    ~PasswordGate();
    PasswordGate(const PasswordGate&) = delete;
    PasswordGate& operator=(const PasswordGate&) = delete;

    /// Whether the password is to be asked for: of a user who has one, where the shop wants it.
    bool asks() const;
    /// Shows the prompt in front of the asking screen, and does not wait for it.
    void ask(QWidget& asking);

private:
    Guarded m_guarded;
    bool m_wanted = false;
    bool m_asked = false;
};

}  // namespace kovanix
