#include "ui/DialogTemplate.h"

#include <array>

#include "ui/Controls.h"

namespace tonvane {

namespace {

using enum ControlKind;

constexpr DialogRectangle nowhere{0, 0, 0, 0};

constexpr std::array items{
    DialogItem{controls::measure, defaultButton, "Measure", nowhere},
    DialogItem{controls::noId, groupBox, " Legend: ", {4, 150, 322, 30}},
    DialogItem{2006, text, "Target Composite Response", {13, 160, 90, 8}},
    DialogItem{2007, text, "Measured System Response", {123, 160, 90, 8}},
    DialogItem{2008, text, "Biquad Counter Response", {233, 160, 83, 8}},
    DialogItem{controls::noId, groupBox, "Gain Clamp:", {333, 150, 52, 30}},
    DialogItem{controls::gainClamp, dropList, "", {341, 162, 36, 12}},
    DialogItem{controls::noId, groupBox, "Input FS:", {392, 150, 58, 30}},
    DialogItem{controls::inputRate, dropList, "", {400, 162, 42, 16}},
    DialogItem{controls::close, button, "Close", {460, 160, 44, 16}},
    DialogItem{controls::connect, button, "Connect", nowhere},
    DialogItem{controls::term, button, "Term", nowhere},
    DialogItem{controls::dump, button, "Dump", nowhere},
    DialogItem{controls::registerNumber, edit, "", nowhere},
    DialogItem{controls::registerLength, readOnlyEdit, "", nowhere},
    DialogItem{controls::registerName, readOnlyEdit, "", nowhere},
    DialogItem{2074, edit, "", nowhere},
    DialogItem{2075, edit, "", nowhere},
    DialogItem{2076, edit, "", nowhere},
    DialogItem{2077, edit, "", nowhere},
    DialogItem{2078, edit, "", nowhere},
    DialogItem{controls::send, button, "Send", nowhere},
    DialogItem{controls::read, button, "Read", nowhere},
    DialogItem{controls::set1, button, "Set1", nowhere},
    DialogItem{controls::biq, checkBox, "Biq", nowhere},
    DialogItem{controls::split, checkBox, "Split", nowhere},
    DialogItem{2084, checkBox, "Drc1", nowhere},
    DialogItem{2085, checkBox, "Drc2", nowhere},
    DialogItem{2090, edit, "", nowhere},
    DialogItem{2091, edit, "", nowhere},
    DialogItem{2092, edit, "", nowhere},
    DialogItem{2093, edit, "", nowhere},
    DialogItem{2094, edit, "", nowhere},
    DialogItem{2095, edit, "", nowhere},
    DialogItem{2096, edit, "", nowhere},
    DialogItem{2097, edit, "", nowhere},
    DialogItem{controls::crossover, edit, "", nowhere},
    DialogItem{2030, checkBox, "Spec1", nowhere},
    DialogItem{2031, checkBox, "Spec2", nowhere},
    DialogItem{2032, checkBox, "Target", nowhere},
    DialogItem{2033, checkBox, "Weight", nowhere},
    DialogItem{2034, checkBox, "Filter", nowhere},
    DialogItem{2035, checkBox, "Mixed", nowhere},
    DialogItem{2036, checkBox, "Filter2", nowhere},
    DialogItem{2037, checkBox, "Mixed2", nowhere},
    DialogItem{controls::plotPlace, text, "Text", {4, 4, 500, 144}},
    DialogItem{controls::placeholder, text, "Text", nowhere},
    DialogItem{controls::curve, dropList, "", nowhere},
    DialogItem{controls::reset, button, "Reset", nowhere},
    DialogItem{controls::loadParameters, button, "Load", nowhere},
    DialogItem{controls::saveParameters, button, "Save", nowhere},
    DialogItem{controls::results, list, "", nowhere},
    DialogItem{controls::filterRate, dropList, "", nowhere},
    DialogItem{controls::path, pathList, "", nowhere},
    DialogItem{controls::play, button, "|>", nowhere},
    DialogItem{controls::stop, button, "[]", nowhere},
    DialogItem{controls::position, slider, "", nowhere},
    DialogItem{controls::time, text, "--:--/--:--", nowhere},
    DialogItem{controls::status1, text, "", nowhere},
    DialogItem{controls::status2, text, "", nowhere},
};

}  // namespace

const DialogTemplate MainDialogTemplate{"Tonvane", "Tahoma", 8, 508, 186, items};

}  // namespace tonvane
