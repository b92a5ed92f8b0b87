#include "ui/win32/TemplateBytes.h"

#include <string>
#include <utility>

#include "platform/WideText.h"
#include "ui/win32/WindowsApi.h"

namespace tonvane {

namespace {

constexpr uint16_t extendedSignature = 0xFFFF;
constexpr DWORD dialogStyle =
    WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | DS_SETFONT | DS_MODALFRAME;
constexpr DWORD common = WS_CHILD | WS_VISIBLE;
constexpr DWORD operated = common | WS_TABSTOP;
constexpr int openListHeight = 120;  // dialog units of a list that is dropped down

struct ControlClass {
    const wchar_t* name;
    DWORD style;
    DWORD extendedStyle = 0;
};

ControlClass classOf(ControlKind kind) {
    switch (kind) {
        case ControlKind::groupBox:
            return {WC_BUTTONW, common | BS_GROUPBOX};
        case ControlKind::text:
            return {WC_STATICW, common | SS_LEFT | SS_ENDELLIPSIS};
        case ControlKind::button:
            return {WC_BUTTONW, operated | BS_PUSHBUTTON};
        case ControlKind::defaultButton:
            return {WC_BUTTONW, operated | BS_DEFPUSHBUTTON};
        case ControlKind::checkBox:
            return {WC_BUTTONW, operated | BS_AUTOCHECKBOX};
        case ControlKind::edit:
            return {WC_EDITW, operated | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
        case ControlKind::readOnlyEdit:
            return {WC_EDITW, operated | ES_AUTOHSCROLL | ES_READONLY, WS_EX_CLIENTEDGE};
        case ControlKind::dropList:
            return {WC_COMBOBOXW, operated | WS_VSCROLL | CBS_DROPDOWNLIST};
        case ControlKind::pathList:
            return {WC_COMBOBOXW,
                    operated | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS};
        case ControlKind::list:
            return {WC_LISTVIEWW, operated | LVS_REPORT | LVS_SINGLESEL | LVS_NOSORTHEADER,
                    WS_EX_CLIENTEDGE};
        case ControlKind::slider:
            return {TRACKBAR_CLASSW, operated | TBS_HORZ | TBS_NOTICKS};
    }
    return {WC_STATICW, common};
}

class Words {
  public:
    void add(int value) { words_.push_back(static_cast<uint16_t>(value)); }
    void addLong(DWORD value) {
        words_.push_back(static_cast<uint16_t>(value & 0xFFFFU));
        words_.push_back(static_cast<uint16_t>(value >> 16U));
    }
    void addText(const std::wstring& text) {
        words_.insert(words_.end(), text.begin(), text.end());
        words_.push_back(0);
    }
    void addPlace(const DialogRectangle& place) {
        for (const int value : {place.x, place.y, place.width, place.height}) {
            add(value);
        }
    }
    void align() {
        if (words_.size() % 2 != 0) {
            words_.push_back(0);
        }
    }
    [[nodiscard]] std::vector<uint16_t> take() { return std::move(words_); }

  private:
    std::vector<uint16_t> words_;
};

void addItem(Words& words, const DialogItem& item) {
    const ControlClass control = classOf(item.kind);
    DialogRectangle place = item.place;
    if (item.kind == ControlKind::dropList || item.kind == ControlKind::pathList) {
        place.height += openListHeight;
    }
    words.align();
    words.addLong(0);  // no help
    words.addLong(control.extendedStyle);
    words.addLong(control.style);
    words.addPlace(place);
    words.addLong(static_cast<DWORD>(item.id));
    words.addText(control.name);
    words.addText(Widen(item.text));
    words.add(0);  // no data
}

}  // namespace

std::vector<uint16_t> TemplateBytes(const DialogTemplate& dialog) {
    Words words;
    words.add(1);  // version
    words.add(extendedSignature);
    words.addLong(0);  // no help
    words.addLong(0);  // no extended style
    words.addLong(dialogStyle);
    words.add(static_cast<int>(dialog.items.size()));
    words.addPlace({0, 0, dialog.width, dialog.height});
    words.add(0);  // no menu
    words.add(0);  // the class of dialogs
    words.addText(Widen(dialog.caption));
    words.add(dialog.fontPoints);
    words.add(FW_NORMAL);
    words.add(DEFAULT_CHARSET << 8);  // not italic, and the character set
    words.addText(Widen(dialog.font));
    for (const DialogItem& item : dialog.items) {
        addItem(words, item);
    }
    return words.take();
}

}  // namespace tonvane
