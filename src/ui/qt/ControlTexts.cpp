#include "ui/qt/ControlTexts.h"

#include <algorithm>
#include <array>

#include "ui/Controls.h"

namespace tonvane {

namespace {

struct ControlText {
    int id;
    const char* name;
    const char* use;
};

constexpr std::array texts{
    ControlText{controls::close, "Close",
                "Write the filter file and the target file of the command line, and leave"},
    ControlText{controls::path, "Wave file", "The recent wave files, the newest on top"},
    ControlText{controls::play, "Play or pause", "Play the wave file, pause, go on"},
    ControlText{controls::stop, "Stop", "Stop what plays or measures"},
    ControlText{controls::position, "Position", "Where the wave file plays, in quarter seconds"},
    ControlText{controls::time, "Time", "Position and length"},
    ControlText{controls::measure, "Measure",
                "Play pink noise through the audio device and design for what is captured"},
    ControlText{controls::openResponse, "Open response", "Open a speaker response file (.qsr)"},
    ControlText{controls::openTable, "Open table", "Open a table of frequencies and levels (.csv)"},
    ControlText{controls::results, "Results", "What the analysis of the response has found"},
    ControlText{controls::curve, "Curve", "Which of the ten target curves is worked on"},
    ControlText{controls::gainClamp, "Gain clamp",
                "Loudness given up so that the filter has something to cut"},
    ControlText{controls::loadParameters, "Load", "Load all curves and the gain clamp from a file"},
    ControlText{controls::saveParameters, "Save", "Save all curves and the gain clamp to a file"},
    ControlText{controls::reset, "Reset", "The curve as it was at the start"},
    ControlText{controls::undo, "Undo", "Take the last change of a target back (Ctrl+Z)"},
    ControlText{controls::redo, "Redo", "Do it again (Ctrl+Shift+Z)"},
    ControlText{controls::savePicture, "Save picture", "Save the plot as a picture (Ctrl+S)"},
    ControlText{controls::showSpec1, "Spec1", "The response as it is"},
    ControlText{controls::showSpec2, "Spec2", "The response, smoothed"},
    ControlText{controls::showTarget, "Target", "The target curve and its knots"},
    ControlText{controls::showWeight, "Weight", "The pass-band and its edges"},
    ControlText{controls::showFilter, "Filter", "The FIR filter that the biquads follow"},
    ControlText{controls::showMixed, "Mixed", "The response through the FIR filter"},
    ControlText{controls::showFilter2, "Filter2", "The seven biquads"},
    ControlText{controls::showMixed2, "Mixed2",
                "The response through the biquads; drawn with the next change of another curve"},
    ControlText{controls::filterRate, "Filter rate",
                "The rate that the filter curves are drawn at"},
    ControlText{controls::inputRate, "Input rate",
                "The rate of measurements and tables; reads the command line's response again"},
    ControlText{controls::connect, "Connect", "Connect to the amplifier's link server"},
    ControlText{controls::term, "Term", "End the connection"},
    ControlText{controls::dump, "Dump", "Write all registers to a file"},
    ControlText{controls::registerNumber, "Register number", "Two hexadecimal digits, 00 to 77"},
    ControlText{controls::registerLength, "Register length", "Bytes"},
    ControlText{controls::registerName, "Register name", ""},
    ControlText{controls::word1, "Word 1", "Hexadecimal"},
    ControlText{controls::word2, "Word 2", "Hexadecimal"},
    ControlText{controls::word3, "Word 3", "Hexadecimal"},
    ControlText{controls::word4, "Word 4", "Hexadecimal"},
    ControlText{controls::word5, "Word 5", "Hexadecimal"},
    ControlText{controls::send, "Send", "Write the words to the register"},
    ControlText{controls::read, "Read", "Read the register"},
    ControlText{controls::set1, "Set1", "Write the start values, with everything switched off"},
    ControlText{controls::biq, "Biq", "The designed equalizer on the amplifier"},
    ControlText{controls::split, "Split", "The crossover on the amplifier"},
    ControlText{controls::drc1, "Drc1", "The first dynamic range compressor"},
    ControlText{controls::drc2, "Drc2", "The second dynamic range compressor"},
    ControlText{controls::threshold1, "Threshold of DRC 1", "-48 to 12 dB"},
    ControlText{controls::averaging1, "Averaging time of DRC 1", "1 to 5000 ms"},
    ControlText{controls::attack1, "Attack time of DRC 1", "1 to 5000 ms"},
    ControlText{controls::release1, "Release time of DRC 1", "1 to 5000 ms"},
    ControlText{controls::threshold2, "Threshold of DRC 2", "-48 to 12 dB"},
    ControlText{controls::averaging2, "Averaging time of DRC 2", "1 to 5000 ms"},
    ControlText{controls::attack2, "Attack time of DRC 2", "1 to 5000 ms"},
    ControlText{controls::release2, "Release time of DRC 2", "1 to 5000 ms"},
    ControlText{controls::crossover, "Crossover frequency", "10 Hz to 0.9 times the rate"},
    ControlText{controls::liveAmplifier, "Program while moving",
                "Program the amplifier while a knot or the gain clamp moves too, at most ten times "
                "a second; else when it is let go"},
    ControlText{controls::status1, "Status", ""},
    ControlText{controls::status2, "Link status", ""},
};

const ControlText* find(int id) {
    const auto* found = std::ranges::find(texts, id, &ControlText::id);
    return found == texts.end() ? nullptr : found;
}

}  // namespace

QString ControlName(int id) {
    const ControlText* text = find(id);
    return text == nullptr ? QString() : QString::fromUtf8(text->name);
}

void DescribeControl(int id, QWidget& control) {
    if (const ControlText* text = find(id)) {
        control.setAccessibleName(QString::fromUtf8(text->name));
        control.setToolTip(QString::fromUtf8(text->use));
    }
}

}  // namespace tonvane
