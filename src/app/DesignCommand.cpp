#include "app/DesignCommand.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "app/JsonReport.h"
#include "app/PlotCommand.h"
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

bool isSameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;
    return fs::weakly_canonical(a, ignored) == fs::weakly_canonical(b, ignored) ||
           fs::equivalent(a, b, ignored);
}

// All files or none.
void writeFiles(const DesignOptions& options, const std::string& filters,
                const FinishedDesign& design) {
    std::vector<NewContents> files{{options.output, filters}};
    if (options.report) {
        files.push_back({*options.report, FormatJsonReport(design.report)});
    }
    if (options.plot) {
        files.push_back({options.plot->output, PlotBytes(*options.plot, options.response, design)});
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

// An output that is also an input or another output would be lost.
void ExpectDistinctFiles(const DesignOptions& options) {
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
    const std::optional<std::string> picture =
        options.plot ? std::optional(options.plot->output) : std::nullopt;
    for (const auto& output : {std::optional(options.output), options.report, picture}) {
        if (output && !output->empty()) {
            expectOther(*output);
            others.push_back(*output);
        }
    }
}

std::unique_ptr<FinishedDesign> DesignResponse(const DesignOptions& options) {
    if (options.rate && !IsUsableRate(*options.rate)) {
        throw InputError("--rate", "expected " + std::string(usableRates));
    }
    auto design = std::make_unique<FinishedDesign>();
    ProgramValues& values = design->values;
    readTarget(options, values);
    InitFftTables(responseLength);
    design->run = std::make_unique<TuningRun>(values, design->messages, nullptr, options.link.port,
                                              MakeTransport(options.link));
    if (looksLikeText(options.response)) {
        takeTableFile(options, values, *design->run);
    } else {
        takeImpulseFile(options, values, *design->run);
    }
    design->run->responseReady = true;
    design->run->RunDesign();

    design->report = MakeDesignReport(*design->run, values);
    if (!design->report.isFinite) {
        throw InputError(options.response, "no filter can be designed for this response");
    }
    return design;
}

void RunDesignCommand(const DesignOptions& options) {
    ExpectDistinctFiles(options);
    if (options.plot) {
        CheckPlotOptions(*options.plot);
    }
    const RegisterAddressConfig addresses = readAddresses(options);
    const auto design = DesignResponse(options);
    const DesignReport& report = design->report;
    TuningRun& run = *design->run;
    writeFiles(options, FormatFilterFile(run.iirFitter.coefficientWords, addresses), *design);

    std::printf("Filter for %s\n%s", options.response.c_str(), SummaryText(report).c_str());
    std::printf("Wrote %s\n", options.output.c_str());
    if (options.report) {
        std::printf("Wrote %s\n", options.report->c_str());
    }
    if (options.plot) {
        std::printf("Wrote %s\n", options.plot->output.c_str());
    }
    if (options.program) {
        programAmplifier(report, run);
    }
}

}  // namespace tonvane
