// The link commands for a person: looking at the amplifier's registers and programming them.
//
// All of them connect, trim the oscillator as every connection does, do their job and print what
// came of it on standard output. They throw InputError for an argument that cannot be served,
// before anything is sent, and LinkError for a server that does not do its part, which also says
// how much was written.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "amplifier/AmpCoefficients.h"
#include "link/AmpLink.h"

namespace tonvane {

struct LinkOptions {
    uint16_t port = CAmpLink::usualPort;
    int32_t timeLimitMs = 2000;  // for each answer of the server
    bool dryRun = false;         // print the frames and waits instead, as if all were answered
};

// A transport as the options ask for.
std::unique_ptr<LinkTransport> MakeTransport(const LinkOptions& options);

// Connects a link for a command.
void ConnectLink(CAmpLink& link);

// A register is given as FindRegister takes it.
void ReadCommand(const LinkOptions& options, const std::string& reg);

// As many words as the register has, in hexadecimal; not in the shutdown bracket.
void WriteCommand(const LinkOptions& options, const std::string& reg,
                  std::span<const std::string> words);

// Writes the register dump to a file.
void DumpCommand(const LinkOptions& options, const std::string& path);

// The start values, with the equalizer, the crossover and the DRCs off.
void PresetCommand(const LinkOptions& options);

// A filter file's sections to the registers that it names, read back and compared.
void ProgramCommand(const LinkOptions& options, const std::string& path);

// The crossover at a frequency in Hz below half the sample rate, or off.
void CrossoverCommand(const LinkOptions& options, std::optional<int32_t> hz, int32_t sampleRate);

// Which DRCs are on; those get the settings.
void DrcCommand(const LinkOptions& options, std::array<bool, 2> enabled,
                const DrcSettings& settings, int32_t sampleRate);

// Reads all registers again and again and prints those that have changed; `rounds` times after the
// first, 0 for without end.
void WatchCommand(const LinkOptions& options, int32_t intervalMs, int32_t rounds);

}  // namespace tonvane
