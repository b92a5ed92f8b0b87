#include "ui/DialogTemplate.h"

#include <algorithm>
#include <array>

#include "ui/Controls.h"

namespace tonvane {

namespace {

using enum ControlKind;

constexpr DialogRectangle nowhere{0, 0, 0, 0};
constexpr int gap = 1;

int rightOf(const DialogRectangle& place) {
    return place.x + place.width;
}

bool areInOneRow(const DialogRectangle& a, const DialogRectangle& b) {
    return a.y < b.y + b.height && b.y < a.y + a.height;
}

constexpr std::array templateItems{
    DialogItem{controls::measure, defaultButton, "Measure", nowhere},
    DialogItem{controls::noId, groupBox, " Legend: ", {4, 150, 322, 30}},
    DialogItem{controls::legendTarget, text, "Target Composite Response", {13, 160, 90, 8}},
    DialogItem{controls::legendMeasured, text, "Measured System Response", {123, 160, 90, 8}},
    DialogItem{controls::legendBiquads, text, "Biquad Counter Response", {233, 160, 83, 8}},
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
    DialogItem{controls::word1, edit, "", nowhere},
    DialogItem{controls::word2, edit, "", nowhere},
    DialogItem{controls::word3, edit, "", nowhere},
    DialogItem{controls::word4, edit, "", nowhere},
    DialogItem{controls::word5, edit, "", nowhere},
    DialogItem{controls::send, button, "Send", nowhere},
    DialogItem{controls::read, button, "Read", nowhere},
    DialogItem{controls::set1, button, "Set1", nowhere},
    DialogItem{controls::biq, checkBox, "Biq", nowhere},
    DialogItem{controls::split, checkBox, "Split", nowhere},
    DialogItem{controls::drc1, checkBox, "Drc1", nowhere},
    DialogItem{controls::drc2, checkBox, "Drc2", nowhere},
    DialogItem{controls::threshold1, edit, "", nowhere},
    DialogItem{controls::averaging1, edit, "", nowhere},
    DialogItem{controls::attack1, edit, "", nowhere},
    DialogItem{controls::release1, edit, "", nowhere},
    DialogItem{controls::threshold2, edit, "", nowhere},
    DialogItem{controls::averaging2, edit, "", nowhere},
    DialogItem{controls::attack2, edit, "", nowhere},
    DialogItem{controls::release2, edit, "", nowhere},
    DialogItem{controls::crossover, edit, "", nowhere},
    DialogItem{controls::showSpec1, checkBox, "Spec1", nowhere},
    DialogItem{controls::showSpec2, checkBox, "Spec2", nowhere},
    DialogItem{controls::showTarget, checkBox, "Target", nowhere},
    DialogItem{controls::showWeight, checkBox, "Weight", nowhere},
    DialogItem{controls::showFilter, checkBox, "Filter", nowhere},
    DialogItem{controls::showMixed, checkBox, "Mixed", nowhere},
    DialogItem{controls::showFilter2, checkBox, "Filter2", nowhere},
    DialogItem{controls::showMixed2, checkBox, "Mixed2", nowhere},
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

int RightLimit(const DialogTemplate& dialog, const DialogItem& item) {
    const DialogRectangle& own = item.place;
    int limit = dialog.width;
    for (const DialogItem& other : dialog.items) {
        const DialogRectangle& place = other.place;
        if (place.width == 0 || !areInOneRow(own, place)) {
            continue;
        }
        if (place.x >= rightOf(own)) {
            limit = std::min(limit, place.x);
        } else if (other.kind == groupBox && place.x <= own.x && rightOf(place) >= rightOf(own)) {
            limit = std::min(limit, rightOf(place));
        }
    }
    return limit - gap;
}

const DialogTemplate MainDialogTemplate{"Tonvane", "Tahoma", 8, 508, 186, templateItems};

}  // namespace tonvane
