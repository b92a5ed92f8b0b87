#include "app/WindowProgram.h"

#include <QApplication>
#include <QMessageBox>

#include "app/CommandLine.h"
#include "device/menu/DeviceMenu.h"
#include "transform/FftTables.h"
#include "tuning/ProgramValues.h"
#include "ui/MainDlg.h"

namespace tonvane {

namespace {

// Ahead of the window there are only errors.
class StartMessages : public Messages {
  public:
    void error(const std::string& text) override {
        QMessageBox box(QMessageBox::Critical, "Error", QString::fromStdString(text));
        box.exec();
    }
    bool confirm(const std::string& /*text*/, const std::string& /*caption*/) override {
        return true;
    }
    void status(int /*line*/, const std::string& /*text*/) override {}
};

// The menu's devices; the one without hardware takes the first free place behind them.
std::vector<DeviceChoice> deviceChoices(bool withSimulated) {
    std::vector<DeviceChoice> choices;
    int nextId = defaultDeviceId;
    for (DeviceEntry& entry : ListDevices()) {
        if (entry.id == simulatedDeviceId && !withSimulated) {
            continue;
        }
        choices.push_back({nextId, std::move(entry.description), std::move(entry.make)});
        ++nextId;
    }
    return choices;
}

}  // namespace

int RunWindowProgram(std::span<const std::string> arguments, const WindowOptions& options,
                     const std::function<std::unique_ptr<DialogWindow>()>& makeWindow) {
    // The arguments are the program's own, none of them the toolkit's.
    std::string name = "tonvane";
    char* argv[] = {name.data(), nullptr};
    int argc = 1;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationDisplayName("Tonvane");
    QGuiApplication::setDesktopFileName("tonvane");

    ProgramValues values;
    values.AppDirectory = WorkingDirectory();
    InitFftTables(responseLength);
    StartMessages messages;
    const bool promptOnExit =
        InterpretCommandLine(TokenizeCommandLine(CommandTail(arguments)), values, messages);

    FileUserStore store(UserStorePath());
    const auto window = makeWindow();
    const auto dialog = std::make_unique<CMainDlg>(window->host(), values,
                                                   deviceChoices(options.simulatedDevice), store,
                                                   promptOnExit, options.linkPort);
    window->host().start(*dialog);
    window->show();
    return QApplication::exec();
}

}  // namespace tonvane
