#include "ui/win32/RegistryUserStore.h"

#include <array>
#include <utility>

#include "platform/WideText.h"

namespace tonvane {

namespace {

constexpr REGSAM access = KEY_READ | KEY_WRITE;
constexpr size_t maxText = 260;  // characters, with the zero

}  // namespace

RegistryUserStore::RegistryUserStore(std::wstring path) : path_(std::move(path)) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, access, &key) == ERROR_SUCCESS) {
        key_.reset(key);
    }
}

HKEY RegistryUserStore::writable() {
    HKEY key = nullptr;
    if (!key_ && RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, access, nullptr,
                                 &key, nullptr) == ERROR_SUCCESS) {
        key_.reset(key);
    }
    return key_.get();
}

std::optional<uint32_t> RegistryUserStore::number(const std::string& name) const {
    DWORD type = REG_NONE;
    uint32_t value = 0;
    DWORD bytes = sizeof value;
    if (!key_ ||
        RegQueryValueExW(key_.get(), Widen(name).c_str(), nullptr, &type,
                         reinterpret_cast<BYTE*>(&value), &bytes) != ERROR_SUCCESS ||
        type != REG_DWORD) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::string> RegistryUserStore::text(const std::string& name) const {
    DWORD type = REG_NONE;
    std::array<wchar_t, maxText> value{};
    DWORD bytes = sizeof value;
    if (!key_ ||
        RegQueryValueExW(key_.get(), Widen(name).c_str(), nullptr, &type,
                         reinterpret_cast<BYTE*>(value.data()), &bytes) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ)) {
        return std::nullopt;
    }
    const size_t length = bytes / sizeof(wchar_t);
    if (length == 0 || value.at(length - 1) != L'\0') {
        return std::nullopt;
    }
    return Narrow(value.data());
}

void RegistryUserStore::set(const std::string& name, DWORD type, const void* data, size_t bytes) {
    if (HKEY key = writable()) {
        RegSetValueExW(key, Widen(name).c_str(), 0, type, static_cast<const BYTE*>(data),
                       static_cast<DWORD>(bytes));
    }
}

void RegistryUserStore::setNumber(const std::string& name, uint32_t value) {
    set(name, REG_DWORD, &value, sizeof value);
}

void RegistryUserStore::setText(const std::string& name, const std::string& value) {
    const std::wstring wide = Widen(value);
    set(name, REG_SZ, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t));
}

void RegistryUserStore::remove(const std::string& name) {
    if (key_) {
        RegDeleteValueW(key_.get(), Widen(name).c_str());
    }
}

}  // namespace tonvane
