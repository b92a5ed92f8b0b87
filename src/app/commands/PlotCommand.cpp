// plot: a response in, a picture of its design out.
#include <cstdio>
#include <memory>

#include "app/DesignPicture.h"
#include "app/FinishedDesign.h"
#include "app/OutputFiles.h"
#include "app/commands/Commands.h"

namespace tonvane {

namespace {

struct PlotOptions {
    DesignRequest request;
    PictureOptions picture;
};

// Throws InputError for input that cannot be used or an output that cannot be written, with the
// output as it was.
void plot(const PlotOptions& options) {
    const PictureOptions& picture = options.picture;
    PrepareOutputs({picture.output},
                   {options.request.response.path, options.request.target.value_or("")});
    CheckPictureOptions(picture);
    const auto finished = DesignResponse(options.request);
    const NewContents file{picture.output, PictureBytes(picture, *finished)};
    WriteOutputs({&file, 1});
    PrintNotes(finished->notes);
    std::printf("Wrote %s\n", picture.output.c_str());
    for (const std::string& warning : finished->report.warnings) {
        std::fprintf(stderr, "Warning: %s\n", warning.c_str());
    }
}

}  // namespace

void AddPlotCommand(Command& program) {
    const auto options = std::make_shared<PlotOptions>();
    Command command = program.subcommand("plot", "Draw a loudspeaker's response and its filter");
    Command source = command.exactlyOneOf("source");
    AddDesignOptions(command, source, options->request);
    command.option("-o,--output", options->picture.output, "Picture: .png, .svg or .pdf")
        .required()
        .fileName();
    AddPictureLooks(command, options->picture);
    command.footer("Example: tonvane-cli plot speaker.qsr --target target.txt -o speaker.png");
    command.action([options] { plot(*options); });
}

}  // namespace tonvane
