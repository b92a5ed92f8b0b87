#include "app/ConvertCommand.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include "app/OutputFiles.h"
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

std::string convertFilters(const ConvertOptions& options) {
    std::vector<int32_t> words;
    const auto records = ReadCheckedFilterFile(options.input.path);
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

}  // namespace

void RunConvertCommand(const ConvertOptions& options) {
    ExpectDistinctFiles({options.output}, {options.input.path});
    InputNotes notes(options.input.strict);
    const InputKind kind = KindOfInput(options.input.path, notes);
    std::string contents;
    if (kind == InputKind::filters) {
        contents = convertFilters(options);
    } else if (options.kind) {
        throw InputError(options.input.path, "is a response; --kind is for filter files");
    } else {
        ResponseInput input = ReadResponse(options.input, kind, notes);
        contents = input.isTable ? convertTable(options, input.table, notes)
                                 : convertImpulse(options, input.impulse);
    }
    const NewContents file{options.output, std::move(contents)};
    WriteOutputs(std::span(&file, 1));
    PrintNotes(notes);
    std::printf("Wrote %s\n", options.output.c_str());
}

}  // namespace tonvane
