// The design parameter file: read, written over an existing text, and read again.
#include <algorithm>

#include "FuzzSupport.h"
#include "files/DesignParameters.h"
#include "files/ProfileText.h"

namespace tonvane::fuzz {

namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// Everything but the key's own line stays, in order.
void checkSet(std::string_view text, const char* section, const char* key, int32_t value) {
    ProfileText profile(text);
    const ProfileText before = profile;
    profile.setInteger(section, key, value);
    Require(profile.integer(section, key, value ^ 1) == value, "what was set is read back");
    Require(profile.integer("Other", "keep", -7) == before.integer("Other", "keep", -7),
            "other keys stay");
    Require(ProfileText(profile.text()).text() == profile.text(), "the text is that of its lines");

    const std::vector<std::string> after = linesOf(profile.text());
    auto place = after.begin();
    for (const std::string& line : linesOf(text)) {
        if (line.find('=') == std::string::npos) {
            place = std::find(place, after.end(), line);
            Require(place != after.end(), "lines without a value stay");
            ++place;
        }
    }
}

void checkSave(const std::string& path, const DesignParameters& parameters) {
    Require(!SaveDesignParameterFile(path, parameters), "the file is written");
    const DesignParameters back = LoadDesignParameterFile(path, TargetRecord{});
    Require(back.targetCurveIndex == parameters.targetCurveIndex, "the choice comes back");
    Require(back.gainIndex == parameters.gainIndex, "the gain clamp comes back");
    Require(back.curves == parameters.curves, "the curves come back");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    const std::string_view input = TextOf(data, size);
    const uint32_t hash = HashOf(input);
    checkSet(input, "Global", "EqAttn", static_cast<int32_t>(hash));
    checkSet(input, "TargetCurveTop3", "pts0_x", static_cast<int32_t>(hash >> 20U));

    const std::string path = ScratchFile(input);
    const DesignParameters parameters = LoadDesignParameterFile(path, BuiltInTargetCurve);
    Require(parameters.targetCurveIndex >= 0 && parameters.targetCurveIndex < curveCount,
            "the choice is one of ten");
    if (hash % 16 == 0) {
        checkSave(path, parameters);
    }
    return 0;
}
