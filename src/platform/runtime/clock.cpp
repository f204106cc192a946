#include "runtime/clock.h"

#include <utility>

namespace kovanix {

namespace {
Clock::Source& replacedSource() {
    static Clock::Source source;
    return source;
}
}  // namespace

QDateTime Clock::now() {
    const Source& source = replacedSource();
    return source ? source() : QDateTime::currentDateTime();
}

void Clock::setSource(Source source) {
    replacedSource() = std::move(source);
}

}  // namespace kovanix
