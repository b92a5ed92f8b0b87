#include "files/FilterFile.h"

#include <optional>
#include <vector>

#include <fmt/core.h>

#include "amplifier/FixedPoint.h"
#include "files/InputError.h"
#include "text/Ascii.h"
#include "text/TextScanner.h"
#include "text/WholeNumbers.h"

namespace tonvane {

namespace {

constexpr uint32_t continuation = 0xFF;  // in the place of an address
constexpr size_t bytesPerWord = 4;
constexpr size_t bytesPerRecord = bytesPerWord * wordsPerBiquad;

std::string bytesOf(int32_t word) {
    const auto bits = static_cast<uint32_t>(word);
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += fmt::format(" {:02X}", bits >> shift & 0xFFU);
    }
    return text;
}

std::optional<uint32_t> addressOf(std::string_view field) {
    return TakeHexPrefix(field) ? ParseHexDigits(field, 7) : std::nullopt;
}

// The word of four fields of a byte each.
std::optional<int32_t> wordOf(std::span<const std::string_view> fields) {
    uint32_t bits = 0;
    for (const std::string_view field : fields) {
        const auto byte = ParseHexDigits(field, 2);
        if (!byte) {
            return std::nullopt;
        }
        bits = bits << 8U | *byte;
    }
    return static_cast<int32_t>(bits);
}

}  // namespace

std::string FormatFilterFile(std::span<const int32_t> words, const RegisterAddressConfig& config) {
    const std::string separator =
        config.outputFormat == 4 ? fmt::format("\n0x{:02X}", continuation) : "";
    std::string text;
    for (size_t section = 0; section < config.addresses.size(); ++section) {
        text += fmt::format("0x{:02X}", static_cast<uint32_t>(config.addresses[section]));
        const auto record = words.subspan(section * wordsPerBiquad, wordsPerBiquad);
        text += bytesOf(record[0]);
        for (const int32_t word : record.subspan(1)) {
            text += separator + bytesOf(word);
        }
        text += "\n";
    }
    return text;
}

std::array<FilterRecord, 7> ReadCheckedFilterFile(const std::string& path) {
    return ParseFilterFile(path, ReadInputText(path));
}

std::array<FilterRecord, 7> ParseFilterFile(const std::string& path, std::string_view text) {
    std::array<FilterRecord, 7> records{};
    constexpr size_t allWords = records.size() * wordsPerBiquad;
    size_t words = 0;  // read so far
    int line = 0;
    for (TextScanner scanner(text); !scanner.atEnd();) {
        ++line;
        const auto fields = SplitAtBlanks(scanner.restOfLine(), " \t\r");
        if (fields.empty()) {
            continue;
        }
        if (words == allWords) {
            throw InputError(path, line, "expected nothing behind the seventh section");
        }
        FilterRecord& record = records[words / wordsPerBiquad];
        const bool isFirst = words % wordsPerBiquad == 0;
        const auto address = addressOf(fields[0]);
        const auto bytes = std::span(fields).subspan(1);
        if (!address || (!isFirst && *address != continuation) ||
            (bytes.size() != bytesPerWord && !(isFirst && bytes.size() == bytesPerRecord))) {
            throw InputError(path, line,
                             isFirst ? "expected an address such as 0x29 and 20 or 4 bytes"
                                     : "expected 0xFF and the next 4 bytes of the section");
        }
        if (isFirst) {
            record.address = static_cast<int32_t>(*address);
        }
        for (size_t i = 0; i < bytes.size(); i += bytesPerWord) {
            const auto word = wordOf(bytes.subspan(i, bytesPerWord));
            if (!word || (*word & ~coefficientMask) != 0) {
                throw InputError(path, line, "expected words of four bytes up to 03 FF FF FF");
            }
            record.words[words++ % wordsPerBiquad] = *word;
        }
    }
    if (line == 0) {
        throw InputError(path, "the file is empty; expected seven sections");
    }
    if (words != allWords) {
        throw InputError(path, line, "the file ends before the end of the seventh section");
    }
    return records;
}

}  // namespace tonvane
