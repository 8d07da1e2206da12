#include "automation/windows_visitor.h"

namespace tessaro::test {
namespace {

/// Whether it comes true within a minute.
bool Eventually(const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + 60'000;
    do {
        if (condition())
            return true;
        Sleep(20);
    } while (GetTickCount64() < end);
    return false;
}

void CloseEverything() {
    const auto close = [](HWND window, LPARAM) -> BOOL {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId() && IsWindowVisible(window))
            PostMessageW(window, WM_CLOSE, 0, 0);
        return TRUE;
    };
    EnumWindows(close, 0);
}

HWND FocusedWindow(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info.hwndFocus;
}

}  // namespace

HWND WaitForWindow(const std::wstring& caption) {
    HWND window = nullptr;
    const bool found = Eventually([&] {
        window = FindWindowW(nullptr, caption.c_str());
        return window && IsWindowVisible(window);
    });
    return found ? window : nullptr;
}

bool WaitUntilGone(HWND window) {
    return Eventually([window] { return !IsWindow(window); });
}

std::wstring TextOf(HWND window, int id) {
    wchar_t text[512] = L"";
    SendMessageW(GetDlgItem(window, id), WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    return text;
}

std::wstring BoxText(HWND box) {
    return TextOf(box, 0xFFFF);
}

void Type(HWND window, int id, const std::wstring& text) {
    const HWND control = GetDlgItem(window, id);
    SendMessageW(control, EM_SETSEL, 0, -1);
    SendMessageW(control, WM_KEYDOWN, VK_DELETE, 0);
    for (const wchar_t key : text)
        SendMessageW(control, WM_CHAR, static_cast<WPARAM>(key), 1);
}

void Accept(HWND box) {
    const WORD button = LOWORD(SendMessageW(box, DM_GETDEFID, 0, 0));
    PostMessageW(box, WM_COMMAND, button, reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

void Press(HWND window, int id) {
    PostMessageW(GetDlgItem(window, id), BM_CLICK, 0, 0);
}

bool WaitForFocus(HWND window) {
    return Eventually([window] { return GetParent(FocusedWindow(window)) == window; });
}

int Focused(HWND window) {
    return GetDlgCtrlID(FocusedWindow(window));
}

void Strike(HWND window, WORD key) {
    const HWND control = FocusedWindow(window);
    PostMessageW(control, WM_KEYDOWN, key, 1);
    PostMessageW(control, WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
}

int Tab(HWND window) {
    const HWND before = FocusedWindow(window);
    Strike(window, VK_TAB);
    Eventually([&] { return FocusedWindow(window) != before; });
    return Focused(window);
}

Visitor::Visitor(std::wstring caption, std::function<void(HWND)> act)
    : thread_([this, caption = std::move(caption), act = std::move(act)] {
          const HWND window = WaitForWindow(caption);
          found_ = window != nullptr;
          if (found_)
              act(window);
          else
              CloseEverything();
      }) {}

bool Visitor::Wait() {
    if (thread_.joinable())
        thread_.join();
    return found_;
}

}  // namespace tessaro::test
