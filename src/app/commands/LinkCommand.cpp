// link: looking at the amplifier's registers and programming them.
//
// All of its commands connect, trim the oscillator as every connection does, do their job and print
// what came of it on standard output. They throw InputError for an argument that cannot be served,
// before anything is sent, and LinkError for a server that does not do its part, which also says
// how much was written.
#include <memory>

#include "app/commands/Commands.h"
#include "app/commands/LinkCommands.h"

namespace tonvane {

void AddLinkCommand(Command& program) {
    const auto options = std::make_shared<LinkOptions>();
    Command link = program.subcommand("link", "Look at the amplifier's registers, program them");
    link.optionsAnywhere();
    AddLinkOptions(link, *options);
    link.flag("--dry-run", options->dryRun, "Print what would be sent, and send nothing");
    AddLinkRegisterCommands(link, options);
    AddLinkGroupCommands(link, options);
    link.footer("Example: tonvane-cli link program filters.txt --port 20000");
}

}  // namespace tonvane
