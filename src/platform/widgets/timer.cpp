#include "widgets/timer.h"

#include <algorithm>

namespace kovanix {

Timer::Timer(QObject* parent) : QObject(parent) {
    connect(&m_timer, &QTimer::timeout, this, &Timer::tick);
}

void Timer::setInterval(int milliseconds) {
    m_interval = std::max(0, milliseconds);
    if (m_interval == 0)
        m_timer.stop();
    else
        m_timer.start(m_interval);
}

}  // namespace kovanix
