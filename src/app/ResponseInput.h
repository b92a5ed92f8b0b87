// Opening whatever a person has of a loudspeaker's response.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "commandline/CommandParser.h"
#include "files/CsvTable.h"
#include "files/InputNotes.h"
#include "files/ResponseFile.h"
#include "tuning/TuningRun.h"

namespace tonvane {

struct ResponseOptions {
    std::string path;
    std::optional<int32_t> rate;     // Hz: of a table or of raw samples; else it must be the file's
    std::optional<int32_t> channel;  // of a wave file, from 1
    bool strict = false;             // refuse what has to be guessed
};

// --channel and --strict.
void AddInputOptions(Command& command, ResponseOptions& options);

enum class InputKind { table, wave, raw, speakerResponse, filters };

// A file as it was read, once from its start to its end: it may be a pipe.
struct InputFile {
    std::string path;
    InputKind kind;
    std::string bytes;
};

// Reads a file and tells its kind: by its content, but for raw samples, which are told by the
// extensions .f32 and .raw alone. A name that promises another kind is noted as a guess. Throws
// InputError for a file that cannot be read, is empty or has more than 512 MB.
InputFile ReadInputFile(const std::string& path, InputNotes& notes);

// A response that has been read and checked: a table of rising frequencies, or 32768 samples.
struct ResponseInput {
    bool isTable = false;
    CsvTable table;
    SpeakerResponse impulse{};
};

// Reads a response. Throws InputError for what cannot be used, such as a rate that is not the one
// asked for: nothing is resampled.
ResponseInput ReadResponse(const ResponseOptions& options, InputNotes& notes);

// The same for a file that has been read.
ResponseInput ReadResponse(const ResponseOptions& options, InputFile file, InputNotes& notes);

// Starts the run with the response and its rate (48000 Hz for a table without one). A table ends at
// half the rate then, with a note of what that cut or left open.
void StartWithResponse(const ResponseOptions& options, ResponseInput&& input, InputNotes& notes,
                       ProgramValues& values, TuningRun& run);

// Prints the notes on standard error, a line each.
void PrintNotes(const InputNotes& notes);

}  // namespace tonvane
