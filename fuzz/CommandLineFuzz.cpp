// The tail of a command line: its tokens, and what a batch start makes of them.
#include <algorithm>

#include "FuzzSupport.h"
#include "app/CommandLine.h"

namespace tonvane::fuzz {

namespace {

std::string joined(std::span<const std::string> tokens) {
    std::string text;
    for (size_t i = 0; i < tokens.size(); ++i) {
        text += i == 0 ? "" : " ";
        text += tokens[i];
    }
    return text;
}

void checkTokens(const std::string& raw, std::span<const std::string> tokens) {
    Require(tokens.empty() == raw.empty(), "only an empty tail has no tokens");
    const auto blanks = static_cast<size_t>(std::ranges::count(raw, ' '));
    Require(tokens.size() <= blanks + 1, "only blanks separate tokens");
    for (const std::string& token : tokens) {
        Require(raw.find(token) != std::string::npos, "a token is a piece of the tail");
    }
    if (raw.find('"') == std::string::npos) {
        Require(joined(tokens) == raw, "without quotes every blank separates");
    }
}

void checkTail(std::span<const std::string> arguments) {
    const bool expressible = std::ranges::none_of(arguments, [](const std::string& argument) {
        return argument.starts_with(' ') || argument.find("\" ") != std::string::npos;
    });
    if (expressible) {
        Require(std::ranges::equal(TokenizeCommandLine(CommandTail(arguments)), arguments),
                "arguments come back from their tail");
    }
}

void checkFilterPath(const std::string& token) {
    const std::string folder = "/folder/";
    const std::string path = ResolveFilterPath(token, folder);
    const bool behindFolder = path.starts_with(folder);
    Require(path == token || behindFolder, "a filter path is as given or behind the folder");
    if (token.find('\\') == std::string::npos || token.starts_with('.')) {
        Require(behindFolder, "a name without a folder lies in the folder");
    }
}

// The target token, a path, is replaced by one that leads to a file with the input in it.
void checkInterpretation(const std::string& raw, std::vector<std::string> tokens) {
    if (tokens.size() > 5 && !tokens[5].empty()) {
        tokens[5] = ScratchFile(raw);
    }
    ProgramValues values;
    values.AppDirectory = ScratchFolder();
    SilentMessages messages;
    const bool ask = InterpretCommandLine(tokens, values, messages);

    const bool isBatch = tokens.size() >= 3 && tokens[0] == "-cmd";
    Require(values.InputSampleRate > 0, "a rate stays positive");
    Require(values.FilterSampleRate == values.InputSampleRate, "both rates are one");
    Require(values.ResponseFilePath == (isBatch ? tokens[2] : ""), "token 2 is the response");
    const bool saves = isBatch && tokens.size() > 4 && !tokens[4].empty();
    Require(values.FilterFilePath.empty() != saves, "token 4 names the filter file");
    const bool quiet = tokens.size() > 6 && tokens[6] == "-noprompt";
    Require(ask == (saves && !quiet), "a start that saves asks unless told otherwise");
    const bool hasTarget = isBatch && tokens.size() > 5 && !tokens[5].empty();
    Require(values.TargetFilePath.empty() != hasTarget, "token 5 names the target file");
    Require(hasTarget || values.DefaultTargetCurve == BuiltInTargetCurve,
            "without a target file the curve is the built-in one");
    Require(values.TargetCurveKind >= zeroCurve && values.TargetCurveKind <= savedCurve,
            "the kind of the curve is one of three");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane::fuzz;
    const std::string raw(TextOf(data, size));
    const std::vector<std::string> tokens = tonvane::TokenizeCommandLine(raw);
    checkTokens(raw, tokens);
    checkTail(tokens);
    for (const std::string& token : tokens) {
        checkFilterPath(token);
    }
    checkInterpretation(raw, tokens);
    return 0;
}
