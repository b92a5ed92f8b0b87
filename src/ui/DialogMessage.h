// What happens to a dialog, and the tables that say who answers to it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tonvane {

// The numbers are those of the Windows messages of the same meaning.
namespace message {
constexpr uint32_t destroy = 0x02;
constexpr uint32_t paint = 0x0F;
constexpr uint32_t close = 0x10;
constexpr uint32_t initDialog = 0x110;
constexpr uint32_t command = 0x111;        // id: control, code: notification
constexpr uint32_t systemCommand = 0x112;  // id: menu entry
constexpr uint32_t timer = 0x113;          // id: timer
constexpr uint32_t sliderMoved = 0x114;    // id: control, code: of the scroll
constexpr uint32_t dropFiles = 0x233;      // text: path of the first file

// Private ones; their wParam is the id.
constexpr uint32_t captureDone = 0x402;   // lParam 1: a capture is complete; 0: ended otherwise
constexpr uint32_t status = 0x427;        // a status text has changed; lParam byWorker or 0
constexpr uint32_t curveChanged = 0x430;  // lParam 0: a knot is moving; 1: one was let go
constexpr uint32_t follow = 0x431;        // a step of the design that follows the mouse is due
constexpr std::intptr_t byWorker = 1;     // the text is that of the engine
}  // namespace message

struct DialogMessage {
    uint32_t message = 0;
    int id = 0;
    int code = 0;
    std::intptr_t lParam = 0;
    std::string text{};
};

constexpr int anyCode = -1;

enum class Then {
    stop,  // the message is answered
    goOn,  // it goes on to later rows, the base class and the default handling
};

// A row of a dialog's table: messages of ids from first to last and with this code, or any, go to
// the handler; `result` is the answer.
template <typename Dialog>
struct MessageRow {
    uint32_t message;
    int firstId;
    int lastId;
    int code;
    void (Dialog::*handler)(const DialogMessage&);
    Then then = Then::stop;
    std::intptr_t result = 0;

    [[nodiscard]] bool takes(const DialogMessage& m) const {
        return m.message == message && m.id >= firstId && m.id <= lastId &&
               (code == anyCode || m.code == code);
    }
};

// Runs the rows that take a message in their order; the answer, nothing if it is to go on.
template <typename Dialog>
std::optional<std::intptr_t> Dispatch(Dialog& dialog, std::span<const MessageRow<Dialog>> rows,
                                      const DialogMessage& m) {
    for (const MessageRow<Dialog>& row : rows) {
        if (row.takes(m)) {
            (dialog.*row.handler)(m);
            if (row.then == Then::stop) {
                return row.result;
            }
        }
    }
    return std::nullopt;
}

}  // namespace tonvane
