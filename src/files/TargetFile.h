// The target response file: one target curve as nine lines of text.
//
// A word for the kind of curve ("-zerocurve", "-usercurve" or "-savedcurve"), the gain clamp in dB,
// then the seven knots as "frequency, level". The band edges are not in the file.
#pragma once

#include <cstdint>
#include <string>

#include "design/TargetRecord.h"

namespace tonvane {

struct TargetSettings {
    TargetRecord curve = BuiltInTargetCurve;
    int32_t kind = zeroCurve;  // a TargetKind
    int32_t gainClampDb = 0;   // dB, as in the file: normally 0 to -12
};

enum class TargetFileStatus {
    loaded,
    missing,  // is not there; nothing has changed
    closed,   // is there but cannot be opened; nothing has changed
    damaged,  // what was read up to the fault stands; of a file that cannot be read nothing
};

// Reads a file into `settings`. Missing lines leave what was there before.
TargetFileStatus LoadTargetFile(const std::string& path, TargetSettings& settings);

// The same for a person: throws InputError with the line for a fault, for knots whose frequencies
// do not rise or lie outside 1 to 1000000 Hz, for levels beyond 60 dB and for a gain clamp beyond
// 12 dB.
TargetSettings ReadCheckedTargetFile(const std::string& path);

// The file's text. A kind outside 0 to 2 gets no line; gainIndex is minus the gain clamp in dB.
std::string FormatTargetFile(const TargetRecord& curve, int32_t kind, int32_t gainIndex);

}  // namespace tonvane
