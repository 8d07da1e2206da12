#include "platform/windows/dialog.h"

#include <algorithm>
#include <cstring>

#include "platform/windows/text.h"
#include "tessaro/failure.h"

namespace tessaro {
namespace {

// The predefined window classes are named by a number in a dialog template.
constexpr const wchar_t* kButton = L"BUTTON";
constexpr const wchar_t* kEdit = L"EDIT";
constexpr const wchar_t* kLabel = L"STATIC";
constexpr const wchar_t* kScrollBar = L"SCROLLBAR";

void Put(std::vector<WORD>& words, const void* data, std::size_t size) {
    const std::size_t at = words.size();
    words.resize(at + size / sizeof(WORD));
    std::memcpy(&words[at], data, size);
}

void Put(std::vector<WORD>& words, const wchar_t* text) {
    Put(words, text, (std::wcslen(text) + 1) * sizeof(wchar_t));
}

void AlignToDoubleWord(std::vector<WORD>& words) {
    words.resize((words.size() + 1) & ~1u);
}

}  // namespace

// DLGTEMPLATE, no menu, the standard class, caption, font size and face; then for each control on
// a double word boundary DLGITEMTEMPLATE, class, text, no creation data.
std::vector<WORD> Dialog::Template() const {
    std::vector<WORD> words;
    DLGTEMPLATE head{};
    head.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SHELLFONT | DS_CENTER |
                 DS_SETFOREGROUND;
    head.cdit = static_cast<WORD>(items_.size());
    head.cx = width_;
    head.cy = height_;
    Put(words, &head, sizeof(head));
    words.push_back(0);
    words.push_back(0);
    Put(words, caption_);
    words.push_back(8);
    Put(words, L"MS Shell Dlg");
    for (const ControlItem& item : items_) {
        AlignToDoubleWord(words);
        DLGITEMTEMPLATE control{};
        control.style = item.style | WS_CHILD | WS_VISIBLE;
        control.x = item.place.x;
        control.y = item.place.y;
        control.cx = item.place.width;
        control.cy = item.place.height;
        control.id = static_cast<WORD>(item.id);
        Put(words, &control, sizeof(control));
        Put(words, item.kind);
        Put(words, item.text);
        words.push_back(0);
    }
    return words;
}

void Dialog::AddLabel(int id, const wchar_t* text, Place place, DWORD style) {
    items_.push_back({id, kLabel, text, place, style});
}
void Dialog::AddEdit(int id, Place place) {
    items_.push_back({id, kEdit, L"", place, WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL});
}
void Dialog::AddButton(int id, const wchar_t* text, Place place, DWORD style) {
    items_.push_back({id, kButton, text, place, WS_TABSTOP | style});
}
void Dialog::AddScrollBar(int id, Place place) {
    items_.push_back({id, kScrollBar, L"", place, WS_TABSTOP | SBS_VERT});
}

void Dialog::Run() {
    std::vector<WORD> words = Template();
    AlignToDoubleWord(words);
    const INT_PTR outcome = DialogBoxIndirectParamW(
        GetModuleHandleW(nullptr), reinterpret_cast<const DLGTEMPLATE*>(words.data()), Owner(),
        &Dialog::Procedure, reinterpret_cast<LPARAM>(this));
    if (failure_)
        std::rethrow_exception(failure_);
    if (outcome < 0)
        throw Failure(kOutOfMemory);
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wide, LPARAM param) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, param);
        reinterpret_cast<Dialog*>(param)->window_ = window;
    }
    auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!dialog || dialog->failure_)
        return FALSE;
    try {
        return dialog->Handle(message, wide, param);
    } catch (...) {
        dialog->failure_ = std::current_exception();
        dialog->Finish();
        return TRUE;
    }
}

INT_PTR Dialog::Handle(UINT message, WPARAM wide, LPARAM param) {
    switch (message) {
        case WM_INITDIALOG:
            Opened();
            return TRUE;
        case WM_COMMAND:
            // STN_CLICKED and BN_CLICKED are both 0; Escape and the close box arrive as IDCANCEL.
            if (HIWORD(wide) == BN_CLICKED)
                Clicked(LOWORD(wide));
            else if (HIWORD(wide) == EN_CHANGE)
                Edited(LOWORD(wide));
            return TRUE;
        case WM_VSCROLL:
            if (param != 0)
                Scroll(reinterpret_cast<HWND>(param), LOWORD(wide), HIWORD(wide));
            return TRUE;
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<INT_PTR>(Background(GetDlgCtrlID(reinterpret_cast<HWND>(param)),
                                                        reinterpret_cast<HDC>(wide)));
        default:
            return FALSE;
    }
}

void Dialog::Scroll(HWND bar, int action, int thumb) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_ALL;
    GetScrollInfo(bar, SB_CTL, &info);
    const int page = static_cast<int>(info.nPage);
    const int last = info.nMax - std::max(page - 1, 0);
    int position = info.nPos;
    switch (action) {
        case SB_LINEUP:
            position -= 1;
            break;
        case SB_LINEDOWN:
            position += 1;
            break;
        case SB_PAGEUP:
            position -= page;
            break;
        case SB_PAGEDOWN:
            position += page;
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            position = thumb;  // no range goes beyond its 16 bits
            break;
        case SB_TOP:
            position = info.nMin;
            break;
        case SB_BOTTOM:
            position = last;
            break;
        default:
            return;
    }
    Scrolled(GetDlgCtrlID(bar), std::clamp(position, info.nMin, last));
}

std::string Dialog::Text(int id) const {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(Control(id))) + 1, L'\0');
    const int length = GetWindowTextW(Control(id), text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(length));
    return FromWide(text);
}

void Dialog::Text(int id, const std::string& text) const {
    SetWindowTextW(Control(id), ToWide(text).c_str());
}

void Dialog::ScrollRange(int id, int max, int page) const {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE;
    info.nMax = max + page - 1;  // the last position is nMax less the page
    info.nPage = static_cast<UINT>(page);
    SetScrollInfo(Control(id), SB_CTL, &info, TRUE);
}

void Dialog::ScrollPosition(int id, int position) const {
    SetScrollPos(Control(id), SB_CTL, position, TRUE);
}

}  // namespace tessaro
