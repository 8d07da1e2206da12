// The default user interface on Windows: the system's message boxes, and dialogs of its controls.
#include <windows.h>

#include <commdlg.h>
#include <htmlhelp.h>

#include "platform/system.h"
#include "platform/windows/dialog.h"
#include "platform/windows/input_box.h"
#include "platform/windows/settings_dialog.h"
#include "platform/windows/text.h"

namespace tessaro {
namespace {

thread_local HWND hostWindow = nullptr;
/// The help file of the message box that is open; its Help button's callback gets no more than the
/// context number.
thread_local const wchar_t* openHelpFile = nullptr;

/// Shows a page of a help file. The help viewer is loaded when it is first asked for.
void ShowHelp(HWND window, const wchar_t* file, DWORD_PTR context) {
    using HtmlHelpFunction = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);
    static const HMODULE viewer = LoadLibraryW(L"hhctrl.ocx");
    if (!viewer)
        return;
    const auto show = reinterpret_cast<HtmlHelpFunction>(
        reinterpret_cast<void*>(GetProcAddress(viewer, "HtmlHelpW")));
    if (show)
        show(window, file, HH_HELP_CONTEXT, context);
}

void CALLBACK HelpRequested(LPHELPINFO info) {
    if (openHelpFile)
        ShowHelp(GetActiveWindow(), openHelpFile, info->dwContextId);
}

class WindowsInterface : public UserInterface {
public:
    enmMsgBoxResult MsgBox(const std::string& Prompt, std::int32_t Style, const std::string& Title,
                           const std::string& HelpFile, std::int32_t HelpContext) override {
        const std::wstring prompt = ToWide(Prompt);
        const std::wstring title = Title.empty() ? L"Tessaro" : ToWide(Title);
        const std::wstring helpFile = ToWide(HelpFile);
        MSGBOXPARAMSW box{};
        box.cbSize = sizeof(box);
        box.hwndOwner = Owner();
        box.lpszText = prompt.c_str();
        box.lpszCaption = title.c_str();
        box.dwStyle = static_cast<DWORD>(Style) | MB_SETFOREGROUND;
        if (!box.hwndOwner)
            box.dwStyle |= MB_TASKMODAL;
        box.dwContextHelpId = static_cast<DWORD_PTR>(HelpContext);
        box.lpfnMsgBoxCallback = HelpRequested;
        const wchar_t* const outerHelpFile = openHelpFile;  // of a box around this one
        openHelpFile = HelpFile.empty() ? nullptr : helpFile.c_str();
        const int button = MessageBoxIndirectW(&box);
        openHelpFile = outerHelpFile;
        return static_cast<enmMsgBoxResult>(button);
    }

    std::optional<std::string> InputBox(const std::string& Prompt,
                                        const std::string& Title) override {
        return AskForText(Prompt, Title);
    }

    void ShowIPhoneSettings(frmIPhoneSettings& Form) override { ShowSettingsDialog(Form); }

    std::optional<std::int32_t> ChooseColor(std::int32_t Color) override {
        thread_local COLORREF custom[16] = {};  // the chooser's own row, kept from call to call
        CHOOSECOLORW choice{};
        choice.lStructSize = sizeof(choice);
        choice.hwndOwner = Owner();
        choice.rgbResult = static_cast<COLORREF>(Color) & 0xFFFFFF;
        choice.lpCustColors = custom;
        choice.Flags = CC_RGBINIT | CC_FULLOPEN;
        if (!ChooseColorW(&choice))
            return std::nullopt;
        return static_cast<std::int32_t>(choice.rgbResult);
    }
};

}  // namespace

HWND Owner() {
    // Windows belong to top-level windows; the host may have named a window within one.
    const HWND host = hostWindow ? GetAncestor(hostWindow, GA_ROOT) : nullptr;
    // While something modal is open over the host, the library's own form or a dialog of the
    // host's, the host is disabled and the box belongs to that.
    const HWND active = GetActiveWindow();
    return host && (IsWindowEnabled(host) || !active) ? host : active;
}

void* OwnerWindow() {
    return hostWindow;
}
void OwnerWindow(void* Window) {
    hostWindow = static_cast<HWND>(Window);
}

UserInterface& DefaultUserInterface() {
    static WindowsInterface windows;
    return windows;
}

}  // namespace tessaro
