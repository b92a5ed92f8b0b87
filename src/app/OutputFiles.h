// The files that a command writes: none of them over another, all or none.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/FileAccess.h"

namespace tonvane {

// Makes ready to write a command's outputs. Throws InputError when one of them is also an input or
// another output, under whatever name; it would be lost. Empty names stand for nothing; pipes and
// devices are not looked at. Where one is standard output, what the command prints goes to standard
// error from now on.
void PrepareOutputs(const std::vector<std::string>& outputs, std::vector<std::string> inputs);

// Writes all files or none; throws InputError for the one that cannot be written.
void WriteOutputs(std::span<const NewContents> files);

// The extension of a path in lower case, with its point.
std::string LowerCaseExtension(const std::string& path);

}  // namespace tonvane
