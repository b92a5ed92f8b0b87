#include "app/Interruption.h"

#include <csignal>

namespace tonvane {

namespace {

// A signal handler reaches nothing but what is static.
volatile std::sig_atomic_t interrupted = 0;

extern "C" void markInterrupt(int /*signal*/) {
    interrupted = 1;
}

}  // namespace

InterruptMark::InterruptMark() {
    interrupted = 0;
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
    return interrupted != 0;
}

}  // namespace tonvane
