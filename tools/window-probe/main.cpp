// Looks at the window of another program and sends it messages:
//
//     window-probe TITLE VERB [ARGUMENT ...]
//
//     controls              a line for each child window: id, V or H (shown or hidden), E or D
//     (enabled
//                           or disabled), left, top, width, height in pixels of the client area
//     client                left, top, width and height of the client area on the screen
//     text ID               the text of a control; 0 is the window itself
//     items ID              a line for each entry of a combo box; the selected one begins with "* "
//     settext ID TEXT       as typed by a person, with the edit box's own notification
//     check ID STATE        a check box, with its notification
//     choose ID INDEX       an entry of a combo box, with its notification
//     slide ID POSITION     a slider, let go there, with its notification
//     send ID [CODE]        the command of a control, and waits until it is done
//     post ID [CODE]        the same without waiting
//     system ID [NUMBER]    a command of the system menu and its parameter, without waiting
//
// Exit code 1 and nothing printed when there is no such window or control.
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "platform/WideText.h"
#include "ui/win32/WindowsApi.h"

namespace {

void print(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
}

void print(const RECT& r) {
    std::printf("%ld %ld %ld %ld\n", r.left, r.top, r.right - r.left, r.bottom - r.top);
}

RECT onScreen(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    return client;
}

BOOL CALLBACK printControl(HWND control, LPARAM window) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, reinterpret_cast<HWND>(window), reinterpret_cast<POINT*>(&place), 2);
    std::printf("%d %c %c ", GetDlgCtrlID(control), IsWindowVisible(control) != FALSE ? 'V' : 'H',
                IsWindowEnabled(control) != FALSE ? 'E' : 'D');
    print(place);
    return TRUE;
}

LPARAM address(const std::wstring& text) {
    return reinterpret_cast<LPARAM>(text.data());
}

std::string textOf(HWND control) {
    std::wstring text(static_cast<size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0)), L'\0');
    SendMessageW(control, WM_GETTEXT, text.size() + 1, address(text));
    return tonvane::Narrow(text);
}

void printItems(HWND list) {
    const LRESULT chosen = SendMessageW(list, CB_GETCURSEL, 0, 0);
    for (LRESULT i = 0; i < SendMessageW(list, CB_GETCOUNT, 0, 0); ++i) {
        const auto index = static_cast<WPARAM>(i);
        std::wstring text(static_cast<size_t>(SendMessageW(list, CB_GETLBTEXTLEN, index, 0)),
                          L'\0');
        SendMessageW(list, CB_GETLBTEXT, index, address(text));
        print((i == chosen ? "* " : "") + tonvane::Narrow(text));
    }
}

// What a verb works on.
struct Target {
    HWND window;
    HWND control;  // null for an id without a control
    int id;
    int number;  // the word behind the id
    std::wstring word;

    void notify(int code) const {
        SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, code)), parameter());
    }
    void post(int code) const {
        PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, code)), parameter());
    }
    void tell(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        SendMessageW(control, message, wParam, lParam);
    }
    [[nodiscard]] LPARAM parameter() const { return reinterpret_cast<LPARAM>(control); }
};

struct Verb {
    bool needsControl;
    void (*act)(const Target&);
};

const std::map<std::string, Verb>& verbs() {
    static const std::map<std::string, Verb> all{
        {"controls",
         {false,
          [](const Target& t) {
              EnumChildWindows(t.window, printControl, reinterpret_cast<LPARAM>(t.window));
          }}},
        {"client", {false, [](const Target& t) { print(onScreen(t.window)); }}},
        {"text", {true, [](const Target& t) { print(textOf(t.control)); }}},
        {"items", {true, [](const Target& t) { printItems(t.control); }}},
        {"settext", {true, [](const Target& t) { t.tell(WM_SETTEXT, 0, address(t.word)); }}},
        {"check",
         {true,
          [](const Target& t) {
              t.tell(BM_SETCHECK, static_cast<WPARAM>(t.number));
              t.notify(BN_CLICKED);
          }}},
        {"choose",
         {true,
          [](const Target& t) {
              t.tell(CB_SETCURSEL, static_cast<WPARAM>(t.number));
              t.notify(CBN_SELCHANGE);
          }}},
        {"slide",
         {true,
          [](const Target& t) {
              t.tell(TBM_SETPOS, TRUE, t.number);
              SendMessageW(t.window, WM_HSCROLL, TB_ENDTRACK, t.parameter());
          }}},
        {"send", {false, [](const Target& t) { t.notify(t.number); }}},
        {"post", {false, [](const Target& t) { t.post(t.number); }}},
        {"system",
         {false,
          [](const Target& t) {
              PostMessageW(t.window, WM_SYSCOMMAND, static_cast<WPARAM>(t.id), t.number);
          }}},
    };
    return all;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    std::vector<std::wstring> words(arguments + 1, arguments + count);
    words.resize(std::max<size_t>(words.size(), 4));
    const auto verb = verbs().find(tonvane::Narrow(words[1]));
    const HWND window = FindWindowW(L"#32770", words[0].c_str());
    if (verb == verbs().end() || window == nullptr) {
        return 1;
    }
    const int id = _wtoi(words[2].c_str());
    const HWND control = id == 0 ? window : GetDlgItem(window, id);
    if (verb->second.needsControl && control == nullptr) {
        return 1;
    }
    verb->second.act({window, control, id, _wtoi(words[3].c_str()), words[3]});
    return 0;
}
