// The user's store in the registry: values of one key below HKEY_CURRENT_USER.
#pragma once

#include <string>

#include "ui/UserStore.h"
#include "ui/win32/Handles.h"

namespace tonvane {

class RegistryUserStore : public UserStore {
  public:
    // A path such as "Software\\Company\\Program\\List". The key is made when something is set in
    // it.
    explicit RegistryUserStore(std::wstring path);

    // Texts of both kinds are read, of at most 260 bytes with the zero at their end, which is to be
    // there; what a text names by %VARIABLE% is left as it is. Numbers have 32 bits.
    [[nodiscard]] std::optional<uint32_t> number(const std::string& name) const override;
    [[nodiscard]] std::optional<std::string> text(const std::string& name) const override;
    void setNumber(const std::string& name, uint32_t value) override;
    void setText(const std::string& name, const std::string& value) override;
    void remove(const std::string& name) override;
    void commit() override {}  // the registry keeps what was set

  private:
    [[nodiscard]] HKEY writable();
    void set(const std::string& name, DWORD type, const void* data, size_t bytes);

    std::wstring path_;
    OwnedRegistryKey key_;  // null where there is none
};

// The key of the program's recent wave files.
constexpr const wchar_t* recentFilesKey = L"Software\\Halvern\\Tonvane2\\Recent File List";

}  // namespace tonvane
