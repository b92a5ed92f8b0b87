#include "ui/win32/FileChooser.h"

#include <array>
#include <filesystem>

#include "platform/WideText.h"
#include "ui/win32/WindowsApi.h"

namespace tonvane {

namespace {

constexpr size_t maxPath = 260;
constexpr size_t maxTitle = 256;

// Pairs of text and pattern, each ended by a zero, the list by another; a pattern's alternatives
// are parted by semicolons.
std::wstring filterOf(const FileDialog& wanted) {
    std::string patterns = wanted.pattern;
    for (char& c : patterns) {
        c = c == ' ' ? ';' : c;
    }
    std::wstring filter = Widen(wanted.filterText);
    filter += L'\0';
    filter += Widen(patterns);
    filter += L'\0';
    return filter;
}

// Windows gives the extension to a file that is to be written, and not always to one to be opened.
std::filesystem::path withExtension(std::filesystem::path path, const std::wstring& extension) {
    std::error_code ignored;
    if (!path.has_extension() && !std::filesystem::exists(path, ignored)) {
        path += L"." + extension;
    }
    return path;
}

}  // namespace

std::optional<std::string> ChooseFile(const FileDialog& wanted) {
    std::array<wchar_t, maxPath> path{};
    std::array<wchar_t, maxTitle> title{};
    const std::wstring filter = filterOf(wanted);
    const std::wstring extension = Widen(wanted.extension);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetActiveWindow();
    dialog.lpstrFilter = filter.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = maxPath;
    dialog.lpstrFileTitle = title.data();
    dialog.nMaxFileTitle = maxTitle;
    dialog.lpstrDefExt = extension.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_ENABLESIZING;

    // Both kinds move the working directory, the one for opening whatever it is told.
    std::error_code ignored;
    const auto folder = std::filesystem::current_path(ignored);
    const BOOL chosen = wanted.form == FileDialog::Form::save ? GetSaveFileNameW(&dialog)
                                                              : GetOpenFileNameW(&dialog);
    std::filesystem::current_path(folder, ignored);
    if (chosen == FALSE) {
        return std::nullopt;
    }
    return Narrow(withExtension(path.data(), extension).native());
}

}  // namespace tonvane
