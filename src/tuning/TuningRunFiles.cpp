// What a tuning run leaves behind.
#include <cstdint>
#include <filesystem>

#include "files/FilterFile.h"
#include "files/ResponseFile.h"
#include "platform/FileAccess.h"
#include "platform/System.h"
#include "tuning/TuningRun.h"

namespace tonvane {

void TuningRun::SaveFiltersOnExit() {
    if (values_.FilterFilePath.empty()) {
        return;
    }
    if (!responseAnalyzer.valid && !csvTable.allocated()) {
        return;
    }
    if (promptOnExit && !messages_.confirm("Do you want to save filters?", "Prompt")) {
        return;
    }
    if (const auto reason = WriteFilterFile()) {
        messages_.warning(values_.FilterFilePath + ": cannot be written: " + *reason);
    }
    SaveTargetFile();
}

std::optional<std::string> TuningRun::WriteFilterFile() {
    if (!responseAnalyzer.valid) {
        return std::nullopt;
    }
    const std::string& response = values_.ResponseFilePath;
    for (const std::string& source : {response, FindLowerCasePath(response)}) {
        if (!source.empty() && IsSameFile(source, values_.FilterFilePath)) {
            return "it is the response";
        }
    }
    const std::string text = WithSystemLineEnds(FormatFilterFile(fittedWords(), registerAddresses));
    return ReplaceFile(values_.FilterFilePath, text, InPlace::whenFolderRefuses);
}

void TuningRun::SaveTargetFile() {
    const std::string& path = values_.TargetFilePath;
    if (path.empty()) {
        return;
    }
    if (responseAnalyzer.valid && IsSameFile(path, values_.FilterFilePath)) {
        messages_.warning(path + ": is the filter file as well; the target takes its place");
    }
    const std::string text = WithSystemLineEnds(
        FormatTargetFile(curves[currentCurve], values_.TargetCurveKind, gainIndex));
    const bool isKept = !values_.TargetFileIsDamaged || keepDamagedTarget();
    const auto reason = isKept ? ReplaceFile(path, text, InPlace::whenFolderRefuses) : std::nullopt;
    if (!isKept || reason) {
        messages_.error("Failed to save Target Response data.");
    }
    if (reason) {
        messages_.warning(path + ": cannot be written: " + *reason);
    }
}

// Whether the target file may be written over.
bool TuningRun::keepDamagedTarget() {
    const std::string& path = values_.TargetFilePath;
    const std::string copy = path + ".bak";
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(PathOf(path), ignored)) {
        return true;
    }
    ReadFault fault;
    const auto contents = ReadBinaryFile(path, SIZE_MAX, &fault);
    const auto reason = contents ? ReplaceFile(copy, *contents) : fault.reason;
    if (reason) {
        messages_.warning(path + ": did not load, and stays as it is: it cannot be kept in " +
                          copy + ": " + *reason);
        return false;
    }
    messages_.warning(path + ": did not load; what it held is in " + copy);
    return true;
}

}  // namespace tonvane
