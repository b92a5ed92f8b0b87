// The commands of tonvane-cli, one source each: it adds the command with its options to the program
// and holds what the command does.
#pragma once

#include <array>

#include "commandline/CommandParser.h"

namespace tonvane {

void AddConvertCommand(Command& program);
void AddDesignCommand(Command& program);
void AddDevicesCommand(Command& program);
void AddLinkCommand(Command& program);
void AddMeasureCommand(Command& program);
void AddPlayCommand(Command& program);
void AddPlotCommand(Command& program);

// In the order of the help.
inline constexpr std::array allCommands{
    AddDesignCommand,  AddConvertCommand, AddPlotCommand, AddDevicesCommand,
    AddMeasureCommand, AddPlayCommand,    AddLinkCommand,
};

}  // namespace tonvane
