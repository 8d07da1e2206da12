// The real boxes and the real form, used from outside.
#include <cstdlib>

#include "automation/windows_visitor.h"
#include "foundation/global.h"
#include "platform/system.h"
#include "support/support.h"
#include "tessaro/iphone_settings.h"

namespace tessaro {
namespace {

using test::BoxText;
using test::Press;
using test::TextOf;
using test::Type;

// The dialog's controls.
constexpr int kMapName = 100, kMusicName = 101, kMinutes = 102, kMinutesValue = 103, kSeconds = 104,
              kTag = 106, kTagValue = 107, kColor = 108, kChooseColor = 110;

class Windows : public testing::Test {
protected:
    static void SetUpTestSuite() { SetProcessDPIAware(); }
    void SetUp() override { test::FreshStore(folder.Path()); }

    test::TempFolder folder;
};

TEST_F(Windows, AReportedFailureIsReadAndClosed) {
    std::wstring text;
    bool hasOkAlone = false;
    test::Visitor visitor(L"clsGameMaps.LoadMap Error", [&](HWND box) {
        text = BoxText(box);
        hasOkAlone = !GetDlgItem(box, IDHELP);
        test::Accept(box);
    });
    modGlobal::SetErrorState(Failure(kFileNotFound));
    modGlobal::ReportError("clsGameMaps.LoadMap");
    EXPECT_TRUE(visitor.Wait());
    EXPECT_EQ(text, L"Error 53 in clsGameMaps.LoadMap: File not found");
    EXPECT_TRUE(hasOkAlone);
    EXPECT_TRUE(folder.Has("Error.log"));
}

TEST_F(Windows, ABoxBelongsToTheHostsWindowAndGivesTheButtonBack) {
    const HWND host = CreateWindowW(L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                    100, nullptr, nullptr, nullptr, nullptr);
    OwnerWindow(host);
    HWND owner = nullptr;
    BOOL enabled = TRUE;
    test::Visitor visitor(L"Question", [&](HWND box) {
        owner = GetWindow(box, GW_OWNER);
        enabled = IsWindowEnabled(host);
        Press(box, IDYES);
    });
    EXPECT_EQ(CurrentUserInterface().MsgBox("Sure?", mbYesNo | mbQuestion, "Question", "", 0),
              mrYes);
    EXPECT_TRUE(visitor.Wait());
    OwnerWindow(nullptr);
    DestroyWindow(host);
    EXPECT_EQ(owner, host);
    EXPECT_FALSE(enabled);
}

TEST_F(Windows, TheHelpButtonIsThereWhereAHelpFileIs) {
    bool hasHelp = false;
    test::Visitor visitor(L"Helpful", [&](HWND box) {
        hasHelp = GetDlgItem(box, IDHELP) != nullptr;
        test::Accept(box);
    });
    EXPECT_EQ(CurrentUserInterface().MsgBox("Text", mbCritical | mbHelpButton, "Helpful",
                                            "C:\\KZR.chm", 1500),
              mrOK);
    EXPECT_TRUE(visitor.Wait());
    EXPECT_TRUE(hasHelp);
}

TEST_F(Windows, TheInputBoxAnswersWithItsTextOrNothing) {
    test::Visitor typist(L"New value", [](HWND box) {
        Type(box, 100, L"BEEF");
        Press(box, IDOK);
    });
    EXPECT_EQ(CurrentUserInterface().InputBox("Please enter:", "New value"), "BEEF");
    EXPECT_TRUE(typist.Wait());
    test::Visitor refuser(L"New value", [](HWND box) { PostMessageW(box, WM_CLOSE, 0, 0); });
    EXPECT_EQ(CurrentUserInterface().InputBox("Please enter:", "New value"), std::nullopt);
    EXPECT_TRUE(refuser.Wait());
}

iPhoneMapSettings SomeSettings() {
    iPhoneMapSettings settings;
    settings.RLEWTag = 0xABCD;
    settings.Width = settings.Height = 64;
    settings.FloorColor = 0x707070;
    settings.CeilingColor = 0x383838;
    settings.MapName = "Wolf 1";
    settings.MusicName = "GETTHEM";
    settings.ParTime = 1.5F;
    return settings;
}

constexpr const wchar_t* kCaption = L"iPhone Map File Settings";

void Scroll(HWND window, int id, int action) {
    SendMessageW(window, WM_VSCROLL, static_cast<WPARAM>(action),
                 reinterpret_cast<LPARAM>(GetDlgItem(window, id)));
}

TEST_F(Windows, TheFormIsFilledInByHand) {
    frmIPhoneSettings form;
    form.LoadSettings(SomeSettings());
    std::wstring shown, tagShown, missing, tagAfter;
    bool stayedOpen = false;
    test::Visitor user(kCaption, [&](HWND window) {
        shown = TextOf(window, kMapName) + L"|" + TextOf(window, kMusicName) + L"|" +
                TextOf(window, kMinutesValue);
        tagShown = TextOf(window, kTagValue);

        Type(window, kMapName, L"   ");
        Press(window, IDOK);
        const HWND box = test::WaitForWindow(L"Missing Value");
        missing = box ? BoxText(box) : L"no box";
        test::Accept(box);
        test::WaitUntilGone(box);
        stayedOpen = IsWindowVisible(window);

        Type(window, kMapName, L"Renamed");
        Type(window, kMusicName, L"CORNER");
        Scroll(window, kMinutes, SB_LINEDOWN);
        Scroll(window, kMinutes, SB_LINEDOWN);
        Scroll(window, kSeconds, SB_BOTTOM);
        Scroll(window, kSeconds, SB_LINEUP);
        Scroll(window, kTag, SB_LINEUP);
        PostMessageW(GetDlgItem(window, kTagValue), WM_LBUTTONDOWN, MK_LBUTTON, 0);
        PostMessageW(GetDlgItem(window, kTagValue), WM_LBUTTONUP, 0, 0);
        const HWND input = test::WaitForWindow(L"New Tag Value");
        tagAfter = TextOf(window, kTagValue);
        Type(input, 100, L"c0de");
        Press(input, IDOK);
        test::WaitUntilGone(input);
        Press(window, IDOK);
    });
    form.ShowModal();
    EXPECT_TRUE(user.Wait());
    EXPECT_EQ(shown, L"Wolf 1|GETTHEM|1");
    EXPECT_EQ(tagShown, L"ABCD");
    EXPECT_EQ(missing, L"Map must have a name.");
    EXPECT_TRUE(stayedOpen);
    EXPECT_EQ(tagAfter, L"ABCC");
    ASSERT_TRUE(form.PressedOK());
    const iPhoneMapSettings& entered = form.Settings();
    EXPECT_EQ(entered.MapName, "Renamed");
    EXPECT_EQ(entered.MusicName, "CORNER");
    EXPECT_FLOAT_EQ(entered.ParTime, 3.0F + 58.0F / 60.0F);
    EXPECT_EQ(entered.RLEWTag, 0xC0DE);
    EXPECT_EQ(entered.FloorColor, 0x707070);
}

TEST_F(Windows, TheFormIsUsedByKeyboardAlone) {
    frmIPhoneSettings form;
    form.LoadSettings(SomeSettings());
    std::vector<int> order;
    bool stayedOpen = false;
    test::Visitor user(kCaption, [&](HWND window) {
        test::WaitForFocus(window);
        order.push_back(test::Focused(window));
        for (int tabs = 0; tabs < 10; ++tabs) {
            order.push_back(test::Tab(window));
            if (order.back() == kMinutes)
                test::Strike(window, VK_DOWN);
            else if (order.back() == kSeconds)
                test::Strike(window, VK_NEXT);
            else if (order.back() == kTag)
                test::Strike(window, VK_END);
            else if (order.back() == kTagValue) {
                test::Strike(window, VK_SPACE);
                const HWND input = test::WaitForWindow(L"New Tag Value");
                test::WaitForFocus(input);
                test::Strike(input, VK_ESCAPE);
                stayedOpen = test::WaitUntilGone(input) && test::WaitForFocus(window);
            }
        }
        test::Strike(window, VK_RETURN);
    });
    form.ShowModal();
    EXPECT_TRUE(user.Wait());
    EXPECT_EQ(order, (std::vector<int>{kMapName, kMusicName, kMinutes, kSeconds, kTagValue, kTag,
                                       kChooseColor, kChooseColor + 1, IDOK, IDCANCEL, kMapName}));
    EXPECT_TRUE(stayedOpen);
    ASSERT_TRUE(form.PressedOK());
    EXPECT_FLOAT_EQ(form.Settings().ParTime, 2.0F + 40.0F / 60.0F);
    EXPECT_EQ(form.Settings().RLEWTag, 0xFFFF);
}

TEST_F(Windows, AColourIsChosenForTheFloor) {
    frmIPhoneSettings form;
    form.LoadSettings(SomeSettings());
    test::Visitor user(kCaption, [&](HWND window) {
        Press(window, kChooseColor);
        const HWND chooser = test::WaitForWindow(L"Color");
        Type(chooser, 706, L"10");  // red, green, blue
        Type(chooser, 707, L"20");
        Type(chooser, 708, L"30");
        Press(chooser, IDOK);
        test::WaitUntilGone(chooser);
        Press(window, IDOK);
    });
    form.ShowModal();
    EXPECT_TRUE(user.Wait());
    EXPECT_EQ(form.Settings().FloorColor, 0x1E140A);
    EXPECT_EQ(form.Settings().CeilingColor, 0x383838);
}

/// Whether a label or button has room for the whole of its text.
bool ShowsAllOfItsText(HWND control) {
    wchar_t text[64] = L"";
    GetWindowTextW(control, text, 64);
    RECT area{}, needed{};
    GetClientRect(control, &area);
    const HDC context = GetDC(control);
    const HGDIOBJ before =
        SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    DrawTextW(context, text, -1, &needed, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(context, before);
    ReleaseDC(control, context);
    return needed.right <= area.right && needed.bottom <= area.bottom + 1;
}

TEST_F(Windows, TheFormShowsItsColoursFitsItsControlsAndCancels) {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    const char* const configured = std::getenv("TESSARO_WINE_DPI");
    ASSERT_EQ(dpi, configured ? std::atoi(configured) : dpi);

    frmIPhoneSettings form;
    form.LoadSettings(SomeSettings());
    COLORREF floor = 0, ceiling = 0;
    bool contained = true, apart = true;
    std::wstring cut;
    BOOL fills = FALSE;
    test::Visitor user(kCaption, [&](HWND window) {
        UpdateWindow(window);
        const auto corner = [&](int id) {
            const HWND label = GetDlgItem(window, id);
            const HDC context = GetDC(label);
            const COLORREF color = GetPixel(context, 3, 3);
            ReleaseDC(label, context);
            return color;
        };
        floor = corner(kColor);
        ceiling = corner(kColor + 1);
        RECT client{};
        GetClientRect(window, &client);
        RECT unit{0, 0, 232, 140};
        MapDialogRect(window, &unit);
        fills = EqualRect(&client, &unit);
        MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
        for (HWND one = GetWindow(window, GW_CHILD); one; one = GetWindow(one, GW_HWNDNEXT)) {
            RECT area{}, common{};
            GetWindowRect(one, &area);
            UnionRect(&common, &client, &area);
            contained = contained && EqualRect(&common, &client);
            if (!ShowsAllOfItsText(one))
                cut += TextOf(window, GetDlgCtrlID(one)) + L"|";
            for (HWND two = GetWindow(one, GW_HWNDNEXT); two; two = GetWindow(two, GW_HWNDNEXT)) {
                RECT other{};
                GetWindowRect(two, &other);
                apart = apart && !IntersectRect(&common, &area, &other);
            }
        }
        PostMessageW(window, WM_COMMAND, IDCANCEL, 0);  // what Escape sends
    });
    form.ShowModal();
    EXPECT_TRUE(user.Wait());
    EXPECT_FALSE(form.PressedOK());
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(floor, 0x707070U);
    EXPECT_EQ(ceiling, 0x383838U);
    EXPECT_TRUE(contained);
    EXPECT_TRUE(apart);
    EXPECT_EQ(cut, L"");
    EXPECT_TRUE(fills) << "the size that the layout has at " << dpi << " dpi";
}

}  // namespace
}  // namespace tessaro
