#include "files/TargetFile.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "files/InputError.h"
#include "platform/FileAccess.h"
#include "text/TextScanner.h"

namespace tonvane {

namespace {

constexpr std::array<std::string_view, 3> kindWords{"-zerocurve", "-usercurve", "-savedcurve"};

// The first line is read in a piece of at most this many characters, the longest word's length; a
// line end that does not fit in is skipped as white space by what follows.
constexpr size_t firstLineLimit = 11;

// The kind of the first line's word; -1 for another one.
int32_t readKind(TextScanner& scanner) {
    std::string_view word = scanner.lineFragment(firstLineLimit);
    if (word.ends_with('\n')) {
        word.remove_suffix(1);
    }
    const auto match = std::ranges::find(kindWords, word);
    return match == kindWords.end() ? -1 : static_cast<int32_t>(match - kindWords.begin());
}

// "frequency,level", blanks allowed in front of each number; whether both were there. A frequency
// without a level is stored alone.
bool readKnot(TextScanner& scanner, CurvePoint& knot) {
    const auto frequency = scanner.integer();
    if (!frequency) {
        return false;
    }
    const auto level = scanner.literal(',') ? scanner.integer() : std::nullopt;
    knot.frequency = *frequency;
    knot.level = level.value_or(knot.level);
    return level.has_value();
}

}  // namespace

TargetFileStatus LoadTargetFile(const std::string& path, TargetSettings& settings) {
    ReadFault fault;
    const auto text = ReadTextFile(path, &fault);
    if (!text) {
        return fault.isMissing   ? TargetFileStatus::missing
               : fault.wasOpened ? TargetFileStatus::damaged
                                 : TargetFileStatus::closed;
    }
    TextScanner scanner(*text);
    const int32_t kind = readKind(scanner);
    if (kind < 0) {
        return TargetFileStatus::damaged;
    }
    settings.kind = kind;
    settings.gainClampDb = scanner.integer().value_or(settings.gainClampDb);
    for (int32_t i = 0; i < TargetRecord::knotCount; ++i) {
        if (!readKnot(scanner, settings.curve.points[i])) {
            return TargetFileStatus::damaged;
        }
    }
    return TargetFileStatus::loaded;
}

TargetSettings ReadCheckedTargetFile(const std::string& path) {
    const std::string text = ReadInputText(path);
    TextScanner scanner(text);
    TargetSettings settings;
    const std::string_view word = scanner.restOfLine();
    const auto match =
        std::ranges::find(kindWords, word.substr(0, word.find_last_not_of(" \t\r") + 1));
    if (match == kindWords.end()) {
        throw InputError(path, 1, "expected -zerocurve, -usercurve or -savedcurve");
    }
    settings.kind = static_cast<int32_t>(match - kindWords.begin());

    const auto nextLine = [&] { return TextScanner(scanner.restOfLine()); };
    const auto expectEnd = [&](TextScanner& line, int number, const char* expected) {
        line.skipSpace();
        if (!line.atEnd()) {
            throw InputError(path, number, expected);
        }
    };

    TextScanner gainLine = nextLine();
    constexpr const char* gainForm = "expected the gain clamp in whole dB, 0 to -12";
    const auto gain = gainLine.integer();
    if (!gain || std::abs(static_cast<int64_t>(*gain)) > 12) {
        throw InputError(path, 2, gainForm);
    }
    expectEnd(gainLine, 2, gainForm);
    settings.gainClampDb = *gain;

    int32_t before = 0;
    for (int32_t i = 0; i < TargetRecord::knotCount; ++i) {
        const int number = i + 3;
        constexpr const char* knotForm = "expected a knot \"frequency, level\" in whole Hz and dB";
        CurvePoint& knot = settings.curve.points[i];
        TextScanner line = nextLine();
        if (!readKnot(line, knot)) {
            throw InputError(path, number, knotForm);
        }
        expectEnd(line, number, knotForm);
        if (knot.frequency < 1 || knot.frequency > 1000000) {
            throw InputError(path, number, "expected a frequency of 1 to 1000000 Hz");
        }
        if (knot.frequency <= before) {
            throw InputError(path, number, "expected a frequency above that of the line before");
        }
        if (std::abs(static_cast<int64_t>(knot.level)) > 60) {
            throw InputError(path, number, "expected a level between -60 and 60 dB");
        }
        before = knot.frequency;
    }
    return settings;
}

std::string FormatTargetFile(const TargetRecord& curve, int32_t kind, int32_t gainIndex) {
    std::string text;
    if (kind >= 0 && kind < static_cast<int32_t>(kindWords.size())) {
        text += std::string(kindWords[kind]) + "\n";
    }
    text += std::to_string(-gainIndex) + "\n";
    for (int32_t i = 0; i < TargetRecord::knotCount; ++i) {
        const CurvePoint& knot = curve.points[i];
        text += std::to_string(knot.frequency) + ", " + std::to_string(knot.level) + "\n";
    }
    return text;
}

}  // namespace tonvane
