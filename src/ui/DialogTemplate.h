// The dialog as a table, from which each host makes its controls.
#pragma once

#include <span>

namespace tonvane {

enum class ControlKind {
    groupBox,
    text,
    button,
    defaultButton,
    checkBox,
    edit,
    readOnlyEdit,
    dropList,
    pathList,  // combo box with the recent files, which shows the ends of long paths
    list,      // one row of results under column heads
    slider,
};

// Dialog units: a quarter of the font's average width, an eighth of its height.
struct DialogRectangle {
    int x;
    int y;
    int width;
    int height;
};

struct DialogItem {
    int id;
    ControlKind kind;
    const char* text;
    DialogRectangle place;  // empty for one that is never shown
};

struct DialogTemplate {
    const char* caption;
    const char* font;
    int fontPoints;
    int width;  // dialog units
    int height;
    std::span<const DialogItem> items;  // in the order of the Tab key
};

extern const DialogTemplate MainDialogTemplate;

// How far to the right a control may grow, in dialog units: up to its neighbour, the frame around
// it or the dialog's edge, less a gap.
int RightLimit(const DialogTemplate& dialog, const DialogItem& item);

}  // namespace tonvane
