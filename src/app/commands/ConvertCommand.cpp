// convert: between what measuring programs write and what this program and others read.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/Exports.h"
#include "app/OutputFiles.h"
#include "app/ResponseInput.h"
#include "app/commands/Commands.h"
#include "design/DesignGrid.h"
#include "elementary/Elementary.h"
#include "files/FilterFile.h"
#include "files/ImpulseResponse.h"
#include "files/InputError.h"
#include "files/LevelTable.h"
#include "files/SectionText.h"
#include "soundfile/SoundFile.h"
#include "transform/FftTables.h"
#include "transform/SpectrumBuffer.h"

namespace tonvane {

namespace {

struct ConvertOptions {
    ResponseOptions input;           // or a filter file
    std::string output;              // its extension says what it becomes
    std::optional<ExportKind> kind;  // of a filter file's output, ahead of the extension
};

bool isTableName(const std::string& extension) {
    return extension == ".csv" || extension == ".txt" || extension == ".frd";
}

ExportKind exportKindOf(const ConvertOptions& options) {
    if (options.kind) {
        return *options.kind;
    }
    const std::string extension = LowerCaseExtension(options.output);
    if (extension == ".json") {
        return ExportKind::json;
    }
    if (extension == ".csv") {
        return ExportKind::csv;
    }
    if (extension == ".yml" || extension == ".yaml") {
        return ExportKind::camillaDsp;
    }
    throw InputError(options.output, "say with --kind which program a filter file is for");
}

std::string convertFilters(const ConvertOptions& options, const InputFile& file) {
    std::vector<int32_t> words;
    const auto records = ParseFilterFile(file.path, file.bytes);
    words.reserve(records.size() * wordsPerBiquad);
    for (const FilterRecord& record : records) {
        words.insert(words.end(), record.words.begin(), record.words.end());
    }
    return FormatExport({exportKindOf(options), options.output}, {words, options.input.rate});
}

std::string convertTable(const ConvertOptions& options, CsvTable& table, InputNotes& notes) {
    if (!isTableName(LowerCaseExtension(options.output))) {
        throw InputError(options.output,
                         "a table of levels has no phase; it can become .csv, .txt or .frd");
    }
    if (options.input.rate) {
        FitTableToRate(options.input.path, table, *options.input.rate, notes);
    }
    const auto count = static_cast<size_t>(table.count);
    return FormatLevelRows(std::span(table.frequency).first(count),
                           std::span(table.level).first(count));
}

// The levels of the bins above 0 Hz, to half the rate.
std::string spectrumRows(const SpeakerResponse& response) {
    constexpr double floorDb = -400.0;
    InitFftTables(responseLength);
    SpectrumBuffer buffer;
    buffer.resize(responseLength);
    std::ranges::copy(response.samples, buffer.time().begin());
    buffer.forward();
    std::vector<double> frequencies;
    std::vector<double> levels;
    frequencies.reserve(responseBins);
    levels.reserve(responseBins);
    for (int32_t bin = 1; bin < responseBins; ++bin) {
        const double magnitude = std::abs(buffer.spectrum[bin]);
        frequencies.push_back(static_cast<double>(bin) * response.rate / responseLength);
        levels.push_back(magnitude > 0.0 ? std::max(20.0 * elementary::Log10(magnitude), floorDb)
                                         : floorDb);
    }
    return FormatLevelRows(frequencies, levels);
}

std::string convertImpulse(const ConvertOptions& options, const SpeakerResponse& response) {
    const std::string extension = LowerCaseExtension(options.output);
    if (extension == ".qsr") {
        return FormatResponseFile(response.rate, response.samples);
    }
    if (extension == ".wav") {
        return FormatWaveFile(response.rate, response.samples);
    }
    if (extension == ".f32" || extension == ".raw") {
        return FormatRawSamples(response.samples);
    }
    if (isTableName(extension)) {
        return spectrumRows(response);
    }
    throw InputError(options.output,
                     "an impulse response can become .qsr, .wav, .f32, .raw, .csv, .txt or .frd");
}

// Reads a response or a filter file and writes it in another form:
//   a table as .csv, .txt or .frd: rows "frequency,level", ended at half the rate if one is given;
//   an impulse response as .qsr, .wav (float32), .f32 or .raw, or as a table of its spectrum;
//   a filter file as one of the exports.
// Throws InputError for input that cannot be used, for forms that the input cannot take and for an
// output that cannot be written; it is then as it was.
void convert(const ConvertOptions& options) {
    PrepareOutputs({options.output}, {options.input.path});
    InputNotes notes(options.input.strict);
    InputFile source = ReadInputFile(options.input.path, notes);
    std::string contents;
    if (source.kind == InputKind::filters) {
        contents = convertFilters(options, source);
    } else if (options.kind) {
        throw InputError(options.input.path, "is a response; --kind is for filter files");
    } else {
        ResponseInput input = ReadResponse(options.input, std::move(source), notes);
        contents = input.isTable ? convertTable(options, input.table, notes)
                                 : convertImpulse(options, input.impulse);
    }
    const NewContents file{options.output, std::move(contents)};
    WriteOutputs(std::span(&file, 1));
    PrintNotes(notes);
    std::printf("Wrote %s\n", options.output.c_str());
}

}  // namespace

void AddConvertCommand(Command& program) {
    struct Values {
        ConvertOptions options;
        std::string kind;
    };
    const auto values = std::make_shared<Values>();
    ConvertOptions& options = values->options;
    Command command = program.subcommand(
        "convert", "Convert a response, or export a filter file for another program");
    command.option("input", options.input.path, "Response or filter file").required();
    command.option("output", options.output, "File to write; its extension says what").required();
    command.option("--rate", options.input.rate,
                   "Sample rate in Hz: of raw samples, of the use of a table, of a filter file");
    command.option("--kind", values->kind, "What a filter file becomes").oneOf(ExportKindNames());
    AddInputOptions(command, options.input);
    command.footer("Example: tonvane-cli convert filters.txt eq.yml --rate 48000");
    command.action([values] {
        values->options.kind = ParseExportKind(values->kind);
        convert(values->options);
    });
}

}  // namespace tonvane
