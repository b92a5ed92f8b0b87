// The link to the amplifier for a command.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "commandline/CommandParser.h"
#include "link/AmpLink.h"
#include "link/RegisterWrites.h"

namespace tonvane {

struct LinkOptions {
    uint16_t port = CAmpLink::defaultPort;
    int32_t timeLimitMs = 2000;  // for each answer of the server
    bool dryRun = false;         // print the frames and waits instead, as if all were answered
};

// --port and --timeout.
void AddLinkOptions(Command& command, LinkOptions& options);

// A transport as the options ask for.
std::unique_ptr<LinkTransport> MakeTransport(const LinkOptions& options);

// Connects a link and trims the oscillator, as every connection does. Throws LinkError.
void ConnectLink(CAmpLink& link);

// Writes a list of registers while the audio is stopped. Ctrl-C does not leave the amplifier
// stopped with half of them: the list is written to its end, and Interrupted is thrown behind it.
// Throws LinkError.
void WriteUninterrupted(CAmpLink& link, std::span<const RegisterWrite> writes);

// A connected link, for the time of a command.
struct LinkSession {
    explicit LinkSession(const LinkOptions& options);

    // The bytes of a whole register.
    std::vector<uint8_t> readWhole(int32_t reg);

    // Prints the last line of a command that was not a dry run.
    void printDone(const std::string& text) const;

    bool isDryRun;
    std::intptr_t socket = -1;
    CAmpLink link;
};

}  // namespace tonvane
