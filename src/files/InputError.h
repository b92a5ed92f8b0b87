// Input or output of a command that a person gave and that cannot be served.
#pragma once

#include <stdexcept>
#include <string>

namespace tonvane {

// what() is one line for the person: the file, the line where there is one, what was expected.
class InputError : public std::runtime_error {
  public:
    InputError(const std::string& file, const std::string& complaint);
    InputError(const std::string& file, int line, const std::string& complaint);
};

// The contents of a file that a person has named, as ReadTextFile and ReadBinaryFile give them;
// throws InputError where they give none.
std::string ReadInputText(const std::string& path);
std::string ReadInputBytes(const std::string& path, size_t most);

}  // namespace tonvane
