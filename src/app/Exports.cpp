#include "app/Exports.h"

#include <algorithm>

#include <fmt/core.h>

#include "app/JsonReport.h"
#include "files/InputError.h"
#include "files/SectionText.h"
#include "soundfile/SoundFile.h"
#include "tuning/FilterFigures.h"

namespace tonvane {

namespace {

std::vector<std::string> remarksOf(const ExportSource& source) {
    return {"Equalizer of Tonvane, decoded from the amplifier's fixed-point words.",
            source.rate ? "For a sample rate of " + std::to_string(*source.rate) + " Hz only."
                        : "For the sample rate of the design only.",
            fmt::format("Highest gain {:.2f} dB: leave as much headroom.",
                        HighestGainOf(source.words, 1).db)};
}

// Reads "KIND=FILE"; nothing for another form or kind.
std::optional<Export> parseExport(const std::string& text) {
    const size_t equals = text.find('=');
    const auto kind = ParseExportKind(text.substr(0, equals));
    if (!kind || equals == std::string::npos || equals + 1 == text.size()) {
        return std::nullopt;
    }
    return Export{*kind, text.substr(equals + 1)};
}

}  // namespace

const std::vector<std::string>& ExportKindNames() {
    static const std::vector<std::string> names{"apo", "camilladsp", "minidsp", "json",
                                                "csv", "fir-wav",    "fir-text"};
    return names;
}

std::optional<ExportKind> ParseExportKind(const std::string& name) {
    const auto& names = ExportKindNames();
    const auto entry = std::ranges::find(names, name);
    return entry == names.end() ? std::nullopt
                                : std::optional(static_cast<ExportKind>(entry - names.begin()));
}

void AddExportOption(Command& command, std::vector<Export>& exports) {
    std::string kinds;
    for (const std::string& name : ExportKindNames()) {
        kinds += (kinds.empty() ? "" : ", ") + name;
    }
    const auto take = [&exports, kinds](const std::string& text) -> std::string {
        const auto wanted = parseExport(text);
        if (!wanted) {
            return "expected KIND=FILE with a kind of " + kinds + "; found " + text;
        }
        exports.push_back(*wanted);
        return {};
    };
    command.repeatable("--export", "KIND=FILE", take,
                       "KIND=FILE, the result for another program: " + kinds);
}

std::string FormatExport(const Export& wanted, const ExportSource& source) {
    const auto sections = DecodeBiquads(source.words);
    const bool isFir = wanted.kind == ExportKind::firWave || wanted.kind == ExportKind::firText;
    if (isFir && source.taps.empty()) {
        throw InputError(wanted.path, "a filter file holds no FIR; export it with design --export");
    }
    switch (wanted.kind) {
        case ExportKind::apo:
            return FormatEqualizerApo(sections, remarksOf(source));
        case ExportKind::camillaDsp:
            return FormatCamillaDsp(sections, remarksOf(source));
        case ExportKind::miniDsp:
            return FormatMiniDsp(sections);
        case ExportKind::json:
            return FormatJsonSections(source.words, source.rate);
        case ExportKind::csv:
            return FormatSectionCsv(sections);
        case ExportKind::firWave:
            return FormatWaveFile(source.rate.value_or(0), source.taps);
        case ExportKind::firText:
            return FormatTaps(source.taps);
    }
    return {};
}

}  // namespace tonvane
