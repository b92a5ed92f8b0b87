#include "app/ResponseInput.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "app/OutputFiles.h"
#include "files/ImpulseResponse.h"
#include "files/InputError.h"
#include "files/LevelTable.h"
#include "files/RateRange.h"
#include "soundfile/SoundFile.h"

namespace tonvane {

namespace {

constexpr const char* kindNames[] = {"a table of levels", "a wave file", "raw samples",
                                     "a speaker response", "a filter file"};

struct Extension {
    const char* text;
    InputKind kind;
};
constexpr std::array extensions{
    Extension{".csv", InputKind::table}, Extension{".txt", InputKind::table},
    Extension{".frd", InputKind::table}, Extension{".wav", InputKind::wave},
    Extension{".wave", InputKind::wave}, Extension{".f32", InputKind::raw},
    Extension{".raw", InputKind::raw},   Extension{".qsr", InputKind::speakerResponse},
};

std::optional<InputKind> kindOfName(const std::string& path) {
    const auto entry = std::ranges::find(extensions, LowerCaseExtension(path), &Extension::text);
    return entry == extensions.end() ? std::nullopt : std::optional(entry->kind);
}

bool isText(std::string_view start) {
    const bool isUtf16 = start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF");
    return isUtf16 || std::ranges::none_of(start, [](char c) {
               const auto byte = static_cast<unsigned char>(c);
               return byte < 0x20 && c != '\n' && c != '\r' && c != '\t' && c != '\f';
           });
}

InputKind kindOfContent(std::string_view start) {
    if (BeginsLikeSoundFile(start)) {
        return InputKind::wave;
    }
    if (!isText(start)) {
        return InputKind::speakerResponse;
    }
    const size_t first = std::min(start.find_first_not_of(" \t\r\n"), start.size());
    const auto words = start.substr(first, 2);
    return words == "0x" || words == "0X" ? InputKind::filters : InputKind::table;
}

[[noreturn]] void refuseRate(const ResponseOptions& options, int32_t rate) {
    throw InputError(options.path, "the file's sample rate is " + std::to_string(rate) +
                                       " Hz, not the " + std::to_string(*options.rate) +
                                       " Hz asked for; responses are not resampled");
}

SpeakerResponse readImpulse(const ResponseOptions& options, InputFile& file, InputNotes& notes) {
    const std::string& path = file.path;
    if (file.kind == InputKind::speakerResponse) {
        return ParseResponseFile(path, file.bytes);
    }
    SpeakerResponse response{};
    if (file.kind == InputKind::raw) {
        if (!options.rate) {
            throw InputError(path, "raw samples come without a sample rate; give it with --rate");
        }
        response = {*options.rate, ParseRawSamples(path, file.bytes)};
    } else {
        SoundChannel sound = ReadSoundChannel(path, std::move(file.bytes), options.channel, notes);
        response = {sound.rate, std::move(sound.samples)};
    }
    response.samples = FitImpulse(path, std::move(response.samples), notes);
    CheckSpeakerResponse(path, response);
    return response;
}

// By the content, but for raw samples.
InputKind kindOf(const std::string& path, std::string_view bytes, InputNotes& notes) {
    constexpr size_t startBytes = 512;
    const auto byName = kindOfName(path);
    const InputKind byContent = kindOfContent(bytes.substr(0, startBytes));
    if (byName == InputKind::raw && byContent != InputKind::wave) {
        return InputKind::raw;
    }
    const bool isFilterText = byName == InputKind::table && byContent == InputKind::filters;
    if (byName && *byName != byContent && !isFilterText) {
        notes.guessed(path, 0,
                      std::string("taken for ") + kindNames[static_cast<size_t>(byContent)] +
                          " by its content, though not by its name");
    }
    return byContent;
}

}  // namespace

void AddInputOptions(Command& command, ResponseOptions& options) {
    command.option("--channel", options.channel, "Channel of a wave file, from 1");
    command.flag("--strict", options.strict, "Refuse a response where something has to be guessed");
}

InputFile ReadInputFile(const std::string& path, InputNotes& notes) {
    constexpr size_t mostBytes = size_t{512} << 20U;
    InputFile file{path, InputKind::table, ReadInputBytes(path, mostBytes + 1)};
    if (file.bytes.empty()) {
        throw InputError(path, "the file is empty; expected a speaker response or a table");
    }
    if (file.bytes.size() > mostBytes) {
        throw InputError(path, "expected a file of at most 512 MB");
    }
    file.kind = kindOf(path, file.bytes, notes);
    return file;
}

ResponseInput ReadResponse(const ResponseOptions& options, InputNotes& notes) {
    return ReadResponse(options, ReadInputFile(options.path, notes), notes);
}

ResponseInput ReadResponse(const ResponseOptions& options, InputFile file, InputNotes& notes) {
    if (options.rate && !IsUsableRate(*options.rate)) {
        throw InputError("--rate", "expected " + std::string(usableRates));
    }
    if (file.kind == InputKind::filters) {
        throw InputError(options.path, 1, "is a filter file; expected a speaker's response");
    }
    ResponseInput input;
    input.isTable = file.kind == InputKind::table;
    if (input.isTable) {
        ParseLevelTable(options.path, file.bytes, input.table, notes);
    } else {
        input.impulse = readImpulse(options, file, notes);
        if (options.rate.value_or(input.impulse.rate) != input.impulse.rate) {
            refuseRate(options, input.impulse.rate);
        }
    }
    if (options.channel && file.kind != InputKind::wave) {
        throw InputError("--channel", "only a wave file has channels");
    }
    return input;
}

void StartWithResponse(const ResponseOptions& options, ResponseInput&& input, InputNotes& notes,
                       ProgramValues& values, TuningRun& run) {
    const int32_t rate =
        input.isTable ? options.rate.value_or(values.InputSampleRate) : input.impulse.rate;
    values.InputSampleRate = rate;
    values.FilterSampleRate = rate;
    values.ResponseIsCsv = input.isTable;
    run.InitTuningState();
    if (input.isTable) {
        FitTableToRate(options.path, input.table, rate, notes);
        run.csvTable = std::move(input.table);
        run.takeCsvTable();
    } else {
        run.takeImpulse(rate, input.impulse.samples);
    }
    run.responseReady = true;
}

void PrintNotes(const InputNotes& notes) {
    for (const std::string& note : notes.texts()) {
        std::fprintf(stderr, "Note: %s\n", note.c_str());
    }
}

}  // namespace tonvane
