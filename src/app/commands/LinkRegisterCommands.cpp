#include <algorithm>
#include <chrono>
#include <cstdio>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"
#include "app/OutputFiles.h"
#include "app/commands/LinkCommands.h"
#include "files/InputError.h"
#include "files/RegisterDump.h"
#include "link/RegisterWrites.h"
#include "platform/System.h"
#include "text/WholeNumbers.h"

namespace tonvane {

namespace {

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
        std::string_view text = words[i];
        TakeHexPrefix(text);
        const size_t digits = 2 * static_cast<size_t>(lengths[i]);
        const auto word = ParseHexDigits(text, digits);
        if (!word) {
            throw InputError(words[i], "expected a word of 1 to " + std::to_string(digits) +
                                           " hexadecimal digits");
        }
        write.words[i] = static_cast<int32_t>(*word);
    }
    return write;
}

void printRegister(int32_t reg, std::span<const uint8_t> contents) {
    std::printf("%s: %s\n", RegisterLabel(reg).c_str(), DescribeContents(reg, contents).c_str());
    std::fflush(stdout);
}

// A register is given as FindRegister takes it.
void readRegister(const LinkOptions& options, const std::string& reg) {
    const int32_t number = checkedRegister(reg);
    LinkSession session(options);
    const auto contents = session.readWhole(number);
    if (!options.dryRun) {
        printRegister(number, contents);
    }
}

// As many words as the register has, in hexadecimal; not in the shutdown bracket.
void writeRegister(const LinkOptions& options, const std::string& reg,
                   std::span<const std::string> words) {
    const RegisterWrite write = checkedWrite(reg, words);
    LinkSession session(options);
    WriteRegisters(session.link, {&write, 1});
    session.printDone("Wrote " + RegisterLabel(write.reg));
}

// Writes the register dump to a file.
void dump(const LinkOptions& options, const std::string& path) {
    PrepareOutputs({path}, {});
    LinkSession session(options);
    const std::string text = FormatRegisterDump([&](int32_t reg, std::span<uint8_t> contents) {
        session.link.ReadRegister(reg, static_cast<int32_t>(contents.size()), contents);
    });
    if (options.dryRun) {
        return;
    }
    const NewContents file{path, WithSystemLineEnds(text)};
    WriteOutputs({&file, 1});
    session.printDone("Wrote " + path);
}

std::vector<std::vector<uint8_t>> readAll(LinkSession& session) {
    std::vector<std::vector<uint8_t>> contents;
    contents.reserve(registerCount);
    for (int32_t reg = 0; reg < registerCount; ++reg) {
        contents.push_back(session.readWhole(reg));
    }
    return contents;
}

struct WatchOptions {
    int32_t intervalMs = 1000;
    int32_t rounds = 0;  // after the first, 0 for without end
};

// Reads all registers again and again and prints those that have changed.
void watch(const LinkOptions& options, const WatchOptions& times) {
    LinkSession session(options);
    auto before = readAll(session);
    session.printDone("Watching all registers");
    for (int32_t round = 0; !options.dryRun && (times.rounds == 0 || round < times.rounds);
         ++round) {
        std::fflush(stdout);
        std::this_thread::sleep_for(std::chrono::milliseconds(times.intervalMs));
        auto now = readAll(session);
        for (int32_t reg = 0; reg < registerCount; ++reg) {
            if (now[reg] != before[reg]) {
                printRegister(reg, now[reg]);
            }
        }
        before = std::move(now);
    }
}

void addSingle(Command& link, const std::shared_ptr<const LinkOptions>& options) {
    const auto reg = std::make_shared<std::string>();
    const char* registerHelp = "Hexadecimal number or name";
    Command read = link.subcommand("read", "Print a register's contents");
    read.option("register", *reg, registerHelp).required();
    read.action([=] { readRegister(*options, *reg); });

    const auto words = std::make_shared<std::vector<std::string>>();
    Command write = link.subcommand("write", "Write a register, whether or not audio runs");
    write.option("register", *reg, registerHelp).required();
    write.option("words", *words, "All of its words in hexadecimal").required();
    write.action([=] { writeRegister(*options, *reg, *words); });
}

void addWhole(Command& link, const std::shared_ptr<const LinkOptions>& options) {
    const auto path = std::make_shared<std::string>();
    Command dumping = link.subcommand("dump", "Write all registers to a file");
    dumping.option("file", *path, "Register dump to write").required();
    dumping.action([=] { dump(*options, *path); });

    const auto times = std::make_shared<WatchOptions>();
    Command watching = link.subcommand("watch", "Print registers whenever they change");
    watching.option("--interval", times->intervalMs, "Milliseconds between two looks")
        .range(0, 3600000)
        .showDefault();
    watching.option("--rounds", times->rounds, "Looks after the first, 0 for without end")
        .notNegative()
        .showDefault();
    watching.action([=] { watch(*options, *times); });
}

}  // namespace

void AddLinkRegisterCommands(Command& link, const std::shared_ptr<const LinkOptions>& options) {
    addSingle(link, options);
    addWhole(link, options);
}

}  // namespace tonvane
