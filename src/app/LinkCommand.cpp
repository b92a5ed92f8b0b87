#include "app/LinkCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

#include "amplifier/RegisterGroups.h"
#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"
#include "files/FileAccess.h"
#include "files/FilterFile.h"
#include "files/InputError.h"
#include "files/LineEnds.h"
#include "files/RateRange.h"
#include "files/RegisterDump.h"
#include "link/LinkFrame.h"
#include "link/RegisterWrites.h"

namespace tonvane {

namespace {

// Prints what would go out; every reply is zero.
class DryRunTransport : public LinkTransport {
  public:
    std::intptr_t open() override { return 0; }
    bool connect(std::intptr_t /*socket*/, uint16_t /*port*/) override { return true; }
    void exchange(std::intptr_t /*socket*/, std::span<const uint8_t> frame,
                  std::span<uint8_t> /*reply*/) override {
        std::printf("%s\n", linkframe::DescribeFrame(frame).c_str());
    }
    void close(std::intptr_t /*socket*/) override {}
    void wait(int32_t milliseconds) override { std::printf("wait %d ms\n", milliseconds); }
};

// A connected link, for the time of a command.
struct Session {
    explicit Session(const LinkOptions& options)
        : link(socket, options.port, MakeTransport(options)) {
        ConnectLink(link);
    }

    std::intptr_t socket = -1;
    CAmpLink link;
};

int32_t checkedNumber(const std::string& text, int32_t reg) {
    if (reg >= registerCount) {
        throw InputError(text, "there is no such register; the last one is 77");
    }
    return reg;
}

int32_t checkedRegister(const std::string& text) {
    const auto reg = FindRegister(text);
    if (!reg) {
        throw InputError(text,
                         "expected a register's number, 00 to 77 in hexadecimal, or its name");
    }
    if (LookUpRegister(checkedNumber(text, *reg)).length == 0) {
        throw InputError(text, "the register has no contents");
    }
    return *reg;
}

RegisterWrite checkedWrite(const std::string& reg, std::span<const std::string> words) {
    RegisterWrite write{checkedRegister(reg)};
    const auto lengths = WordLengths(LookUpRegister(write.reg).length);
    const size_t wanted = lengths.size() - std::ranges::count(lengths, 0);
    if (words.size() != wanted) {
        throw InputError(reg, "the register takes " + std::to_string(wanted) + " words, not " +
                                  std::to_string(words.size()));
    }
    for (size_t i = 0; i < wanted; ++i) {
        const bool prefixed = words[i].starts_with("0x") || words[i].starts_with("0X");
        const size_t digits = 2 * static_cast<size_t>(lengths[i]);
        const auto word = ParseHexDigits(words[i].substr(prefixed ? 2 : 0), digits);
        if (!word) {
            throw InputError(words[i], "expected a word of 1 to " + std::to_string(digits) +
                                           " hexadecimal digits");
        }
        write.words[i] = static_cast<int32_t>(*word);
    }
    return write;
}

std::vector<RegisterWrite> checkedSections(const std::string& path) {
    std::vector<RegisterWrite> writes;
    for (const FilterRecord& record : ReadCheckedFilterFile(path)) {
        const std::string label = RegisterLabel(record.address);
        if (LookUpRegister(record.address).length != mostRegisterBytes) {
            throw InputError(path, label + " is no register for a filter section");
        }
        if (std::ranges::count(writes, record.address, &RegisterWrite::reg) > 0) {
            throw InputError(path, label + " stands twice");
        }
        writes.push_back({record.address, record.words});
    }
    return writes;
}

// The bytes of a whole register.
std::vector<uint8_t> readWhole(CAmpLink& link, int32_t reg) {
    const int32_t length = LookUpRegister(reg).length;
    std::vector<uint8_t> bytes(static_cast<size_t>(length));
    link.ReadRegister(reg, length, bytes);
    return bytes;
}

void printRegister(int32_t reg, std::span<const uint8_t> contents) {
    std::printf("%s: %s\n", RegisterLabel(reg).c_str(), DescribeContents(reg, contents).c_str());
    std::fflush(stdout);
}

// The last line of a command that was not a dry run.
void printDone(const LinkOptions& options, const std::string& text) {
    if (!options.dryRun) {
        std::printf("%s\n", text.c_str());
    }
}

std::string countRegisters(size_t count) {
    return std::to_string(count) + (count == 1 ? " register" : " registers");
}

void writeGroup(const LinkOptions& options, std::span<const RegisterWrite> writes) {
    Session session(options);
    WriteInShutdown(session.link, writes);
    printDone(options, "Wrote " + countRegisters(writes.size()));
}

void compareReadBack(CAmpLink& link, std::span<const RegisterWrite> writes) {
    const auto differs = [&](const RegisterWrite& write) {
        return BytesToWords(readWhole(link, write.reg)) != write.words;
    };
    const auto first = std::ranges::find_if(writes, differs);
    if (first != writes.end()) {
        throw LinkError("all registers are written, but " + RegisterLabel(first->reg) +
                        " does not read back as it was written");
    }
}

AmplifierSettings settingsAt(int32_t sampleRate) {
    if (!IsUsableRate(sampleRate)) {
        throw InputError("--rate", "expected " + std::string(usableRates));
    }
    AmplifierSettings settings;
    settings.reset(sampleRate);
    return settings;
}

std::vector<std::vector<uint8_t>> readAll(CAmpLink& link) {
    std::vector<std::vector<uint8_t>> contents;
    contents.reserve(registerCount);
    for (int32_t reg = 0; reg < registerCount; ++reg) {
        contents.push_back(readWhole(link, reg));
    }
    return contents;
}

}  // namespace

std::unique_ptr<LinkTransport> MakeTransport(const LinkOptions& options) {
    if (options.dryRun) {
        return std::make_unique<DryRunTransport>();
    }
    return std::make_unique<CheckedTcpTransport>(options.timeLimitMs);
}

void ConnectLink(CAmpLink& link) {
    if (link.Connect() != CAmpLink::Connection::made) {
        throw LinkError("no socket can be made");
    }
    link.TrimOscillator();
}

void ReadCommand(const LinkOptions& options, const std::string& reg) {
    const int32_t number = checkedRegister(reg);
    Session session(options);
    const auto contents = readWhole(session.link, number);
    if (!options.dryRun) {
        printRegister(number, contents);
    }
}

void WriteCommand(const LinkOptions& options, const std::string& reg,
                  std::span<const std::string> words) {
    const RegisterWrite write = checkedWrite(reg, words);
    Session session(options);
    WriteRegisters(session.link, {&write, 1});
    printDone(options, "Wrote " + RegisterLabel(write.reg));
}

void DumpCommand(const LinkOptions& options, const std::string& path) {
    Session session(options);
    const std::string text = FormatRegisterDump([&](int32_t reg, std::span<uint8_t> contents) {
        session.link.ReadRegister(reg, static_cast<int32_t>(contents.size()), contents);
    });
    if (options.dryRun) {
        return;
    }
    if (const auto reason = ReplaceFile(path, WithSystemLineEnds(text))) {
        throw InputError(path, "cannot be written: " + *reason);
    }
    printDone(options, "Wrote " + path);
}

void PresetCommand(const LinkOptions& options) {
    std::vector<int32_t> unity;
    for (int32_t section = 0; section < 7; ++section) {
        unity.insert(unity.end(), UnityBiquad.begin(), UnityBiquad.end());
    }
    writeGroup(options, StartValues(unity));
}

void ProgramCommand(const LinkOptions& options, const std::string& path) {
    const std::vector<RegisterWrite> writes = checkedSections(path);
    Session session(options);
    WriteInShutdown(session.link, writes);
    if (!options.dryRun) {
        compareReadBack(session.link, writes);
    }
    printDone(options, "Wrote " + countRegisters(writes.size()) + ", read back and compared");
}

void CrossoverCommand(const LinkOptions& options, std::optional<int32_t> hz, int32_t sampleRate) {
    AmplifierSettings settings = settingsAt(sampleRate);
    settings.splitEnabled = hz.has_value();
    if (hz) {
        const int32_t most = (sampleRate - 1) / 2;
        if (*hz < 10 || *hz > most) {
            throw InputError(std::to_string(*hz),
                             "expected a frequency of 10 to " + std::to_string(most) + " Hz");
        }
        settings.setCrossover(*hz);
    }
    writeGroup(options, CrossoverGroup(settings));
}

void DrcCommand(const LinkOptions& options, std::array<bool, 2> enabled, const DrcSettings& drc,
                int32_t sampleRate) {
    AmplifierSettings settings = settingsAt(sampleRate);
    settings.drcEnabled = enabled;
    settings.setDrc(drc, 0);
    settings.setDrc(drc, 1);
    writeGroup(options, DrcGroup(settings));
}

void WatchCommand(const LinkOptions& options, int32_t intervalMs, int32_t rounds) {
    Session session(options);
    auto before = readAll(session.link);
    printDone(options, "Watching all registers");
    for (int32_t round = 0; !options.dryRun && (rounds == 0 || round < rounds); ++round) {
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::milliseconds(intervalMs));
        auto now = readAll(session.link);
        for (int32_t reg = 0; reg < registerCount; ++reg) {
            if (now[reg] != before[reg]) {
                printRegister(reg, now[reg]);
            }
        }
        before = std::move(now);
    }
}

}  // namespace tonvane
