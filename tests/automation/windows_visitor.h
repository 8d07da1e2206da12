// Someone at the keyboard: finds a window by its caption from another thread and acts on it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>

namespace tessaro::test {

/// The top-level window with that caption, once it is there; null after a minute without one.
HWND WaitForWindow(const std::wstring& caption);
/// Whether the window goes away within a minute.
bool WaitUntilGone(HWND window);
/// What a control shows.
std::wstring TextOf(HWND window, int id);
/// The text of a message box.
std::wstring BoxText(HWND box);
/// Replaces the content of a text box key by key.
void Type(HWND window, int id, const std::wstring& text);
/// Answers a box with its default button.
void Accept(HWND box);
/// Presses a button as the mouse does.
void Press(HWND window, int id);
/// Waits until the keyboard is in one of the window's controls; whether it came.
bool WaitForFocus(HWND window);
/// The control of a window that has the keyboard; 0 for none.
int Focused(HWND window);
/// Strikes a key in the control that has the keyboard.
void Strike(HWND window, WORD key);
/// Strikes Tab and waits for the keyboard to move on; the control that has it then.
int Tab(HWND window);

/// Runs `act` on the window in a thread of its own; waits for it at the end. When the window does
/// not come, whatever else is open is closed, so that the test that waits for it goes on to fail.
class Visitor {
public:
    Visitor(std::wstring caption, std::function<void(HWND)> act);
    ~Visitor() { Wait(); }
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    /// Whether the window appeared.
    bool Wait();

private:
    bool found_ = false;
    std::thread thread_;
};

}  // namespace tessaro::test
