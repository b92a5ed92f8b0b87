// The DLL of the loop driver: its class factory, and how it enters itself in the registry.
#include <string>

#include <objbase.h>
#include <windows.h>

#include "LoopDriver.h"

namespace tonvane::loop {

namespace {

const std::string driverKey = "Software\\asio\\" + std::string(driverName);

// Lives as long as the DLL.
class Factory final : public IClassFactory {
  public:
    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (IsEqualGUID(id, IID_IUnknown) || IsEqualGUID(id, IID_IClassFactory)) {
            *object = static_cast<IClassFactory*>(this);
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) override {
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        auto* driver = new LoopDriver;
        const HRESULT result = driver->QueryInterface(id, object);
        driver->Release();
        return result;
    }
    STDMETHODIMP LockServer(BOOL /*lock*/) override { return S_OK; }
};

std::string classText() {
    wchar_t wide[64]{};
    StringFromGUID2(driverClass, wide, 64);
    char text[64]{};
    WideCharToMultiByte(CP_ACP, 0, wide, -1, text, sizeof text, nullptr, nullptr);
    return text;
}

std::string classKey() {
    return "clsid\\" + classText();
}

bool setText(HKEY root, const std::string& key, const char* name, const std::string& text) {
    return RegSetKeyValueA(root, key.c_str(), name, REG_SZ, text.c_str(),
                           static_cast<DWORD>(text.size() + 1)) == ERROR_SUCCESS;
}

std::string ownPath() {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const char*>(&driverClass), &module);
    char path[MAX_PATH]{};
    GetModuleFileNameA(module, path, MAX_PATH);
    return path;
}

}  // namespace

}  // namespace tonvane::loop

extern "C" {

STDAPI DllGetClassObject(REFCLSID wanted, REFIID id, void** object) {
    static tonvane::loop::Factory factory;
    if (!IsEqualGUID(wanted, tonvane::loop::driverClass)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return factory.QueryInterface(id, object);
}

STDAPI DllCanUnloadNow() {
    return tonvane::loop::LoopDriver::alive == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    using namespace tonvane::loop;
    const std::string server = classKey() + "\\InprocServer32";
    const bool done = setText(HKEY_CLASSES_ROOT, server, nullptr, ownPath()) &&
                      setText(HKEY_CLASSES_ROOT, server, "ThreadingModel", "Apartment") &&
                      setText(HKEY_LOCAL_MACHINE, driverKey, "clsid", classText()) &&
                      setText(HKEY_LOCAL_MACHINE, driverKey, "description", driverName);
    return done ? S_OK : E_FAIL;
}

STDAPI DllUnregisterServer() {
    using namespace tonvane::loop;
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, driverKey.c_str());
    RegDeleteTreeA(HKEY_CLASSES_ROOT, classKey().c_str());
    return S_OK;
}

}  // extern "C"
