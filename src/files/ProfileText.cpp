#include "files/ProfileText.h"

#include "text/Ascii.h"
#include "text/TextScanner.h"

namespace tonvane {

namespace {

std::string_view trimmed(std::string_view text) {
    return Trim(text, " \t\r");
}

// The name between brackets; nothing for a line that is no section's head.
std::optional<std::string_view> sectionName(std::string_view line) {
    line = trimmed(line);
    const size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos) {
        return std::nullopt;
    }
    return trimmed(line.substr(1, end - 1));
}

}  // namespace

ProfileText::ProfileText(std::string_view text) {
    for (TextScanner scanner(text); !scanner.atEnd();) {
        lines_.emplace_back(scanner.restOfLine());
    }
}

ProfileText::Place ProfileText::find(std::string_view section, std::string_view key) const {
    Place place{std::nullopt, lines_.size(), false};
    for (size_t i = 0; i < lines_.size(); ++i) {
        const std::string_view line = lines_[i];
        if (const auto name = sectionName(line)) {
            if (place.hasSection) {
                break;  // only the first section of a name counts
            }
            place.hasSection = IsSameWord(*name, section);
            place.sectionEnd = place.hasSection ? i + 1 : lines_.size();
        } else if (place.hasSection && !trimmed(line).empty()) {
            place.sectionEnd = i + 1;
            const size_t equals = line.find('=');
            if (equals != std::string_view::npos &&
                IsSameWord(trimmed(line.substr(0, equals)), key)) {
                place.key = i;
                break;
            }
        }
    }
    return place;
}

int32_t ProfileText::integer(std::string_view section, std::string_view key,
                             int32_t missing) const {
    const Place place = find(section, key);
    if (!place.key) {
        return missing;
    }
    const std::string_view line = lines_[*place.key];
    const std::string_view value = trimmed(line.substr(line.find('=') + 1));
    return value.empty() ? missing : TextScanner(value).integer().value_or(0);
}

void ProfileText::setInteger(std::string_view section, std::string_view key, int32_t value) {
    Place place = find(section, key);
    const std::string line = std::string(key) + "=" + std::to_string(value);
    if (place.key) {
        lines_[*place.key] = line;
        return;
    }
    if (!place.hasSection) {
        lines_.push_back("[" + std::string(section) + "]");
        place.sectionEnd = lines_.size();
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place.sectionEnd), line);
}

std::string ProfileText::text() const {
    std::string all;
    for (const std::string& line : lines_) {
        all += line + "\n";
    }
    return all;
}

}  // namespace tonvane
