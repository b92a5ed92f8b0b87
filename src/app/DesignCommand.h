// The design command for a person: a response in, a filter file out.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/ConsoleMessages.h"
#include "app/DeviceChoice.h"
#include "app/Exports.h"
#include "app/LinkCommand.h"
#include "app/PlotOptions.h"
#include "app/ResponseInput.h"
#include "files/InputNotes.h"
#include "tuning/DesignReport.h"
#include "tuning/TuningRun.h"

namespace tonvane {

struct DesignOptions {
    // dB; what a filter that only cuts needs to have something to cut.
    static constexpr int32_t usualGainClamp = -6;

    std::string response;                  // see KindOfInput
    bool measure = false;                  // measure the response instead
    DeviceOptions device;                  // on which device
    std::string output;                    // the filter file
    std::optional<int32_t> rate;           // Hz, of a table, raw samples or a measurement
    std::optional<int32_t> channel;        // of a wave file, from 1
    bool strict = false;                   // refuse what has to be guessed
    std::optional<std::string> target;     // target file; flat without one
    std::optional<int32_t> gainClamp;      // dB, 0 to -12; ahead of the target file's; else usual
    std::optional<int32_t> format;         // 20 or 4; ahead of the address file's
    std::optional<std::string> addresses;  // address file
    std::optional<std::string> report;     // a page if its name ends in .html or .htm, else JSON
    std::optional<PlotOptions> plot;       // a picture of the design
    std::vector<Export> exports;           // the result for other programs
    bool program = false;                  // send the filter to the amplifier
    LinkOptions link;                      // how to reach it

    [[nodiscard]] ResponseOptions input() const { return {response, rate, channel, strict}; }
};

// A design that has gone through.
struct FinishedDesign {
    ProgramValues values;
    ConsoleMessages messages;
    std::unique_ptr<TuningRun> run;
    DesignReport report;
    std::string source;  // what the response is called: its file, or the measurement
    InputNotes notes;    // of the response
};

// Reads the files that the options name and designs; nothing is written. Throws InputError for
// input that cannot be used and for a design that does not give numbers.
std::unique_ptr<FinishedDesign> DesignResponse(const DesignOptions& options);

// Designs, writes the files and prints a summary on standard output and what was guessed on
// standard error, then programs the amplifier if asked to. Throws InputError for input that cannot
// be used or an output that cannot be written; files that existed are then as they were. A
// LinkError, or the InputError of a filter that must not be sent, leaves the files written.
void RunDesignCommand(const DesignOptions& options);

}  // namespace tonvane
