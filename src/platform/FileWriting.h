// What replacing files asks of the system; for this room.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>

#include "platform/System.h"

namespace tonvane {

// A file that was not there, open for writing; null with errno if it cannot be made. With `like`,
// an existing file whose place it will take, it has that one's permissions and, where it may, its
// owner, and nobody has more of it before.
FilePointer MakeNewFile(const std::filesystem::path& path, const std::filesystem::path* like);

// What is there, open for writing from its start; null with errno if it cannot be opened. The name
// of an open descriptor of this program stands for that descriptor, wherever it has got to.
FilePointer OpenAsItIs(const std::filesystem::path& path);

// Whether a path is such a name: /dev/stdout, /dev/fd/5.
bool IsDescriptorName(const std::filesystem::path& path);

// Takes what was written and flushed to the disk; false with errno if that fails.
bool SyncFile(std::FILE* file);

// While it lives, a closed pipe and the limit of a file's size fail a write and do not end the
// program. With `interrupts` held, what ends it from outside (Ctrl-C, SIGTERM, SIGHUP) waits as
// well, and comes through at its end. One at a time.
class HeldSignals {
  public:
    enum class Interrupts { held, pass };

    explicit HeldSignals(Interrupts interrupts);
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tonvane
