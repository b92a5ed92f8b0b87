// Conversion between what measuring programs write and what this program and others read.
#pragma once

#include <optional>
#include <string>

#include "app/Exports.h"
#include "app/ResponseInput.h"

namespace tonvane {

struct ConvertOptions {
    ResponseOptions input;           // or a filter file
    std::string output;              // its extension says what it becomes
    std::optional<ExportKind> kind;  // of a filter file's output, ahead of the extension
};

// Reads a response or a filter file and writes it in another form:
//   a table as .csv, .txt or .frd: rows "frequency,level", ended at half the rate if one is given;
//   an impulse response as .qsr, .wav (float32), .f32 or .raw, or as a table of its spectrum;
//   a filter file as one of the exports.
// Throws InputError for input that cannot be used, for forms that the input cannot take and for an
// output that cannot be written; it is then as it was.
void RunConvertCommand(const ConvertOptions& options);

}  // namespace tonvane
