// The dialog's controls, menu entries and notifications by number.
#pragma once

#include "link/PanelControls.h"

namespace tonvane::controls {

constexpr int dialog = 0;  // the dialog itself, where a control may be meant
constexpr int noId = 0xFFFF;

constexpr int cancel = 2;
constexpr int close = 8;

constexpr int deviceFirst = 200;  // entries of the "Wave Device" menu
constexpr int deviceLast = 210;

constexpr int path = 1000;
constexpr int play = 1002;
constexpr int stop = 1003;
constexpr int position = 1004;
constexpr int time = 1005;

constexpr int measure = 2000;
constexpr int openResponse = 2001;  // these two may be without a control
constexpr int openTable = 2003;
constexpr int legendFirst = 2006;  // three texts
constexpr int legendLast = 2008;
constexpr int results = 2010;
constexpr int plotPlace = 2011;  // gives the plot its rectangle
constexpr int placeholder = 2012;

constexpr int curve = 2020;
constexpr int gainClamp = 2021;
constexpr int loadParameters = 2024;
constexpr int saveParameters = 2025;
constexpr int reset = 2026;

constexpr int showFirst = 2030;  // Spec1, Spec2, Target, Weight, Filter, Mixed, Filter2, Mixed2
constexpr int showLast = 2037;
constexpr int filterRate = 2040;
constexpr int status1 = 2050;
constexpr int status2 = 2051;

constexpr int inputRate = 3001;

// Of people, beyond the controls.
constexpr int undo = 3100;
constexpr int redo = 3101;
constexpr int savePicture = 3102;

}  // namespace tonvane::controls

namespace tonvane::notifications {

constexpr int click = 0;
constexpr int selectionChange = 1;  // of a combo box
constexpr int lostFocus = 0x200;    // of an edit box
constexpr int textChange = 0x300;   // of an edit box
constexpr int endTrack = 8;         // of a slider

}  // namespace tonvane::notifications
