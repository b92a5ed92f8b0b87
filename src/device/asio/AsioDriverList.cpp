#include "device/asio/AsioDriverList.h"

#include <array>
#include <cstring>
#include <optional>

#include <objbase.h>
#include <windows.h>

#include "device/asio/AsioInterface.h"
#include "platform/WideText.h"

namespace tonvane {

namespace {

constexpr size_t longestName = 256;  // bytes, with the closing zero
constexpr size_t longestClsid = 128;
constexpr size_t longestPath = 512;

class RegistryKey {
  public:
    RegistryKey(HKEY parent, const std::string& path) {
        if (RegOpenKeyExA(parent, path.c_str(), 0, KEY_READ, &key_) != ERROR_SUCCESS) {
            key_ = nullptr;
        }
    }
    ~RegistryKey() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    [[nodiscard]] HKEY get() const { return key_; }

    // The text of a value that has at most so many bytes; nothing without one.
    template <size_t mostBytes>
    [[nodiscard]] std::optional<std::string> text(const char* name) const {
        std::array<char, mostBytes + 1> bytes{};  // a zero behind those that the registry gives
        DWORD size = mostBytes;
        if (key_ == nullptr ||
            RegQueryValueExA(key_, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()),
                             &size) != ERROR_SUCCESS) {
            return {};
        }
        return bytes.data();
    }

  private:
    HKEY key_ = nullptr;
};

std::wstring wideOf(const std::string& text) {
    std::wstring wide(text.size() + 1, L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    return wide.c_str();
}

// The registry's text in the code page of the rest of the program.
std::string utf8Of(const std::string& text) {
    return Narrow(wideOf(text));
}

GUID clsidOf(const std::string& text) {
    GUID clsid{};
    return CLSIDFromString(wideOf(text).c_str(), &clsid) == S_OK ? clsid : GUID{};
}

CAsioDriverEntry entryOf(const RegistryKey& key, const std::string& name) {
    CAsioDriverEntry entry{};
    entry.name = utf8Of(key.text<longestName>("description").value_or(name));
    if (const auto clsid = key.text<longestClsid>("clsid")) {
        entry.clsid = clsidOf(*clsid);
        const RegistryKey server(HKEY_CLASSES_ROOT, "clsid\\" + *clsid + "\\InprocServer32");
        entry.dllPath = utf8Of(server.text<longestPath>(nullptr).value_or(""));
    }
    return entry;
}

}  // namespace

void AsioRelease::operator()(IASIO* driver) const {
    driver->Release();
    CoUninitialize();
}

CAsioDriverList::CAsioDriverList() {
    const RegistryKey drivers(HKEY_LOCAL_MACHINE, "software\\asio");
    std::array<char, longestName> name{};
    for (DWORD i = 0; drivers.get() != nullptr &&
                      RegEnumKeyA(drivers.get(), i, name.data(), name.size()) == ERROR_SUCCESS;
         ++i) {
        const RegistryKey key(drivers.get(), name.data());
        if (key.get() != nullptr) {
            entries_.push_back(entryOf(key, name.data()));
        }
    }
}

const char* CAsioDriverList::Name(int i) const {
    return i >= 0 && i < Count() ? entries_[static_cast<size_t>(i)].name.c_str() : nullptr;
}

AsioDriver CAsioDriverList::Create(int i) const {
    if (i < 0 || i >= Count() || FAILED(CoInitialize(nullptr))) {
        return {};
    }
    // A driver answers to its class id as the id of its interface.
    const GUID& clsid = entries_[static_cast<size_t>(i)].clsid;
    constexpr DWORD anyServer = 0x17;
    void* driver = nullptr;
    if (CoCreateInstance(clsid, nullptr, anyServer, clsid, &driver) != S_OK || driver == nullptr) {
        CoUninitialize();
        return {};
    }
    return AsioDriver(static_cast<IASIO*>(driver));
}

}  // namespace tonvane
