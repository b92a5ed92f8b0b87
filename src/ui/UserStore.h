// What the program keeps for a user from one start to the next: numbers and texts by name.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tonvane {

// Failures are silent: nothing is read, or nothing is written.
class UserStore {
  public:
    virtual ~UserStore() = default;

    [[nodiscard]] virtual std::optional<uint32_t> number(const std::string& name) const = 0;
    [[nodiscard]] virtual std::optional<std::string> text(const std::string& name) const = 0;
    virtual void setNumber(const std::string& name, uint32_t value) = 0;
    virtual void setText(const std::string& name, const std::string& value) = 0;
    virtual void remove(const std::string& name) = 0;

    // Keeps what was set.
    virtual void commit() = 0;
};

// In a text file of lines "name=value" below a section in brackets. A value with a line end in it
// is not kept.
class FileUserStore : public UserStore {
  public:
    // The file is read now; commit makes its folder if it is not there.
    explicit FileUserStore(const std::string& path);

    [[nodiscard]] std::optional<uint32_t> number(const std::string& name) const override;
    [[nodiscard]] std::optional<std::string> text(const std::string& name) const override;
    void setNumber(const std::string& name, uint32_t value) override;
    void setText(const std::string& name, const std::string& value) override;
    void remove(const std::string& name) override;
    void commit() override;

  private:
    std::string path_;
    std::map<std::string, std::string> values_;
};

// Where a FileUserStore of this program belongs: tonvane/recent-files in XDG_STATE_HOME, or in
// .local/state of the home folder; empty when neither is known.
std::string UserStorePath();

}  // namespace tonvane
