#pragma once

#include <unistd.h>

#include <QtGlobal>

namespace kovanix {

/// Goes on as an ordinary user while it lives: the administrator may write anywhere.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (::geteuid() != 0)
            return;
        constexpr uid_t nobody = 65534;
        m_changed = ::setresgid(nobody, nobody, 0) == 0 && ::setresuid(nobody, nobody, 0) == 0;
        m_failed = !m_changed;
    }
    ~OrdinaryUser() {
        if (m_changed && (::setresuid(0, 0, 0) != 0 || ::setresgid(0, 0, 0) != 0))
            qFatal("can't go back to the administrator");
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    bool failed() const { return m_failed; }

private:
    bool m_changed = false;
    bool m_failed = false;
};

}  // namespace kovanix
