// The ASIO drivers that the registry of this computer names, and how one of them is made.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <guiddef.h>

namespace tonvane {

struct IASIO;

struct AsioRelease {
    void operator()(IASIO* driver) const;
};
using AsioDriver = std::unique_ptr<IASIO, AsioRelease>;

// Texts in UTF-8.
struct CAsioDriverEntry {
    std::string name;
    std::string dllPath;
    GUID clsid;  // all zero if the registry has none that can be read
};

class CAsioDriverList {
  public:
    // Reads the registry: HKEY_LOCAL_MACHINE, "software\asio". Without that key the list is empty.
    CAsioDriverList();

    [[nodiscard]] int Count() const { return static_cast<int>(entries_.size()); }

    // Null out of range.
    [[nodiscard]] const char* Name(int i) const;

    // Makes the driver, in the single-threaded apartment of the calling thread, which must be the
    // one that lets go of it. Null when its DLL cannot be loaded or i is out of range.
    [[nodiscard]] AsioDriver Create(int i) const;

  private:
    std::vector<CAsioDriverEntry> entries_;
};

}  // namespace tonvane
