#include "platform/FileWriting.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <optional>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileAccess.h"

namespace tonvane {

namespace {

// Where the files go that are named as standard output.
int outputDescriptor = STDOUT_FILENO;

std::optional<int> descriptorOf(const std::filesystem::path& path) {
    const std::string& name = path.native();
    if (name == "/dev/stdout") {
        return STDOUT_FILENO;
    }
    if (name == "/dev/stderr") {
        return STDERR_FILENO;
    }
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
        if (name.starts_with(folder)) {
            int number = -1;
            const char* end = name.data() + name.size();
            const auto [stop, error] = std::from_chars(name.data() + folder.size(), end, number);
            return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
        }
    }
    return std::nullopt;
}

FilePointer streamOf(int descriptor) {
    FilePointer file(descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb"));
    if (!file && descriptor >= 0) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
    }
    return file;
}

// A handler reaches nothing but what is static.
volatile std::sig_atomic_t heldSignal = 0;

extern "C" void holdSignal(int signal) {
    heldSignal = signal;
}

}  // namespace

FilePointer MakeNewFile(const std::filesystem::path& path, const std::filesystem::path* like) {
    constexpr mode_t permissionBits = 07777;
    struct stat old {};
    const bool isCopy = like != nullptr && ::stat(like->c_str(), &old) == 0;
    const mode_t mode =
        isCopy ? S_IRUSR | S_IWUSR : S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor >= 0 && isCopy) {
        if (::fchown(descriptor, old.st_uid, old.st_gid) != 0) {
            // Another's file: its group at least.
            [[maybe_unused]] const int ignored = ::fchown(descriptor, ::geteuid(), old.st_gid);
        }
        ::fchmod(descriptor, old.st_mode & permissionBits);
    }
    FilePointer file = streamOf(descriptor);
    if (!file && descriptor >= 0) {
        const int error = errno;
        ::unlink(path.c_str());
        errno = error;
    }
    return file;
}

FilePointer OpenAsItIs(const std::filesystem::path& path) {
    const auto descriptor = descriptorOf(path);
    if (!descriptor) {
        return streamOf(::open(path.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC));
    }
    return streamOf(
        ::fcntl(*descriptor == STDOUT_FILENO ? outputDescriptor : *descriptor, F_DUPFD_CLOEXEC, 0));
}

bool IsDescriptorName(const std::filesystem::path& path) {
    return descriptorOf(path).has_value();
}

bool IsStandardOutput(const std::string& path) {
    return descriptorOf(path) == STDOUT_FILENO;
}

void PrintToStandardError() {
    std::fflush(stdout);
    const int kept = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (kept >= 0 && ::dup2(STDERR_FILENO, STDOUT_FILENO) >= 0) {
        outputDescriptor = kept;
    }
}

bool SyncFile(std::FILE* file) {
    return ::fsync(::fileno(file)) == 0 || errno == EINVAL;
}

struct HeldSignals::State {
    static constexpr std::array failing{SIGPIPE, SIGXFSZ};
    static constexpr std::array ending{SIGINT, SIGTERM, SIGHUP};

    std::array<struct sigaction, failing.size()> failingBefore{};
    std::array<struct sigaction, ending.size()> endingBefore{};
    bool holds = false;
};

HeldSignals::HeldSignals(Interrupts interrupts) : state_(std::make_unique<State>()) {
    struct sigaction action {};
    action.sa_handler = SIG_IGN;
    for (size_t i = 0; i < State::failing.size(); ++i) {
        ::sigaction(State::failing[i], &action, &state_->failingBefore[i]);
    }
    state_->holds = interrupts == Interrupts::held;
    if (!state_->holds) {
        return;
    }
    heldSignal = 0;
    action.sa_handler = holdSignal;
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < State::ending.size(); ++i) {
        struct sigaction& before = state_->endingBefore[i];
        ::sigaction(State::ending[i], &action, &before);
        if (before.sa_handler == SIG_IGN) {
            ::sigaction(State::ending[i], &before, nullptr);
        }
    }
}

HeldSignals::~HeldSignals() {
    for (size_t i = 0; i < State::failing.size(); ++i) {
        ::sigaction(State::failing[i], &state_->failingBefore[i], nullptr);
    }
    if (!state_->holds) {
        return;
    }
    for (size_t i = 0; i < State::ending.size(); ++i) {
        ::sigaction(State::ending[i], &state_->endingBefore[i], nullptr);
    }
    if (heldSignal != 0) {
        ::raise(heldSignal);
    }
}

}  // namespace tonvane
