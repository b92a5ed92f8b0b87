// Whole runs: from a response and a target to the files, as a calling tool or a person starts them.
//
// The input is a line with the rate and the format word, the target file up to a line of "%", and
// the response file; a .qsr file may be short, what lacks is silence.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>

#include "FuzzSupport.h"
#include "amplifier/FixedPoint.h"
#include "app/CommandLine.h"
#include "app/JsonReport.h"
#include "files/LevelTable.h"
#include "files/ResponseFile.h"
#include "platform/FileAccess.h"
#include "transform/FftTables.h"
#include "tuning/DesignReport.h"
#include "tuning/TuningRun.h"

namespace tonvane::fuzz {

namespace {

struct Input {
    std::string rate;
    std::string format;
    std::string target;
    std::string response;
    bool isReported = false;  // the report takes half as long as the design
};

// The text up to the mark, which goes with it; all of it where there is no mark.
std::string_view takeUpTo(std::string_view mark, std::string_view& text) {
    const size_t end = std::min(text.find(mark), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + mark.size(), text.size()));
    return part;
}

Input split(std::string_view text) {
    Input input;
    input.rate = takeUpTo(" ", text);
    input.format = takeUpTo("\n", text);
    input.target = takeUpTo("%\n", text);
    input.response = text;
    return input;
}

void checkReport(const TuningRun& run, const ProgramValues& values) {
    const DesignReport report = MakeDesignReport(run, values);
    Require(report.sections.size() == TuningRun::sectionCount, "there are seven sections");
    Require(!FormatJsonReport(report).empty() && !SummaryText(report).empty(), "it can be told");
    size_t next = 0;
    for (const auto& [b0, b1, b2, a1, a2] : report.sections) {
        for (const double coefficient : {b0, b1, b2, -a1, -a2}) {
            const int32_t word = report.words.at(next++);
            Require((word & ~coefficientMask) == 0, "a word has 26 bits");
            Require(std::isfinite(coefficient) || !report.isFinite, "the words come from numbers");
            if (FitsCoefWord(coefficient)) {
                const double error = FromCoefWord(word) - coefficient;
                Require(std::fabs(error) <= 0.5 / coefficientScale, "a word is the nearest step");
            }
        }
    }
    if (report.isFinite) {
        Require(report.fitPass >= 1 && report.fitPass <= IirFitter::passes, "a pass was kept");
        Require(std::isfinite(report.loudnessRatioDb), "the loudness is a number");
    } else {
        Require(!report.warnings.empty(), "a design without numbers is warned of");
    }
}

void runForTool(const Input& input) {
    const std::string filterPath = ScratchFolder() + "filter.txt";
    std::filesystem::remove(filterPath);
    const std::vector<std::string> arguments{
        "-cmd",       input.rate,   ScratchFile(input.response, "response"),
        input.format, "filter.txt", ScratchFile(input.target, "target"),
        "-noprompt"};
    ProgramValues values;
    SilentMessages messages;
    values.AppDirectory = ScratchFolder();
    const auto run = std::make_unique<TuningRun>(values, messages);
    InterpretCommandLine(arguments, values, messages);
    run->InitTuningState();
    run->SaveFiltersOnExit();

    Require(messages.questions == 0, "nobody is asked");
    const auto filter = ReadTextFile(filterPath);
    Require(filter.has_value() == run->responseAnalyzer.valid, "a response gives a filter file");
    if (filter) {
        Require(std::ranges::count(*filter, '\n') == TuningRun::sectionCount, "of seven lines");
        if (input.isReported) {
            checkReport(*run, values);
        }
    }
    TargetSettings target;
    Require(LoadTargetFile(values.TargetFilePath, target) == TargetFileStatus::loaded,
            "the target file that is left is a whole one");
}

// False where the checked readers refuse the input.
bool runForPerson(const Input& input) {
    const std::string target = ScratchFile(input.target, "target");
    ProgramValues values;
    SilentMessages messages;
    TargetSettings settings;
    const auto run = std::make_unique<TuningRun>(values, messages);
    std::optional<SpeakerResponse> response;
    const bool usable = Accepts([&] {
        settings = ReadCheckedTargetFile(target);
        std::string contents = input.response;
        values.ResponseIsCsv = input.format != "qsr";
        if (values.ResponseIsCsv) {
            InputNotes notes;
            ParseLevelTable("response", contents, run->csvTable, notes);
        } else {
            contents.resize(responseFileBytes);
            response = ReadCheckedResponseFile(ScratchFile(contents, "response"));
        }
    });
    if (!usable) {
        return false;
    }
    values.DefaultTargetCurve = settings.curve;
    values.TargetCurveKind = settings.kind;
    values.InitialGainClamp = settings.gainClampDb;
    values.InputSampleRate = response ? response->rate : 48000;
    values.FilterSampleRate = values.InputSampleRate;
    run->InitTuningState();
    if (response) {
        run->takeImpulse(response->rate, response->samples);
    } else {
        SortCsvRows(run->csvTable);
        EndTableAtHalfRate(run->csvTable, values.InputSampleRate);
        run->takeCsvTable();
    }
    run->responseReady = true;
    run->RunDesign();
    if (input.isReported) {
        checkReport(*run, values);
    }
    return true;
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    [[maybe_unused]] static const bool tables = (InitFftTables(responseLength), true);
    const std::string_view text = TextOf(data, size);
    Input input = split(text);
    const uint32_t hash = HashOf(text);
    input.isReported = hash % 8 < 2;
    if (hash % 2 == 0 || !runForPerson(input)) {
        runForTool(input);
    }
    return 0;
}
