// The result of a design for other programs.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "commandline/CommandParser.h"

namespace tonvane {

enum class ExportKind { apo, camillaDsp, miniDsp, json, csv, firWave, firText };

// The kinds' names on the command line, in the order of ExportKind.
const std::vector<std::string>& ExportKindNames();

struct Export {
    ExportKind kind;
    std::string path;
};

// --export KIND=FILE, as often as wanted.
void AddExportOption(Command& command, std::vector<Export>& exports);

// Nothing for another name.
std::optional<ExportKind> ParseExportKind(const std::string& name);

// What is to be exported. The FIR is there after a design only.
struct ExportSource {
    std::span<const int32_t> words;  // five a section
    std::optional<int32_t> rate;     // Hz
    std::span<const double> taps{};
};

// The contents of the file. Throws InputError, which names `path`, for a FIR that is not there.
std::string FormatExport(const Export& wanted, const ExportSource& source);

}  // namespace tonvane
