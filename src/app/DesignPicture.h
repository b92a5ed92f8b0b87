// A picture of a design.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/FinishedDesign.h"
#include "commandline/CommandParser.h"

namespace tonvane {

// How it is drawn, in the words of the command line.
struct PictureOptions {
    std::string output;                  // .png, .svg or .pdf
    std::vector<std::string> show;       // names of curves, or "all"; empty for the dialog's first
    std::string size = "750x300";        // of the whole picture
    int32_t scale = 1;                   // enlarges the picture and everything in it
    std::optional<std::string> caption;  // without one the design's figures
};

// --show, --size, --scale and --caption.
std::vector<CommandOption> AddPictureLooks(Command& command, PictureOptions& options);

// Throws InputError for an unknown kind of picture, a size or a curve that there is not, and where
// pictures are not drawn.
void CheckPictureOptions(const PictureOptions& options);

// The bytes of the picture file. Throws InputError like the check, and for a picture too small for
// what is in it.
std::string PictureBytes(const PictureOptions& options, const FinishedDesign& design);

// The same picture as an <svg> element for a page; `output` is not looked at.
// Empty where pictures are not drawn.
std::string PictureElement(const PictureOptions& options, const FinishedDesign& design);

}  // namespace tonvane
