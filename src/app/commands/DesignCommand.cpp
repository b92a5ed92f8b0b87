// design: a response in, a filter file out.

#include <cstdio>
#include <memory>
#include <vector>

#include "amplifier/RegisterGroups.h"
#include "app/DesignPicture.h"
#include "app/Exports.h"
#include "app/FinishedDesign.h"
#include "app/HtmlReport.h"
#include "app/JsonReport.h"
#include "app/LinkSession.h"
#include "app/OutputFiles.h"
#include "app/commands/Commands.h"
#include "files/FilterFile.h"
#include "files/InputError.h"
#include "platform/FileAccess.h"
#include "platform/System.h"

namespace tonvane {

namespace {

struct DesignOptions {
    DesignRequest request;
    std::string output;                    // the filter file
    std::optional<int32_t> format;         // 20 or 4; ahead of the address file's
    std::optional<std::string> addresses;  // address file
    std::optional<std::string> report;     // a page if its name ends in .html or .htm, else JSON
    PictureOptions plot;                   // a picture of the design, if its output has a name
    std::vector<Export> exports;           // the result for other programs
    std::string solver = "lattice";        // of the fit's equations, or "lapack"
    bool program = false;                  // send the filter to the amplifier
};

RegisterAddressConfig readAddresses(const DesignOptions& options) {
    RegisterAddressConfig config;
    if (options.addresses) {
        if (ParseRegisterAddresses(ReadInputText(*options.addresses), config) == 0) {
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
    if (!options.plot.output.empty()) {
        outputs.push_back(options.plot.output);
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
    return HtmlReport(design.report,
                      {design.source, options.request.target.value_or(""), options.output},
                      PictureElement(options.plot, design));
}

// The files in the order of outputsOf.
std::vector<NewContents> contentsOf(const DesignOptions& options, const std::string& filters,
                                    const FinishedDesign& design) {
    std::vector<NewContents> files{{options.output, filters}};
    files.reserve(options.exports.size() + 3);
    if (options.report) {
        files.push_back({*options.report, formatReport(options, design)});
    }
    if (!options.plot.output.empty()) {
        files.push_back({options.plot.output, PictureBytes(options.plot, design)});
    }
    const IirFitter& fitter = design.run->iirFitter;
    const ExportSource source{design.report.words, design.report.sampleRate,
                              fitter.taps.first(fitter.tapCount)};
    for (const Export& wanted : options.exports) {
        files.push_back({wanted.path, FormatExport(wanted, source)});
    }
    return files;
}

void programAmplifier(const DesignReport& report, TuningRun& run) {
    if (!report.isUsable()) {
        throw InputError("--program", "the filter is not sent: " + report.warnings.front());
    }
    const auto writes = EqualizerGroup(true, report.words);
    ConnectLink(run.ampLink);
    WriteUninterrupted(run.ampLink, writes);
    CompareReadBack(run.ampLink, writes);
    std::printf("Programmed the amplifier\n");
}

// Designs, writes the files and prints a summary on standard output and what was guessed on
// standard error, then programs the amplifier if asked to. Throws InputError for input that cannot
// be used or an output that cannot be written; files that existed are then as they were. A
// LinkError, or the InputError of a filter that must not be sent, leaves the files written.
void design(const DesignOptions& options) {
    const std::vector<std::string> outputs = outputsOf(options);
    PrepareOutputs(outputs, {options.request.response.path, options.request.target.value_or(""),
                             FileOfDevice(options.request.device), options.addresses.value_or("")});
    if (!options.plot.output.empty()) {
        CheckPictureOptions(options.plot);
    }
    if (options.request.solver != FitSolver::lattice &&
        options.request.fit != FitName(FitMethod::iterated)) {
        throw InputError("--solver", "is for the iterated fit: give --fit iterated as well");
    }
    const RegisterAddressConfig addresses = readAddresses(options);
    const auto finished = DesignResponse(options.request);
    const std::string filters =
        WithSystemLineEnds(FormatFilterFile(finished->report.words, addresses));
    WriteOutputs(contentsOf(options, filters, *finished));

    PrintNotes(finished->notes);
    std::printf("Filter for %s\n%s", finished->source.c_str(),
                SummaryText(finished->report).c_str());
    for (const std::string& output : outputs) {
        std::printf("Wrote %s\n", output.c_str());
    }
    if (options.program) {
        programAmplifier(finished->report, *finished->run);
    }
}

}  // namespace

void AddDesignCommand(Command& program) {
    const auto options = std::make_shared<DesignOptions>();
    DesignRequest& request = options->request;
    Command command = program.subcommand("design", "Design a filter for a loudspeaker's response");
    Command source = command.exactlyOneOf("source");
    AddDesignOptions(command, source, request);
    source.flag("--measure", request.measure, "Measure the response through the audio device");
    AddDeviceOptions(command, request.device, "--device-timeout");
    command.option("-o,--output", options->output, "Filter file to write").required().fileName();
    command
        .option("--format", options->format,
                "Lines of the filter file: 20 (a section a line) or 4 (a word a line)")
        .oneOf(std::vector<int32_t>{20, 4});
    command.option("--addresses", options->addresses, "Address file such as registeraddress.cfg")
        .fileName();
    command
        .option("--report", options->report,
                "File with the figures of the design: .html for a page, else JSON")
        .fileName();
    AddExportOption(command, options->exports);
    const CommandOption plot =
        command.option("--plot", options->plot.output, "Picture of the design: .png, .svg or .pdf")
            .fileName();
    for (CommandOption& look : AddPictureLooks(command, options->plot)) {
        look.needs(plot);
    }
    command
        .option(
            "--solver", options->solver,
            "What solves the equations of the iterated fit: lattice, or lapack, whose dgelsd takes "
            "ten times as long and is as close")
        .oneOf(std::vector<std::string>{"lattice", "lapack"});
    command.flag("--program", options->program,
                 "Send the filter to the amplifier through the link server");
    AddLinkOptions(command, request.link);
    command.footer("Example: tonvane-cli design speaker.qsr -o filters.txt --gain-clamp -6");
    command.action([options] {
        options->request.solver =
            options->solver == "lapack" ? FitSolver::lapack : FitSolver::lattice;
        design(*options);
    });
}

}  // namespace tonvane
