#include "files/DesignParameters.h"

#include <algorithm>

#include "files/ProfileText.h"
#include "platform/FileAccess.h"
#include "platform/System.h"

namespace tonvane {

namespace {

constexpr const char* globalSection = "Global";
constexpr const char* curveKey = "TargetCurveIndex";
constexpr const char* gainKey = "EqAttn";

std::string curveSection(int32_t curve) {
    return "TargetCurveTop" + std::to_string(curve);
}

std::string pointKey(size_t point, char axis) {
    return "pts" + std::to_string(point) + "_" + axis;
}

}  // namespace

DesignParameters LoadDesignParameterFile(const std::string& path,
                                         const TargetRecord& defaultCurve) {
    const ProfileText profile(ReadTextFile(path).value_or(""));
    DesignParameters parameters;
    parameters.targetCurveIndex =
        std::clamp(profile.integer(globalSection, curveKey, 0), 0, curveCount - 1);
    parameters.gainIndex =
        profile.integer(globalSection, gainKey, DesignParameters::defaultGainIndex);
    for (int32_t c = 0; c < curveCount; ++c) {
        const std::string section = curveSection(c);
        for (size_t i = 0; i < defaultCurve.points.size(); ++i) {
            const CurvePoint missing = defaultCurve.points[i];
            parameters.curves[c].points[i] = {
                profile.integer(section, pointKey(i, 'x'), missing.frequency),
                profile.integer(section, pointKey(i, 'y'), missing.level)};
        }
    }
    return parameters;
}

std::optional<std::string> SaveDesignParameterFile(const std::string& path,
                                                   const DesignParameters& parameters) {
    ReadFault fault;
    const auto before = ReadTextFile(path, &fault);
    if (!before && !fault.isMissing) {
        return fault.reason;
    }
    ProfileText profile(before.value_or(""));
    profile.setInteger(globalSection, curveKey, parameters.targetCurveIndex);
    profile.setInteger(globalSection, gainKey, parameters.gainIndex);
    for (int32_t c = 0; c < curveCount; ++c) {
        const std::string section = curveSection(c);
        const auto& points = parameters.curves[c].points;
        for (size_t i = 0; i < points.size(); ++i) {
            profile.setInteger(section, pointKey(i, 'x'), points[i].frequency);
            profile.setInteger(section, pointKey(i, 'y'), points[i].level);
        }
    }
    return ReplaceFile(path, WithSystemLineEnds(profile.text()), InPlace::whenFolderRefuses);
}

}  // namespace tonvane
