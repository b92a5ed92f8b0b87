// A response in, a design out, for the commands that do something with it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "app/ConsoleMessages.h"
#include "app/DeviceChoice.h"
#include "app/LinkSession.h"
#include "app/ResponseInput.h"
#include "commandline/CommandParser.h"
#include "files/DesignParameters.h"
#include "files/InputNotes.h"
#include "tuning/DesignReport.h"
#include "tuning/TuningRun.h"

namespace tonvane {

// What is designed, and from what.
struct DesignRequest {
    // dB; what a filter that only cuts needs to have something to cut.
    static constexpr int32_t usualGainClamp = -DesignParameters::defaultGainIndex;

    ResponseOptions response;           // its rate is that of a measurement as well
    bool measure = false;               // measure the response instead
    DeviceOptions device;               // on which device
    std::optional<std::string> target;  // target file; flat without one
    std::optional<int32_t> gainClamp;   // dB, 0 to -12; ahead of the target file's; else usual
    std::string fit = FitName(FitMethod::refined);
    FitSolver solver = FitSolver::lattice;
    LinkOptions link;  // how the run reaches an amplifier
};

// The response, in the group of what a response can come from, and what it is designed for: --rate,
// --channel, --strict, --target, --gain-clamp, --fit.
void AddDesignOptions(Command& command, Command& source, DesignRequest& request);

// A design that has gone through.
struct FinishedDesign {
    ProgramValues values;
    ConsoleMessages messages;
    std::unique_ptr<TuningRun> run;
    DesignReport report;
    std::string source;  // what the response is called: its file, or the measurement
    InputNotes notes;    // of the response
};

// Reads the files that the request names and designs; nothing is written. Throws InputError for
// input that cannot be used and for a design that does not give numbers.
std::unique_ptr<FinishedDesign> DesignResponse(const DesignRequest& request);

}  // namespace tonvane
