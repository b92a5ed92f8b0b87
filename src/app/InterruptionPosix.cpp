#include "app/Interruption.h"

#include <atomic>
#include <csignal>

namespace tonvane {

namespace {

// A signal handler reaches nothing but what is static, and sets nothing that takes a lock.
std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void markInterrupt(int /*signal*/) {
    interrupted = true;
}

}  // namespace

InterruptMark::InterruptMark() {
    interrupted = false;
    struct sigaction action {};
    action.sa_handler = markInterrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

InterruptMark::~InterruptMark() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool InterruptMark::isSet() {
    return interrupted;
}

}  // namespace tonvane
