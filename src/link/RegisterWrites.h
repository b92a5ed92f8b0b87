// Writing lists of registers through the link.
#pragma once

#include <span>

#include "amplifier/RegisterWrite.h"
#include "link/AmpLink.h"

namespace tonvane {

// Writes the registers in order, each at its full length. A LinkError on the way says how many of
// them are written.
void WriteRegisters(CAmpLink& link, std::span<const RegisterWrite> writes);

// The same between EnterShutdown and ExitShutdown.
void WriteInShutdown(CAmpLink& link, std::span<const RegisterWrite> writes);

// Reads written registers back. A LinkError names the first that has other contents.
void CompareReadBack(CAmpLink& link, std::span<const RegisterWrite> writes);

}  // namespace tonvane
