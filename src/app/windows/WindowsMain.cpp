// Tonvane.exe: the tuning dialog, for calling tools (-cmd) and for people.
//
// Exit code: 0 after Close, 2 after Escape or the window's close box, 1 when it could not start.
#include <cstdlib>
#include <exception>
#include <memory>

#include "app/CommandLine.h"
#include "app/WindowDevices.h"
#include "platform/WideText.h"
#include "text/WholeNumbers.h"
#include "transform/FftTables.h"
#include "tuning/ProgramValues.h"
#include "ui/DialogTemplate.h"
#include "ui/MainDlg.h"
#include "ui/win32/RegistryUserStore.h"
#include "ui/win32/Win32DialogHost.h"
#include "ui/win32/WindowsApi.h"

namespace tonvane {

namespace {

constexpr int failure = 1;

// Where the link server listens, if not at its usual port: for a second server on one computer.
constexpr const char* portVariable = "TONVANE_LINK_PORT";

uint16_t linkPort() {
    const char* text = std::getenv(portVariable);
    return ParseWhole<uint16_t>(text == nullptr ? "" : text).value_or(CAmpLink::defaultPort);
}

void showStop(const std::string& text) {
    MessageBoxW(nullptr, Widen(text).c_str(), L"Error", MB_OK | MB_ICONSTOP);
}

// Ahead of the dialog there are only errors.
class StartMessages : public Messages {
  public:
    void error(const std::string& text) override { showStop(text); }
    bool confirm(const std::string& /*text*/, const std::string& /*caption*/) override {
        return true;
    }
    void status(int /*line*/, const std::string& /*text*/, StatusNews /*news*/) override {}
};

// COM on the thread of the dialog, which the drivers of audio devices need. Whoever had it before
// gives it back first.
class ComOfThread {
  public:
    ComOfThread() {
        CoUninitialize();
        result_ = CoInitialize(nullptr);
    }
    ~ComOfThread() {
        if (SUCCEEDED(result_)) {
            CoUninitialize();
        }
    }
    ComOfThread(const ComOfThread&) = delete;
    ComOfThread& operator=(const ComOfThread&) = delete;

  private:
    HRESULT result_;
};

int runDialog(const std::string& commandTail, int showCommand) {
    const ComOfThread com;
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);

    ProgramValues values;
    values.AppDirectory = WorkingDirectory();
    InitFftTables(responseLength);
    StartMessages messages;
    const bool promptOnExit =
        InterpretCommandLine(TokenizeCommandLine(commandTail), values, messages);

    RegistryUserStore store(recentFilesKey);
    Win32DialogHost host;
    const auto dialog = std::make_unique<CMainDlg>(host, values, WindowDevices(false, showStop),
                                                   store, promptOnExit, linkPort());
    host.create(MainDialogTemplate, *dialog);
    host.showWindow(showCommand);
    const int exitCode = host.run();
    FreeFftTables();
    return exitCode;
}

}  // namespace

}  // namespace tonvane

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, wchar_t* commandTail,
                    int showCommand) {
    try {
        return tonvane::runDialog(tonvane::Narrow(commandTail), showCommand);
    } catch (const std::exception& error) {
        tonvane::showStop(error.what());
        return tonvane::failure;
    }
}
