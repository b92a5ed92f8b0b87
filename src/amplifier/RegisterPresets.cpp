#include "amplifier/RegisterPresets.h"

namespace tonvane {

const std::array<RegisterPreset, 18> RegisterPresets{{
    {0x07, {0xFF}},         // Master Vol
    {0x08, {0x30}},         // Channel 1 Vol
    {0x09, {0x30}},         // Channel 2 Vol
    {0x06, {0}},            // Soft Mute
    {0x02, {0}},            // Error Status
    {0x50, {0}},            // Bank Switch
    {0x56, {0x800000}},     // Output Post-Scale
    {0x57, {0x20000}},      // Output Pre-Scale
    {0x73, {0x800000}},     // In: [L-L]
    {0x77, {0x800000}},     // In: [R-R]
    {0x72, {0}},            // In: [R-L]
    {0x76, {0}},            // In: [L-R]
    {0x51, {0x800000, 0}},  // Out: [L-L R-L]
    {0x52, {0x800000, 0}},  // Out: [R-R L-R]
    {0x70, {0x800000}},     // DRC1 Out Weight L
    {0x74, {0x800000}},     // DRC1 Out Weight R
    {0x71, {0}},            // DRC2 Out Weight L
    {0x75, {0}},            // DRC2 Out Weight R
}};

}  // namespace tonvane
