#include "automation/windows_visitor.h"

namespace tessaro::test {
namespace {

constexpr int kPollMilliseconds = 20;
constexpr int kPolls = 500;

}  // namespace

HWND WaitForWindow(const std::wstring& caption) {
    for (int poll = 0; poll < kPolls; ++poll) {
        const HWND window = FindWindowW(nullptr, caption.c_str());
        if (window && IsWindowVisible(window))
            return window;
        Sleep(kPollMilliseconds);
    }
    return nullptr;
}

bool WaitUntilGone(HWND window) {
    for (int poll = 0; poll < kPolls; ++poll) {
        if (!IsWindow(window))
            return true;
        Sleep(kPollMilliseconds);
    }
    return false;
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

void Press(HWND window, int id) {
    PostMessageW(GetDlgItem(window, id), BM_CLICK, 0, 0);
}

Visitor::Visitor(std::wstring caption, std::function<void(HWND)> act)
    : thread_([this, caption = std::move(caption), act = std::move(act)] {
          const HWND window = WaitForWindow(caption);
          found_ = window != nullptr;
          if (found_)
              act(window);
      }) {}

bool Visitor::Wait() {
    if (thread_.joinable())
        thread_.join();
    return found_;
}

}  // namespace tessaro::test
