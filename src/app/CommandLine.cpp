#include "app/CommandLine.h"

#include <algorithm>

#include "text/TextScanner.h"

namespace tonvane {

namespace {

enum TokenNumber : size_t { command, rate, response, responseKind, filter, target, prompt };

// The token, empty where the line is shorter.
std::string tokenAt(std::span<const std::string> tokens, size_t number) {
    return number < tokens.size() ? tokens[number] : std::string();
}

void loadTarget(const std::string& path, ProgramValues& values, Messages& messages) {
    TargetSettings settings{values.DefaultTargetCurve, values.TargetCurveKind,
                            values.InitialGainClamp};
    const TargetFileStatus status = LoadTargetFile(path, settings);
    values.DefaultTargetCurve = settings.curve;
    values.TargetCurveKind = settings.kind;
    values.InitialGainClamp = settings.gainClampDb;
    values.TargetFileIsDamaged =
        status == TargetFileStatus::damaged || status == TargetFileStatus::closed;
    if (status == TargetFileStatus::closed) {
        messages.warning(path + ": cannot be opened; the built-in curve is used");
    }
    if (status == TargetFileStatus::damaged) {
        messages.error("Failed to load desired response data. File is missing.");
    }
    values.TargetFilePath = path;
}

}  // namespace

std::vector<std::string> TokenizeCommandLine(const std::string& raw) {
    std::vector<std::string> tokens;
    if (raw.empty()) {
        return tokens;
    }
    size_t start = 0;
    bool inQuotes = false;
    for (size_t i = 0;; ++i) {
        if (!inQuotes && i < raw.size() && raw[i] == '"') {
            ++start;
            ++i;
            inQuotes = true;
        }
        const bool atEnd = i >= raw.size();
        if (!atEnd && raw[i] != ' ') {
            continue;
        }
        size_t end = i;
        if (inQuotes) {
            const bool closed = raw[i - 1] == '"';
            if (!closed && !atEnd) {
                continue;  // the blank belongs to the token
            }
            end = closed ? i - 1 : i;
            inQuotes = inQuotes && !closed;
        }
        tokens.push_back(raw.substr(std::min(start, raw.size()), end > start ? end - start : 0));
        start = i + 1;
        if (atEnd) {
            return tokens;
        }
    }
}

std::string CommandTail(std::span<const std::string> arguments) {
    std::string tail;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const bool plain = !argument.empty() && argument.find_first_of(" \"") == std::string::npos;
        tail += i == 0 ? "" : " ";
        tail += plain ? argument : "\"" + argument + "\"";
    }
    return tail;
}

std::string ResolveFilterPath(const std::string& token, const std::string& appDirectory) {
    const size_t backslash = token.rfind('\\');
    const bool hasFolder = backslash != std::string::npos;
    const std::string folder = hasFolder ? token.substr(0, backslash) : token;
    if (folder.starts_with('.')) {
        return appDirectory + token.substr(std::min<size_t>(2, token.size()));
    }
    return hasFolder ? token : appDirectory + token;
}

bool InterpretCommandLine(std::span<const std::string> tokens, ProgramValues& values,
                          Messages& messages) {
    if (tokens.size() < 3 || tokens[command] != "-cmd") {
        return false;
    }
    const int32_t hertz = TextScanner(tokens[rate]).integer().value_or(0);
    if (hertz > 0) {
        values.InputSampleRate = hertz;
        values.FilterSampleRate = hertz;
    }
    values.ResponseFilePath = tokens[response];
    values.ResponseIsCsv = tokenAt(tokens, responseKind) != "qsr";

    bool promptOnExit = false;
    const std::string filterToken = tokenAt(tokens, filter);
    values.FilterFilePath.clear();
    if (!filterToken.empty()) {
        values.FilterFilePath = ResolveFilterPath(filterToken, values.AppDirectory);
        promptOnExit = tokenAt(tokens, prompt) != "-noprompt";
    }
    const std::string targetToken = tokenAt(tokens, target);
    if (!targetToken.empty()) {
        loadTarget(targetToken, values, messages);
    }
    return promptOnExit;
}

}  // namespace tonvane
