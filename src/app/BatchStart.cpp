#include "app/BatchStart.h"

#include <cstdio>
#include <memory>

#include "app/CommandLine.h"
#include "app/ConsoleMessages.h"
#include "platform/System.h"
#include "transform/FftTables.h"
#include "tuning/DesignReport.h"
#include "tuning/TuningRun.h"

namespace tonvane {

namespace {

// A calling tool sees only the words: what is wrong with them must not pass in silence.
void warnOfUnusableWords(const TuningRun& run, const ProgramValues& values) {
    if (!run.responseAnalyzer.valid || HasPlainlyUsableWords(run.iirFitter)) {
        return;
    }
    const DesignReport report = MakeDesignReport(run, values);
    if (!report.isUsable()) {
        for (const std::string& warning : report.warnings) {
            std::fprintf(stderr, "Warning: %s\n", warning.c_str());
        }
    }
}

}  // namespace

int RunBatchStart(std::span<const std::string> arguments) {
    ConsoleMessages messages;
    ProgramValues values;
    values.AppDirectory = WorkingDirectory();
    InitFftTables(responseLength);
    const auto run = std::make_unique<TuningRun>(values, messages);
    const std::string tail = CommandLineAsTyped().value_or(CommandTail(arguments));
    InterpretCommandLine(TokenizeCommandLine(tail), values, messages);
    if (values.ResponseFilePath.empty()) {
        messages.warning(
            "no response is given, so nothing is written: expected -cmd RATE RESPONSE "
            "qsr|csv FILTERS TARGET -noprompt");
    }
    run->InitTuningState();

    run->SaveFiltersOnExit();  // nobody is there to ask
    warnOfUnusableWords(*run, values);
    FreeFftTables();
    return 0;
}

}  // namespace tonvane
