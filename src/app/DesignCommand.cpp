#include "app/DesignCommand.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "app/AudioCommands.h"
#include "app/ConsoleMessages.h"
#include "app/JsonReport.h"
#include "files/FileAccess.h"
#include "files/FilterFile.h"
#include "files/InputError.h"
#include "files/RateRange.h"
#include "files/ResponseFile.h"
#include "transform/FftTables.h"
#include "tuning/DesignReport.h"
#include "tuning/TuningRun.h"

namespace tonvane {

namespace fs = std::filesystem;

namespace {

// Whether a file's first bytes are those of a text.
bool looksLikeText(const std::string& path) {
    const auto start = ReadBinaryFile(path, 512);
    if (!start) {
        throw InputError(path, "cannot be opened");
    }
    if (start->empty()) {
        throw InputError(path, "the file is empty; expected a speaker response or a table");
    }
    return std::ranges::none_of(*start, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 && c != '\n' && c != '\r' && c != '\t' && c != '\f';
    });
}

void setRate(int32_t rate, ProgramValues& values) {
    values.InputSampleRate = rate;
    values.FilterSampleRate = rate;
}

void readTarget(const DesignOptions& options, ProgramValues& values) {
    values.InitialGainClamp = DesignOptions::usualGainClamp;
    if (options.target) {
        const TargetSettings settings = ReadCheckedTargetFile(*options.target);
        values.DefaultTargetCurve = settings.curve;
        values.TargetCurveKind = settings.kind;
        values.InitialGainClamp = settings.gainClampDb;
    }
    values.InitialGainClamp = options.gainClamp.value_or(values.InitialGainClamp);
}

RegisterAddressConfig readAddresses(const DesignOptions& options) {
    RegisterAddressConfig config;
    if (options.addresses) {
        if (!ReadTextFile(*options.addresses)) {
            throw InputError(*options.addresses, "cannot be opened");
        }
        if (LoadRegisterAddressFile(*options.addresses, config) == 0) {
            throw InputError(*options.addresses, 1, "expected \"address = \" and seven numbers");
        }
    }
    config.outputFormat = options.format.value_or(config.outputFormat);
    return config;
}

void takeImpulseFile(const DesignOptions& options, ProgramValues& values, TuningRun& run) {
    const SpeakerResponse response = ReadCheckedResponseFile(options.response);
    if (options.rate.value_or(response.rate) != response.rate) {
        throw InputError(options.response, "the file's sample rate is " +
                                               std::to_string(response.rate) + " Hz, not the " +
                                               std::to_string(*options.rate) + " Hz asked for");
    }
    setRate(response.rate, values);
    values.ResponseIsCsv = false;
    run.InitTuningState();
    run.takeImpulse(response.rate, response.samples);
}

void takeTableFile(const DesignOptions& options, ProgramValues& values, TuningRun& run) {
    ReadCheckedCsvRows(options.response, run.csvTable);
    setRate(options.rate.value_or(values.InputSampleRate), values);
    values.ResponseIsCsv = true;
    run.InitTuningState();
    SortCsvRows(run.csvTable);
    EndTableAtHalfRate(run.csvTable, values.InputSampleRate);
    run.takeCsvTable();
}

// Returns what is to be called the source of the filter.
std::string takeResponse(const DesignOptions& options, ProgramValues& values, TuningRun& run) {
    if (options.measure) {
        const MeasurementReport report = MeasureInto(run, values, options.device, options.rate);
        for (const std::string& warning : report.warnings) {
            std::printf("Warning: %s\n", warning.c_str());
        }
        return "the measurement on " + report.device;
    }
    if (looksLikeText(options.response)) {
        takeTableFile(options, values, run);
    } else {
        takeImpulseFile(options, values, run);
    }
    return options.response;
}

bool isSameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;
    return fs::weakly_canonical(a, ignored) == fs::weakly_canonical(b, ignored) ||
           fs::equivalent(a, b, ignored);
}

// An output that is also an input or the other output would be lost.
void expectDistinctFiles(const DesignOptions& options) {
    std::vector<std::string> others{options.response, options.target.value_or(""),
                                    options.addresses.value_or("")};
    const auto expectOther = [&](const std::string& output) {
        std::error_code ignored;
        const bool special = fs::exists(output, ignored) && !fs::is_regular_file(output, ignored);
        const bool used = std::ranges::any_of(others, [&](const std::string& other) {
            return !other.empty() && isSameFile(output, other);
        });
        if (used && !special) {
            throw InputError(output, "would overwrite another file of this design");
        }
    };
    expectOther(options.output);
    if (options.report) {
        others.push_back(options.output);
        expectOther(*options.report);
    }
}

// Both files or none.
void writeFiles(const DesignOptions& options, const std::string& filters,
                const DesignReport& report) {
    std::vector<NewContents> files{{options.output, filters}};
    if (options.report) {
        files.push_back({*options.report, FormatJsonReport(report)});
    }
    if (const auto failure = ReplaceFiles(files)) {
        throw InputError(failure->path, "cannot be written: " + failure->reason);
    }
}

void programAmplifier(const DesignReport& report, TuningRun& run) {
    if (!report.isUsable()) {
        throw InputError("--program", "the filter is not sent: " + report.warnings.front());
    }
    ConnectLink(run.ampLink);
    run.amplifier.biqEnabled = true;
    run.ProgramAmplifier();
    std::printf("Programmed the amplifier\n");
}

}  // namespace

void RunDesignCommand(const DesignOptions& options) {
    if (options.rate && !IsUsableRate(*options.rate)) {
        throw InputError("--rate", "expected " + std::string(usableRates));
    }
    expectDistinctFiles(options);
    ConsoleMessages messages;
    ProgramValues values;
    readTarget(options, values);
    const RegisterAddressConfig addresses = readAddresses(options);

    InitFftTables(responseLength);
    const auto run = std::make_unique<TuningRun>(values, messages, nullptr, options.link.port,
                                                 MakeTransport(options.link));
    const std::string source = takeResponse(options, values, *run);
    run->responseReady = true;
    run->RunDesign();

    const DesignReport report = MakeDesignReport(*run, values);
    if (!report.isFinite) {
        throw InputError(source, "no filter can be designed for this response");
    }
    writeFiles(options, FormatFilterFile(run->iirFitter.coefficientWords, addresses), report);

    std::printf("Filter for %s\n%s", source.c_str(), SummaryText(report).c_str());
    std::printf("Wrote %s\n", options.output.c_str());
    if (options.report) {
        std::printf("Wrote %s\n", options.report->c_str());
    }
    if (options.program) {
        programAmplifier(report, *run);
    }
}

}  // namespace tonvane
