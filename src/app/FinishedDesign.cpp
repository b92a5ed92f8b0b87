#include "app/FinishedDesign.h"

#include <cstdio>

#include "app/Measurement.h"
#include "files/InputError.h"
#include "files/TargetFile.h"
#include "transform/FftTables.h"

namespace tonvane {

namespace {

void readTarget(const DesignRequest& request, ProgramValues& values) {
    values.InitialGainClamp = DesignRequest::usualGainClamp;
    if (request.target) {
        const TargetSettings settings = ReadCheckedTargetFile(*request.target);
        values.DefaultTargetCurve = settings.curve;
        values.TargetCurveKind = settings.kind;
        values.InitialGainClamp = settings.gainClampDb;
    }
    values.InitialGainClamp = request.gainClamp.value_or(values.InitialGainClamp);
}

void takeResponse(const DesignRequest& request, FinishedDesign& design) {
    if (request.measure) {
        const MeasurementReport report =
            MeasureInto(*design.run, design.values, request.device, request.response.rate);
        for (const std::string& warning : report.warnings) {
            std::printf("Warning: %s\n", warning.c_str());
        }
        design.source = "the measurement on " + report.device;
        return;
    }
    design.source = request.response.path;
    StartWithResponse(request.response, ReadResponse(request.response, design.notes), design.notes,
                      design.values, *design.run);
}

}  // namespace

void AddDesignOptions(Command& command, Command& source, DesignRequest& request) {
    source.option("response", request.response.path,
                  "Speaker response: .qsr, a table of frequencies and levels, or a wave file");
    command.option("--rate", request.response.rate,
                   "Sample rate in Hz, 8000 to 192000, of a table (48000 if not given) or of raw "
                   "samples");
    AddInputOptions(command, request.response);
    command.option("--target", request.target, "Target file; without one the target is flat")
        .fileName();
    command
        .option("--gain-clamp", request.gainClamp,
                "Loudness given up for the correction, 0 to -12 dB; ahead of the target file's (-6 "
                "without either)")
        .range(-12, 0);
    command
        .option("--fit", request.fit,
                "How the biquads are found: refined (against the wanted correction) or iterated "
                "(against the FIR, as a calling tool gets them)")
        .oneOf(std::vector{FitName(FitMethod::refined), FitName(FitMethod::iterated)})
        .showDefault();
}

std::unique_ptr<FinishedDesign> DesignResponse(const DesignRequest& request) {
    auto design = std::make_unique<FinishedDesign>();
    design->notes = InputNotes(request.response.strict);
    readTarget(request, design->values);
    design->values.fitMethod =
        request.fit == FitName(FitMethod::refined) ? FitMethod::refined : FitMethod::iterated;
    InitFftTables(responseLength);
    design->run = std::make_unique<TuningRun>(design->values, design->messages, nullptr,
                                              request.link.port, MakeTransport(request.link));
    design->run->iirFitter.solver = request.solver;
    takeResponse(request, *design);
    design->run->responseReady = true;
    design->run->RunDesign();

    design->report = MakeDesignReport(*design->run, design->values);
    if (!design->report.isFinite) {
        throw InputError(design->source, "no filter can be designed for this response");
    }
    return design;
}

}  // namespace tonvane
