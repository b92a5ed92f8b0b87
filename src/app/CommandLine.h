// The command line of a batch start: -cmd rate response format filter target -noprompt.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tuning/Messages.h"
#include "tuning/ProgramValues.h"

namespace tonvane {

// Splits a raw command tail at single blanks. Two blanks in a row, or one at the end, make an empty
// token. A double quote opens a token that may hold blanks and ends at a quote in front of a blank
// or of the end; one in the middle of a token takes off the token's first character and opens the
// quote all the same. An unclosed quote runs to the end.
std::vector<std::string> TokenizeCommandLine(const std::string& raw);

// The raw tail that gives these arguments back as its tokens, one each: empty ones and those with
// blanks or quotes stand in quotes. (An argument that begins with a blank or has a quote in front
// of one cannot be expressed and comes back split.)
std::string CommandTail(std::span<const std::string> arguments);

// The path of the filter file: behind AppDirectory without its first two characters if the part
// ahead of its last backslash begins with a point (".\f.txt"), behind AppDirectory as it is if it
// has no backslash, else as it is.
std::string ResolveFilterPath(const std::string& token, const std::string& appDirectory);

// Takes a batch start's tokens over into `values` and reads the target file, which may show a
// message. Tokens that are fewer than three or do not begin with "-cmd" leave everything as it is.
// Returns whether saving is to be confirmed by a person.
bool InterpretCommandLine(std::span<const std::string> tokens, ProgramValues& values,
                          Messages& messages);

}  // namespace tonvane
