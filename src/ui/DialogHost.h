// What the dialog needs of a toolkit, by the ids of its controls.
//
// A host makes the controls of a template, turns what happens to them into DialogMessages and does
// here what the dialog asks for. Everything runs on the host's thread but for `post`. Setting a
// control from here may tell the dialog of it as if a person had done it, as edit boxes do.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "graph/Canvas.h"
#include "graph/GraphHost.h"
#include "ui/DialogMessage.h"

namespace tonvane {

struct FileDialog {
    enum class Form { open, save };  // open takes a name that does not exist, save asks nothing

    Form form;
    const char* filterText;  // "CSV (Comma delimited) (*.csv)"
    const char* pattern;     // "*.csv"
    const char* extension;   // goes behind a name without one: "csv"
};

struct MessageBox {
    enum class Kind {
        error,     // a stop sign and OK
        message,   // OK
        question,  // OK and Cancel
    };

    Kind kind;
    std::string text;
    std::string caption;
};

// The window of the plot.
struct PlotWindow {
    std::unique_ptr<Canvas> device;  // makes the images that the window is painted from
    int32_t width;                   // pixels of these images
    int32_t height;
    int32_t displayUnit;  // of them in a pixel of an ordinary display, along each side
};

struct PixelRectangle {
    int left;
    int top;
    int right;  // one beyond
    int bottom;
};

class DialogHost {
  public:
    virtual ~DialogHost() = default;

    // Any control. An unknown id does nothing, and its text is empty.
    virtual void setText(int id, const std::string& text) = 0;
    [[nodiscard]] virtual std::string text(int id) const = 0;
    virtual void enable(int id, bool enabled) = 0;
    virtual void show(int id, bool visible) = 0;
    virtual void setFocus(int id) = 0;  // 0 for the dialog
    [[nodiscard]] virtual PixelRectangle rectangle(int id) const = 0;
    virtual void setBoldFont(int id, int points) = 0;

    // Check boxes: 0 off, 1 on, 2 undecided.
    virtual void setCheck(int id, int state) = 0;
    [[nodiscard]] virtual int check(int id) const = 0;

    // Lists to choose from; -1 is the end of the list in insertItem and no selection in the others.
    // A selection beyond the list is none. None of them tells the dialog.
    virtual void insertItem(int id, int index, const std::string& text) = 0;
    virtual void deleteItem(int id, int index) = 0;
    [[nodiscard]] virtual int itemCount(int id) const = 0;
    [[nodiscard]] virtual std::string item(int id, int index) const = 0;
    virtual void select(int id, int index) = 0;
    [[nodiscard]] virtual int selection(int id) const = 0;

    // Sliders, from 0.
    virtual void setSliderRange(int id, int max) = 0;
    virtual void setSliderPosition(int id, int position) = 0;
    [[nodiscard]] virtual int sliderPosition(int id) const = 0;
    [[nodiscard]] virtual bool isTracking(int id) const = 0;  // the person holds it

    // The results: columns of equal width, one row.
    virtual void setColumns(int id, std::span<const char* const> heads) = 0;
    virtual void setCell(int id, int column, const std::string& text) = 0;

    // The plot, in the rectangle of a control. The host paints it from the dialog's picture.
    virtual PlotWindow createPlot(int placeId) = 0;
    virtual void invalidatePlot() = 0;
    virtual void capturePlotMouse(bool captured) = 0;
    virtual void setPlotCursor(GraphCursor cursor) = 0;  // until the mouse moves on

    // Within the message `paint`: a line over the dialog in a colour with red in the low byte.
    virtual void drawLine(int fromX, int toX, int y, int width, uint32_t color) = 0;

    // The "Wave Device" menu: entries send `systemCommand` with their id.
    virtual void addDeviceEntry(int id, const std::string& name) = 0;
    virtual void enableDeviceEntry(int id, bool enabled) = 0;
    virtual void selectDeviceEntry(int id) = 0;  // the one that is marked

    // The window: in the middle of the screen, with the program's icon, open for dropped files.
    virtual void placeWindow() = 0;

    // Whether what runs now takes so long that a person should see it.
    virtual void setBusy(bool busy) = 0;

    virtual void startTimer(int timerId, int milliseconds) = 0;
    virtual void stopTimer(int timerId) = 0;
    [[nodiscard]] virtual std::chrono::steady_clock::time_point now() const {
        return std::chrono::steady_clock::now();
    }

    // Whether it was answered with OK.
    virtual bool showMessage(const MessageBox& box) = 0;

    // The path, nothing when it was cancelled.
    virtual std::optional<std::string> chooseFile(const FileDialog& dialog) = 0;

    // A message to the dialog: later, from any thread; or at once.
    virtual void post(const DialogMessage& m) = 0;
    virtual void send(const DialogMessage& m) = 0;

    // Whether the window is there to get messages. From any thread.
    [[nodiscard]] virtual bool isWindow() const = 0;

    // Ends the window, with the message `destroy`; ends the message loop with an exit code.
    virtual void destroyWindow() = 0;
    virtual void postQuit(int exitCode) = 0;
};

}  // namespace tonvane
