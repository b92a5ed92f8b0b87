#include "support/Files.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tonvane::tests {

namespace fs = std::filesystem;

std::string TestData(const std::string& file) {
    return TONVANE_TEST_DATA "/" + file;
}

std::string ExampleFile(const std::string& file) {
    return TONVANE_EXAMPLES "/" + file;
}

TemporaryFolder::TemporaryFolder() {
    std::string form = (fs::temp_directory_path() / "tonvane test XXXXXX").string();
    path_ = mkdtemp(form.data()) != nullptr ? form : "";
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& contents) const {
    std::ofstream(*this / name, std::ios::binary) << contents;
    return *this / name;
}

std::string TemporaryFolder::copyGolden(const std::string& name, const std::string& as) const {
    return write(as, Contents(TestData("golden/" + name)));
}

std::set<std::string> TemporaryFolder::names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

std::string Contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return in.is_open() ? std::string(std::istreambuf_iterator<char>(in), {}) : "no file";
}

}  // namespace tonvane::tests
