#include "diskbarriers.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace kovanix {

namespace {

std::atomic<long> barriers = 0;
std::atomic<std::chrono::microseconds> delay{};

int barrier(long call, int file) {
    ++barriers;
    if (const std::chrono::microseconds wait = delay; wait.count() > 0)
        std::this_thread::sleep_for(wait);
    return static_cast<int>(syscall(call, file));
}

}  // namespace

long diskBarriers() {
    return barriers;
}

void delayDiskBarriers(std::chrono::microseconds wait) {
    delay = wait;
}

}  // namespace kovanix

// In place of the C library's, under its names.
extern "C" [[gnu::visibility("default")]] int fsync(int file) {
    return kovanix::barrier(SYS_fsync, file);
}

extern "C" [[gnu::visibility("default")]] int fdatasync(int file) {
    return kovanix::barrier(SYS_fdatasync, file);
}
