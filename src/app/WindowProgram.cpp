#include "app/WindowProgram.h"

#include <QApplication>
#include <QMessageBox>
#include <algorithm>
#include <array>
#include <stdexcept>

#include "app/CommandLine.h"
#include "app/WindowDevices.h"
#include "platform/FileAccess.h"
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
    void status(int /*line*/, const std::string& /*text*/, StatusNews /*news*/) override {}
};

// The toolkit ends the process where there is none.
void expectDisplay() {
    constexpr std::array variables{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    if (std::ranges::none_of(variables,
                             [](const char* name) { return qEnvironmentVariableIsSet(name); })) {
        throw std::runtime_error("there is no display; tonvane-cli works without one");
    }
}

// A line for each control: its id, left, top, width and height in pixels of the window.
void writeLayout(QtDialogHost& host, const std::string& path) {
    QCoreApplication::processEvents();  // the window finds its final size
    std::string text;
    for (const int id : host.ids()) {
        const PixelRectangle at = host.rectangle(id);
        text += std::to_string(id);
        for (const int value : {at.left, at.top, at.right - at.left, at.bottom - at.top}) {
            text += " " + std::to_string(value);
        }
        text += "\n";
    }
    ReplaceFile(path, text);
}

}  // namespace

int RunWindowProgram(std::span<const std::string> arguments, const WindowOptions& options,
                     const std::function<std::unique_ptr<DialogWindow>()>& makeWindow) {
    expectDisplay();
    // The arguments are the program's own, none of them the toolkit's.
    std::string name = "tonvane";
    char* argv[] = {name.data(), nullptr};
    int argc = 1;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setDesktopFileName("tonvane");

    ProgramValues values;
    values.AppDirectory = WorkingDirectory();
    values.fitMethod = options.fitMethod;
    values.followsMouse = options.followsMouse;
    InitFftTables(responseLength);
    StartMessages messages;
    const bool promptOnExit =
        InterpretCommandLine(TokenizeCommandLine(CommandTail(arguments)), values, messages);

    FileUserStore store(UserStorePath());
    const auto window = makeWindow();
    const auto dialog =
        std::make_unique<CMainDlg>(window->host(), values, WindowDevices(options.simulatedDevice),
                                   store, promptOnExit, options.linkPort);
    window->host().start(*dialog);
    window->show();
    if (!options.layoutFile.empty()) {
        writeLayout(window->host(), options.layoutFile);
    }
    const int exitCode = QApplication::exec();
    FreeFftTables();
    return exitCode;
}

}  // namespace tonvane
