#include "platform/FileWriting.h"

#include <mutex>

#include <io.h>
#include <windows.h>

#include "platform/FileAccess.h"

namespace tonvane {

namespace {

// Whoever writes has it; what would end the program waits for it.
std::mutex writing;

// On a thread of the system's own. What is passed on goes to the handler before.
BOOL WINAPI waitForWriting(DWORD /*event*/) {
    const std::lock_guard wait(writing);
    return FALSE;
}

}  // namespace

FilePointer MakeNewFile(const std::filesystem::path& path, const std::filesystem::path* /*like*/) {
    return FilePointer(::_wfopen(path.c_str(), L"wb"));
}

FilePointer OpenAsItIs(const std::filesystem::path& path) {
    return FilePointer(::_wfopen(path.c_str(), L"wb"));
}

// Descriptors have no names here.
bool IsDescriptorName(const std::filesystem::path& /*path*/) {
    return false;
}

bool IsStandardOutput(const std::string& /*path*/) {
    return false;
}

void PrintToStandardError() {}

bool SyncFile(std::FILE* file) {
    return ::_commit(::_fileno(file)) == 0;
}

struct HeldSignals::State {
    std::unique_lock<std::mutex> lock;
};

HeldSignals::HeldSignals(Interrupts interrupts) : state_(std::make_unique<State>()) {
    if (interrupts == Interrupts::held) {
        state_->lock = std::unique_lock(writing);
        ::SetConsoleCtrlHandler(waitForWriting, TRUE);
    }
}

// The system takes no handler away while one runs, so what waits is let go first.
HeldSignals::~HeldSignals() {
    if (state_->lock.owns_lock()) {
        state_->lock.unlock();
        ::SetConsoleCtrlHandler(waitForWriting, FALSE);
    }
}

}  // namespace tonvane
