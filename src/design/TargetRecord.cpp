#include "design/TargetRecord.h"

namespace tonvane {

const TargetRecord BuiltInTargetCurve{{{
    {80, 0},
    {200, 0},
    {512, 0},
    {1280, 0},
    {3200, 0},
    {8000, 0},
    {20000, 0},
    {100, -3},
    {16000, -3},
}}};

}  // namespace tonvane
