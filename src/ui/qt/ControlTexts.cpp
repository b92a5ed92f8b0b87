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
    ControlText{2030, "Spec1", "The response as it is"},
    ControlText{2031, "Spec2", "The response, smoothed"},
    ControlText{2032, "Target", "The target curve and its knots"},
    ControlText{2033, "Weight", "The pass-band and its edges"},
    ControlText{2034, "Filter", "The FIR filter that the biquads follow"},
    ControlText{2035, "Mixed", "The response through the FIR filter"},
    ControlText{2036, "Filter2", "The seven biquads"},
    ControlText{2037, "Mixed2",
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
    ControlText{2074, "Word 1", "Hexadecimal"},
    ControlText{2075, "Word 2", "Hexadecimal"},
    ControlText{2076, "Word 3", "Hexadecimal"},
    ControlText{2077, "Word 4", "Hexadecimal"},
    ControlText{2078, "Word 5", "Hexadecimal"},
    ControlText{controls::send, "Send", "Write the words to the register"},
    ControlText{controls::read, "Read", "Read the register"},
    ControlText{controls::set1, "Set1", "Write the start values, with everything switched off"},
    ControlText{controls::biq, "Biq", "The designed equalizer on the amplifier"},
    ControlText{controls::split, "Split", "The crossover on the amplifier"},
    ControlText{2084, "Drc1", "The first dynamic range compressor"},
    ControlText{2085, "Drc2", "The second dynamic range compressor"},
    ControlText{2090, "Threshold of DRC 1", "-48 to 12 dB"},
    ControlText{2091, "Averaging time of DRC 1", "1 to 5000 ms"},
    ControlText{2092, "Attack time of DRC 1", "1 to 5000 ms"},
    ControlText{2093, "Release time of DRC 1", "1 to 5000 ms"},
    ControlText{2094, "Threshold of DRC 2", "-48 to 12 dB"},
    ControlText{2095, "Averaging time of DRC 2", "1 to 5000 ms"},
    ControlText{2096, "Attack time of DRC 2", "1 to 5000 ms"},
    ControlText{2097, "Release time of DRC 2", "1 to 5000 ms"},
    ControlText{controls::crossover, "Crossover frequency", "10 Hz to 0.9 times the rate"},
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
