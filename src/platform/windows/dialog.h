// A modal dialog of standard controls, described in code.
#pragma once

#include <windows.h>

#include <exception>
#include <string>
#include <vector>

namespace tessaro {

/// The window that a box or form belongs to: the host's, otherwise the thread's active one.
HWND Owner();

/// A place in dialog units: a quarter of the dialog font's width, an eighth of its height. A layout
/// in these fits every resolution.
struct Place {
    short x, y, width, height;
};

class Dialog {
public:
    Dialog(const wchar_t* caption, short width, short height)
        : caption_(caption), width_(width), height_(height) {}
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    virtual ~Dialog() = default;

    /// Shows the dialog until Finish. What Opened, Clicked and the others throw comes out here,
    /// with the dialog gone: nothing is thrown through the system's own code.
    void Run();

protected:
    // The controls, in tab order. `id` tells them apart; labels that nothing asks for share -1.
    void AddLabel(int id, const wchar_t* text, Place place, DWORD style = 0);
    void AddEdit(int id, Place place);
    void AddButton(int id, const wchar_t* text, Place place, DWORD style = BS_PUSHBUTTON);
    void AddScrollBar(int id, Place place);

    virtual void Opened() {}
    virtual void Clicked(int id) = 0;
    virtual void Edited(int /*id*/) {}
    /// A scroll bar's keys and arrows ask for `position`, which the dialog sets where it agrees.
    virtual void Scrolled(int /*id*/, int /*position*/) {}
    /// The brush behind a label, whose text is about to be drawn on `context`; null for the
    /// system's.
    virtual HBRUSH Background(int /*id*/, HDC /*context*/) { return nullptr; }

    void Finish() { EndDialog(window_, 0); }
    HWND Window() const { return window_; }
    HWND Control(int id) const { return GetDlgItem(window_, id); }
    std::string Text(int id) const;
    void Text(int id, const std::string& text) const;
    void ScrollRange(int id, int max, int page) const;
    void ScrollPosition(int id, int position) const;

private:
    struct ControlItem {
        int id;
        const wchar_t* kind;
        const wchar_t* text;
        Place place;
        DWORD style;
    };
    std::vector<WORD> Template() const;
    INT_PTR Handle(UINT message, WPARAM wide, LPARAM param);
    void Scroll(HWND bar, int action, int thumb);
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wide, LPARAM param);

    const wchar_t* caption_;
    short width_, height_;
    std::vector<ControlItem> items_;
    HWND window_ = nullptr;
    std::exception_ptr failure_;
};

}  // namespace tessaro
