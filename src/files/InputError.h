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

}  // namespace tonvane
