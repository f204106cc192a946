#include "database/press.h"

#include <utility>

#include "database/connectionprivate.h"
#include "runtime/attempt.h"

namespace kovanix {

Press::Press(Connection& connection) : m_core(connection.d.get()) {
    if (m_core->presses == 0)
        m_core->beginPress();
    ++m_core->presses;
}

Press::~Press() {
    attempt([this] { finish(); });
}

void Press::finish() {
    ConnectionCore* const core = std::exchange(m_core, nullptr);
    if (core && --core->presses == 0)
        core->finishPress();
}

}  // namespace kovanix
