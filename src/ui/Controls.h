// The dialog's controls, menu entries and notifications by number.
#pragma once

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
constexpr int legendTarget = 2006;
constexpr int legendMeasured = 2007;
constexpr int legendBiquads = 2008;
constexpr int legendFirst = legendTarget;
constexpr int results = 2010;
constexpr int plotPlace = 2011;  // gives the plot its rectangle
constexpr int placeholder = 2012;

constexpr int curve = 2020;
constexpr int gainClamp = 2021;
constexpr int loadParameters = 2024;
constexpr int saveParameters = 2025;
constexpr int reset = 2026;

constexpr int showSpec1 = 2030;  // check boxes of the curves
constexpr int showSpec2 = 2031;
constexpr int showTarget = 2032;
constexpr int showWeight = 2033;
constexpr int showFilter = 2034;
constexpr int showMixed = 2035;
constexpr int showFilter2 = 2036;
constexpr int showMixed2 = 2037;
constexpr int showFirst = showSpec1;
constexpr int showLast = showMixed2;
constexpr int filterRate = 2040;
constexpr int status1 = 2050;
constexpr int status2 = 2051;

// Of the amplifier.
constexpr int connect = 2060;
constexpr int term = 2061;

constexpr int dump = 2070;
constexpr int registerNumber = 2071;
constexpr int registerLength = 2072;
constexpr int registerName = 2073;
constexpr int word1 = 2074;
constexpr int word2 = 2075;
constexpr int word3 = 2076;
constexpr int word4 = 2077;
constexpr int word5 = 2078;
constexpr int wordFirst = word1;
constexpr int wordLast = word5;
constexpr int send = 2079;
constexpr int read = 2080;
constexpr int set1 = 2081;
constexpr int biq = 2082;
constexpr int split = 2083;
constexpr int drc1 = 2084;
constexpr int drc2 = 2085;
constexpr int drcFirst = drc1;
constexpr int drcLast = drc2;
constexpr int linkFirst = dump;  // to linkLast they serve only while connected
constexpr int linkLast = drcLast;

constexpr int threshold1 = 2090;
constexpr int averaging1 = 2091;
constexpr int attack1 = 2092;
constexpr int release1 = 2093;
constexpr int threshold2 = 2094;
constexpr int averaging2 = 2095;
constexpr int attack2 = 2096;
constexpr int release2 = 2097;
constexpr int drcBoxFirst = threshold1;
constexpr int drcBoxLast = release2;
constexpr int crossover = 2098;

constexpr int inputRate = 3001;

// Of people, beyond the controls.
constexpr int undo = 3100;
constexpr int redo = 3101;
constexpr int savePicture = 3102;
constexpr int liveAmplifier = 3103;  // check box

}  // namespace tonvane::controls

namespace tonvane::notifications {

constexpr int click = 0;
constexpr int selectionChange = 1;  // of a combo box
constexpr int closeUp = 8;          // an open combo box closes, also after a selection
constexpr int hover = 0x500;        // the entry lParam of an open combo box is under the mouse
constexpr int lostFocus = 0x200;    // of an edit box
constexpr int textChange = 0x300;   // of an edit box
constexpr int endTrack = 8;         // of a slider

}  // namespace tonvane::notifications
