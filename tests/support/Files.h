// The files that tests read, and a folder of its own for each test that writes some.
#pragma once

#include <set>
#include <string>

namespace tonvane::tests {

// A path below tests/data, and one below examples/.
std::string TestData(const std::string& file);
std::string ExampleFile(const std::string& file);

// Has a blank in its name; removed with everything in it at the end of the test.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + "/" + name;
    }

    // Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& contents) const;

    // A copy of a file of the golden cases.
    std::string copyGolden(const std::string& name, const std::string& as) const;

    // The names in the folder: shows temporary files left behind.
    [[nodiscard]] std::set<std::string> names() const;

  private:
    std::string path_;
};

// "no file" for one that cannot be opened.
std::string Contents(const std::string& path);

}  // namespace tonvane::tests
