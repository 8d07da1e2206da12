// The rules of the iPhone settings form, without a window.
#include "tessaro/iphone_settings.h"

#include "support/support.h"

#ifndef _WIN32
#include "platform/terminal/iphone_form.h"
#endif

namespace tessaro {
namespace {

class IPhoneSettingsForm : public testing::Test {
protected:
    IPhoneSettingsForm() {
        iPhoneMapSettings settings;
        settings.RLEWTag = 0x0ABC;
        settings.MapName = "Cave";
        settings.MusicName = "a.ogg";
        settings.ParTime = 1 + 20 / 60.0F;
        settings.FloorColor = 7;
        settings.CeilingColor = 8;
        form.LoadSettings(settings);
    }

    test::ScriptedUserInterface ui;
    frmIPhoneSettings form;
};

TEST_F(IPhoneSettingsForm, OKCopiesTheControls) {
    EXPECT_EQ(form.vsbMinutes(), 1);
    EXPECT_EQ(form.vsbSeconds(), 20);
    EXPECT_EQ(form.lblRLEWTag(), "0ABC");
    ui.colors = {0x010203, std::nullopt};
    ui.onForm = [](frmIPhoneSettings& shown) {
        EXPECT_TRUE(shown.Visible());
        shown.txtMapName(" Deep cave ");
        shown.vsbMinutes(200);
        shown.vsbSeconds(45);
        shown.vsbRLEWTag(0x10000);
        shown.cmdChooseColor_Click(1);
        shown.cmdChooseColor_Click(0);                // cancelled
        EXPECT_EQ(shown.Settings().MapName, "Cave");  // nothing is copied before OK
        shown.cmdOK_Click();
    };
    form.ShowModal();
    EXPECT_TRUE(form.PressedOK());
    EXPECT_FALSE(form.Visible());
    EXPECT_EQ(form.Settings().MapName, " Deep cave ");
    EXPECT_EQ(form.Settings().ParTime, 99.75F);
    EXPECT_EQ(form.Settings().RLEWTag, 0xFFFF);
    EXPECT_EQ(form.Settings().FloorColor, 7);
    EXPECT_EQ(form.Settings().CeilingColor, 0x010203);
}

TEST_F(IPhoneSettingsForm, BlankNamesKeepItOpen) {
    ui.onForm = [this](frmIPhoneSettings& shown) {
        shown.txtMapName("  ");
        shown.txtMusicName("");
        shown.cmdOK_Click();
        shown.txtMapName("Cave");
        shown.cmdOK_Click();
        EXPECT_TRUE(shown.Visible());
        ASSERT_EQ(ui.boxes.size(), 2u);
        EXPECT_EQ(ui.boxes[0].prompt, "Map must have a name.");
        EXPECT_EQ(ui.boxes[1].prompt, "Map must have music.");
        EXPECT_EQ(ui.boxes[1].title, "Missing Value");
        EXPECT_EQ(ui.boxes[1].style, mbInformation);
    };
    form.ShowModal();  // goes away unanswered: as Cancel
    EXPECT_FALSE(form.PressedOK());
    EXPECT_FALSE(form.Visible());
}

TEST_F(IPhoneSettingsForm, TagsAreTypedInHexadecimal) {
    struct {
        std::optional<std::string> typed;
        const char* shown;
    } const cases[] = {{"ABCD", "ABCD"}, {"12345", "ABCD"},      {"XYZ", "ABCD"},
                       {"", "ABCD"},     {std::nullopt, "ABCD"}, {"-1", "ABCD"},
                       {"0x1", "ABCD"},  {"f", "000F"},          {"FFFF", "FFFF"}};
    for (const auto& row : cases) {
        ui.inputs = {row.typed};
        form.lblRLEWTag_Click();
        EXPECT_EQ(form.lblRLEWTag(), row.shown) << row.typed.value_or("(cancelled)");
    }
    EXPECT_EQ(ui.inputPrompts.back(), "Please enter a new tag value in hexadecimal format:");
    EXPECT_EQ(ui.inputTitles.back(), "New Tag Value");
}

#ifndef _WIN32
TEST_F(IPhoneSettingsForm, ATerminalAsksForEachField) {
    ui.onForm = [this](frmIPhoneSettings& shown) { AskIPhoneSettings(ui, shown); };
    ui.onForm(form);  // hidden: nothing is asked
    EXPECT_TRUE(ui.inputPrompts.empty());

    ui.inputs = {" ",        "", "",  "",  "", "",  "",  // a blank name: again
                 "New name", "", "2", "x", "", "c", "c", "12AB"};
    ui.colors = {0x00112233};
    form.ShowModal();
    EXPECT_TRUE(form.PressedOK());
    EXPECT_EQ(form.Settings().MapName, "New name");
    EXPECT_EQ(form.Settings().MusicName, "a.ogg");
    EXPECT_EQ(form.Settings().ParTime, 2 + 20 / 60.0F);
    EXPECT_EQ(form.Settings().FloorColor, 7);
    EXPECT_EQ(form.Settings().CeilingColor, 0x112233);
    EXPECT_EQ(form.Settings().RLEWTag, 0x12AB);
    EXPECT_EQ(ui.inputPrompts[0], "Map Name [Cave]:");

    ui.inputs = {"", std::nullopt};
    form.ShowModal();
    EXPECT_FALSE(form.PressedOK());
}

TEST_F(IPhoneSettingsForm, ATerminalTakesColoursRedFirst) {
    ui.inputs = {"FF8001", "", "FF80", "GG8001"};
    EXPECT_EQ(AskColor(ui, 0x0180FF), 0x0180FF);
    EXPECT_EQ(ui.inputPrompts[0], "A colour as RRGGBB [FF8001]:");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(AskColor(ui, 0), std::nullopt);
}
#endif

}  // namespace
}  // namespace tessaro
