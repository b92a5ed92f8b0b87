#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "amplifier/AmpCoefficients.h"
#include "amplifier/RegisterGroups.h"
#include "amplifier/RegisterTable.h"
#include "amplifier/RegisterText.h"
#include "app/commands/LinkCommands.h"
#include "files/FilterFile.h"
#include "files/InputError.h"
#include "files/RateRange.h"
#include "link/RegisterWrites.h"
#include "text/TextScanner.h"

namespace tonvane {

namespace {

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

std::string countRegisters(size_t count) {
    return std::to_string(count) + (count == 1 ? " register" : " registers");
}

void writeGroup(const LinkOptions& options, std::span<const RegisterWrite> writes) {
    LinkSession session(options);
    WriteUninterrupted(session.link, writes);
    session.printDone("Wrote " + countRegisters(writes.size()));
}

AmplifierSettings settingsAt(int32_t sampleRate) {
    if (!IsUsableRate(sampleRate)) {
        throw InputError("--rate", "expected " + std::string(usableRates));
    }
    AmplifierSettings settings;
    settings.reset(sampleRate);
    return settings;
}

// Nothing for "off".
std::optional<int32_t> frequencyOf(const std::string& text) {
    if (text == "off") {
        return std::nullopt;
    }
    TextScanner scanner(text);
    const auto hz = scanner.integer();
    if (!hz || !scanner.atEnd()) {
        throw InputError(text, "expected a frequency in whole Hz, or off");
    }
    return hz;
}

// The start values, with the equalizer, the crossover and the DRCs off.
void preset(const LinkOptions& options) {
    std::vector<int32_t> unity;
    for (int32_t section = 0; section < 7; ++section) {
        unity.insert(unity.end(), UnityBiquad.begin(), UnityBiquad.end());
    }
    writeGroup(options, StartValues(unity));
}

// A filter file's sections to the registers that it names, read back and compared.
void program(const LinkOptions& options, const std::string& path) {
    const std::vector<RegisterWrite> writes = checkedSections(path);
    LinkSession session(options);
    WriteUninterrupted(session.link, writes);
    if (!options.dryRun) {
        CompareReadBack(session.link, writes);
    }
    session.printDone("Wrote " + countRegisters(writes.size()) + ", read back and compared");
}

struct CrossoverOptions {
    std::string frequency;  // Hz below half the sample rate, or off
    int32_t sampleRate = 48000;
};

void crossover(const LinkOptions& options, const CrossoverOptions& split) {
    const std::optional<int32_t> hz = frequencyOf(split.frequency);
    AmplifierSettings settings = settingsAt(split.sampleRate);
    settings.splitEnabled = hz.has_value();
    if (hz) {
        const int32_t most = (split.sampleRate - 1) / 2;
        if (*hz < 10 || *hz > most) {
            throw InputError(std::to_string(*hz),
                             "expected a frequency of 10 to " + std::to_string(most) + " Hz");
        }
        settings.setCrossover(*hz);
    }
    writeGroup(options, CrossoverGroup(settings));
}

struct DrcOptions {
    std::string which;  // are on; those get the settings
    DrcSettings settings;
    int32_t sampleRate = 48000;
};

void drc(const LinkOptions& options, const DrcOptions& wanted) {
    AmplifierSettings settings = settingsAt(wanted.sampleRate);
    const bool both = wanted.which == "both";
    settings.drcEnabled = {both || wanted.which == "1", both || wanted.which == "2"};
    settings.setDrc(wanted.settings, 0);
    settings.setDrc(wanted.settings, 1);
    writeGroup(options, DrcGroup(settings));
}

void addRate(Command& command, int32_t& sampleRate) {
    command.option("--rate", sampleRate, "The amplifier's sample rate in Hz").showDefault();
}

void addDrc(Command& link, const std::shared_ptr<const LinkOptions>& options) {
    const auto wanted = std::make_shared<DrcOptions>();
    Command command = link.subcommand("drc", "Switch the dynamic range compressors");
    command.option("which", wanted->which, "The one that is to be on: off, 1, 2 or both")
        .required()
        .oneOf(std::vector<std::string>{"off", "1", "2", "both"});
    DrcSettings& settings = wanted->settings;
    command.option("--threshold", settings.thresholdDb, "dB, -48 to 12")
        .range(-48, 12)
        .showDefault();
    const std::pair<const char*, int32_t*> times[] = {{"--alpha", &settings.alphaMs},
                                                      {"--attack", &settings.attackMs},
                                                      {"--release", &settings.releaseMs}};
    for (const auto& [name, value] : times) {
        command.option(name, *value, "ms, 1 to 5000").range(1, 5000).showDefault();
    }
    addRate(command, wanted->sampleRate);
    command.action([=] { drc(*options, *wanted); });
}

}  // namespace

void AddLinkGroupCommands(Command& link, const std::shared_ptr<const LinkOptions>& options) {
    link.subcommand("preset", "Write the start values; equalizer, crossover and DRCs are off then")
        .action([=] { preset(*options); });

    const auto path = std::make_shared<std::string>();
    Command programming = link.subcommand(
        "program", "Write a filter file's sections to the registers that it names, and compare");
    programming.option("filters", *path, "Filter file").required();
    programming.action([=] { program(*options, *path); });

    const auto split = std::make_shared<CrossoverOptions>();
    Command splitting = link.subcommand("crossover", "Split into two bands at a frequency, or off");
    splitting.option("frequency", split->frequency, "Hz, or off").required();
    addRate(splitting, split->sampleRate);
    splitting.action([=] { crossover(*options, *split); });

    addDrc(link, options);
}

}  // namespace tonvane
