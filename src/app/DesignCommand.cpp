#include "app/DesignCommand.h"

#include <cstdio>
#include <memory>
#include <vector>

#include "app/AudioCommands.h"
#include "app/HtmlReport.h"
#include "app/JsonReport.h"
#include "app/OutputFiles.h"
#include "app/PlotCommand.h"
#include "files/FileAccess.h"
#include "files/FilterFile.h"
#include "files/InputError.h"
#include "files/LineEnds.h"
#include "transform/FftTables.h"

namespace tonvane {

namespace {

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

// All that the command writes besides the filter file.
std::vector<std::string> outputsOf(const DesignOptions& options) {
    std::vector<std::string> outputs{options.output};
    outputs.reserve(options.exports.size() + 3);
    if (options.report) {
        outputs.push_back(*options.report);
    }
    if (options.plot) {
        outputs.push_back(options.plot->output);
    }
    for (const Export& wanted : options.exports) {
        outputs.push_back(wanted.path);
    }
    return outputs;
}

std::string formatReport(const DesignOptions& options, const FinishedDesign& design) {
    const std::string extension = LowerCaseExtension(*options.report);
    if (extension != ".html" && extension != ".htm") {
        return FormatJsonReport(design.report);
    }
    return HtmlReport(design.report, {design.source, options.target.value_or(""), options.output},
                      PlotElement(options.plot.value_or(PlotOptions{}), design));
}

// The files in the order of outputsOf.
std::vector<NewContents> contentsOf(const DesignOptions& options, const std::string& filters,
                                    const FinishedDesign& design) {
    std::vector<NewContents> files{{options.output, filters}};
    files.reserve(options.exports.size() + 3);
    if (options.report) {
        files.push_back({*options.report, formatReport(options, design)});
    }
    if (options.plot) {
        files.push_back({options.plot->output, PlotBytes(*options.plot, design)});
    }
    const IirFitter& fitter = design.run->iirFitter;
    const ExportSource source{fitter.coefficientWords, design.report.sampleRate,
                              fitter.taps.first(fitter.tapCount)};
    for (const Export& wanted : options.exports) {
        files.push_back({wanted.path, FormatExport(wanted, source)});
    }
    return files;
}

void takeResponse(const DesignOptions& options, FinishedDesign& design) {
    if (options.measure) {
        const MeasurementReport report =
            MeasureInto(*design.run, design.values, options.device, options.rate);
        for (const std::string& warning : report.warnings) {
            std::printf("Warning: %s\n", warning.c_str());
        }
        design.source = "the measurement on " + report.device;
        return;
    }
    design.source = options.response;
    StartWithResponse(options.input(), ReadResponse(options.input(), design.notes), design.notes,
                      design.values, *design.run);
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

std::unique_ptr<FinishedDesign> DesignResponse(const DesignOptions& options) {
    auto design = std::make_unique<FinishedDesign>();
    design->notes = InputNotes(options.strict);
    readTarget(options, design->values);
    InitFftTables(responseLength);
    design->run = std::make_unique<TuningRun>(design->values, design->messages, nullptr,
                                              options.link.port, MakeTransport(options.link));
    takeResponse(options, *design);
    design->run->responseReady = true;
    design->run->RunDesign();

    design->report = MakeDesignReport(*design->run, design->values);
    if (!design->report.isFinite) {
        throw InputError(design->source, "no filter can be designed for this response");
    }
    return design;
}

void RunDesignCommand(const DesignOptions& options) {
    const std::vector<std::string> outputs = outputsOf(options);
    ExpectDistinctFiles(
        outputs, {options.response, options.target.value_or(""), options.addresses.value_or("")});
    if (options.plot) {
        CheckPlotOptions(*options.plot);
    }
    const RegisterAddressConfig addresses = readAddresses(options);
    const auto design = DesignResponse(options);
    const std::string filters =
        WithSystemLineEnds(FormatFilterFile(design->run->iirFitter.coefficientWords, addresses));
    WriteOutputs(contentsOf(options, filters, *design));

    PrintNotes(design->notes);
    std::printf("Filter for %s\n%s", design->source.c_str(), SummaryText(design->report).c_str());
    for (const std::string& output : outputs) {
        std::printf("Wrote %s\n", output.c_str());
    }
    if (options.program) {
        programAmplifier(design->report, *design->run);
    }
}

}  // namespace tonvane
