// The target file: both readers against each other and against the writer.
#include <cstdlib>

#include "FuzzSupport.h"
#include "files/TargetFile.h"

namespace tonvane::fuzz {

namespace {

bool same(const TargetSettings& a, const TargetSettings& b) {
    return a.curve == b.curve && a.kind == b.kind && a.gainClampDb == b.gainClampDb;
}

void checkRanges(const TargetSettings& settings) {
    Require(std::abs(settings.gainClampDb) <= 12, "the gain clamp is at most 12 dB");
    int32_t before = 0;
    for (int32_t i = 0; i < TargetRecord::knotCount; ++i) {
        const CurvePoint knot = settings.curve.points[i];
        Require(knot.frequency > before && knot.frequency <= 1000000, "frequencies rise");
        Require(std::abs(knot.level) <= 60, "levels are at most 60 dB");
        before = knot.frequency;
    }
}

void checkEdges(const TargetSettings& settings) {
    for (const int32_t edge : {TargetRecord::lowEdge, TargetRecord::highEdge}) {
        Require(settings.curve.points[edge] == BuiltInTargetCurve.points[edge],
                "the band edges are not in the file");
    }
    Require(settings.kind >= zeroCurve && settings.kind <= savedCurve, "there are three kinds");
}

// Blanks behind the first word are taken from a person only.
bool wordEndsItsLine(std::string_view text) {
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    const std::string_view end = text.substr(line.size());
    return !line.ends_with(' ') && !line.ends_with('\t') &&
           (end.empty() || end.starts_with('\n') || end.starts_with("\r\n"));
}

void checkWriter(const TargetSettings& settings) {
    const int32_t gainIndex = -(settings.gainClampDb % 13);
    const std::string text = FormatTargetFile(settings.curve, settings.kind, gainIndex);
    TargetSettings back;
    const TargetFileStatus status = LoadTargetFile(ScratchFile(text, "written"), back);
    Require(status == TargetFileStatus::loaded, "a written file is read");
    TargetSettings expected = settings;
    expected.gainClampDb = -gainIndex;
    Require(same(back, expected), "a written file gives back what was written");
}

}  // namespace

}  // namespace tonvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace tonvane;
    using namespace tonvane::fuzz;
    const std::string_view input = TextOf(data, size);
    const std::string path = ScratchFile(input);

    TargetSettings plain;
    const TargetFileStatus status = LoadTargetFile(path, plain);
    Require(status != TargetFileStatus::missing, "a file that is there is not missing");
    checkEdges(plain);
    checkWriter(plain);

    TargetSettings checked;
    if (Accepts([&] { checked = ReadCheckedTargetFile(path); })) {
        checkEdges(checked);
        checkRanges(checked);
        if (wordEndsItsLine(input)) {
            Require(status == TargetFileStatus::loaded && same(plain, checked),
                    "a calling tool gets the target that a person gets");
        }
    }
    return 0;
}
