#include "link/RegisterWrites.h"

#include <array>
#include <string>

#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"
#include "amplifier/WordBytes.h"

namespace tonvane {

namespace {

// Counts what is written of a list, so that an error does not leave it open.
class ListWriter {
  public:
    ListWriter(CAmpLink& link, std::span<const RegisterWrite> writes)
        : link_(link), writes_(writes) {}

    void run() {
        for (const RegisterWrite& write : writes_) {
            link_.WriteRegister(write.reg, write.words, LookUpRegister(write.reg).length);
            ++written_;
        }
    }

    [[nodiscard]] std::string progress() const {
        return "; " + std::to_string(written_) + " of " + std::to_string(writes_.size()) +
               (writes_.size() == 1 ? " register is" : " registers are") + " written";
    }

  private:
    CAmpLink& link_;
    std::span<const RegisterWrite> writes_;
    size_t written_ = 0;
};

}  // namespace

void WriteRegisters(CAmpLink& link, std::span<const RegisterWrite> writes) {
    ListWriter list(link, writes);
    try {
        list.run();
    } catch (const LinkError& error) {
        throw LinkError(error.what() + list.progress());
    }
}

void WriteInShutdown(CAmpLink& link, std::span<const RegisterWrite> writes) {
    ListWriter list(link, writes);
    try {
        link.EnterShutdown();
        list.run();
        link.ExitShutdown();
    } catch (const LinkError& error) {
        throw LinkError(error.what() + list.progress() + ", and the amplifier may be left stopped");
    }
}

void CompareReadBack(CAmpLink& link, std::span<const RegisterWrite> writes) {
    for (const RegisterWrite& write : writes) {
        std::array<uint8_t, mostRegisterBytes> bytes{};
        const int32_t length = LookUpRegister(write.reg).length;
        link.ReadRegister(write.reg, length, bytes);
        if (BytesToWords(std::span(bytes).first(static_cast<size_t>(length))) != write.words) {
            throw LinkError("all registers are written, but " + RegisterLabel(write.reg) +
                            " does not read back as it was written");
        }
    }
}

}  // namespace tonvane
