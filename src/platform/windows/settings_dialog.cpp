#include "platform/windows/settings_dialog.h"

#include "platform/windows/dialog.h"
#include "platform/windows/text.h"

namespace tessaro {
namespace {

enum ControlId : int {
    kMapName = 100,
    kMusicName,
    kMinutes,
    kMinutesValue,
    kSeconds,
    kSecondsValue,
    kTag,
    kTagValue,
    kColor,  // the two colour labels, then their buttons
    kChooseColor = kColor + 2,
};

class SettingsDialog final : public Dialog {
public:
    explicit SettingsDialog(frmIPhoneSettings& form)
        : Dialog(caption_.c_str(), 232, 140), form_(form) {
        AddLabel(-1, L"Map &Name", {7, 9, 44, 8});
        AddEdit(kMapName, {54, 7, 108, 14});
        AddLabel(-1, L"M&usic", {7, 27, 44, 8});
        AddEdit(kMusicName, {54, 25, 108, 14});

        AddLabel(-1, L"Par Time", {7, 63, 44, 8});
        AddLabel(-1, L"&Minutes", {54, 48, 32, 8});
        AddLabel(kMinutesValue, L"", {54, 61, 30, 12}, SS_CENTER | SS_CENTERIMAGE | SS_SUNKEN);
        AddScrollBar(kMinutes, {88, 47, 10, 40});
        AddLabel(-1, L"&Seconds", {118, 48, 32, 8});
        AddLabel(kSecondsValue, L"", {118, 61, 30, 12}, SS_CENTER | SS_CENTERIMAGE | SS_SUNKEN);
        AddScrollBar(kSeconds, {152, 47, 10, 40});

        AddLabel(-1, L"RLEW &Tag", {7, 111, 44, 8});
        // A label to look at; as a button it is reached by the keyboard too.
        AddButton(kTagValue, L"", {54, 108, 30, 14}, BS_FLAT);
        AddScrollBar(kTag, {88, 95, 10, 40});

        constexpr DWORD kColorLabel = SS_CENTER | SS_CENTERIMAGE | SS_SUNKEN;
        AddLabel(kColor, L"Floor", {118, 98, 44, 14}, kColorLabel);
        AddButton(kChooseColor, L"&Floor...", {175, 98, 50, 14});
        AddLabel(kColor + 1, L"Ceiling", {118, 118, 44, 14}, kColorLabel);
        AddButton(kChooseColor + 1, L"&Ceiling...", {175, 118, 50, 14});

        AddButton(IDOK, L"OK", {175, 7, 50, 14}, BS_DEFPUSHBUTTON);
        AddButton(IDCANCEL, L"Cancel", {175, 25, 50, 14});
    }
    ~SettingsDialog() override {
        for (HBRUSH brush : brushes_)
            if (brush)
                DeleteObject(brush);
    }

private:
    void Opened() override {
        ScrollRange(kMinutes, frmIPhoneSettings::vsbMinutesMax, 10);
        ScrollRange(kSeconds, frmIPhoneSettings::vsbSecondsMax, 10);
        ScrollRange(kTag, frmIPhoneSettings::vsbRLEWTagMax, 0x100);
        // Filling the boxes reports edits; what they hold is taken once both are filled.
        Text(kMapName, form_.txtMapName());
        Text(kMusicName, form_.txtMusicName());
        filled_ = true;
        Refresh();
    }

    void Edited(int id) override {
        if (!filled_)
            return;
        if (id == kMapName)
            form_.txtMapName(Text(id));
        else if (id == kMusicName)
            form_.txtMusicName(Text(id));
    }

    void Scrolled(int id, int position) override {
        switch (id) {
            case kMinutes:
                form_.vsbMinutes(position);
                break;
            case kSeconds:
                form_.vsbSeconds(position);
                break;
            case kTag:
                form_.vsbRLEWTag(position);
                break;
            default:
                break;
        }
        Refresh();
    }

    void Clicked(int id) override {
        switch (id) {
            case kTagValue:
                form_.lblRLEWTag_Click();
                break;
            case kChooseColor:
            case kChooseColor + 1:
                form_.cmdChooseColor_Click(id - kChooseColor);
                break;
            case IDOK:
                form_.cmdOK_Click();
                break;
            case IDCANCEL:
                form_.cmdCancel_Click();
                break;
            default:
                return;
        }
        if (!form_.Visible())
            Finish();
        else
            Refresh();
    }

    HBRUSH Background(int id, HDC context) override {
        if (id != kColor && id != kColor + 1)
            return nullptr;
        const auto color = static_cast<COLORREF>(form_.lblColor(id - kColor));
        const int brightness =
            3 * GetRValue(color) + 6 * GetGValue(color) + GetBValue(color);  // of 2550
        SetBkMode(context, TRANSPARENT);
        SetTextColor(context, brightness > 1275 ? RGB(0, 0, 0) : RGB(255, 255, 255));
        return brushes_[id - kColor];
    }

    /// Shows what the form's controls hold now.
    void Refresh() {
        ScrollPosition(kMinutes, form_.vsbMinutes());
        ScrollPosition(kSeconds, form_.vsbSeconds());
        ScrollPosition(kTag, form_.vsbRLEWTag());
        Text(kMinutesValue, std::to_string(form_.vsbMinutes()));
        Text(kSecondsValue, std::to_string(form_.vsbSeconds()));
        Text(kTagValue, form_.lblRLEWTag());
        for (int index = 0; index < 2; ++index) {
            if (brushes_[index])
                DeleteObject(brushes_[index]);
            brushes_[index] =
                CreateSolidBrush(static_cast<COLORREF>(form_.lblColor(index)) & 0xFFFFFF);
            InvalidateRect(Control(kColor + index), nullptr, TRUE);
        }
    }

    inline static const std::wstring caption_ = ToWide(frmIPhoneSettings::Caption);
    frmIPhoneSettings& form_;
    HBRUSH brushes_[2] = {};
    bool filled_ = false;
};

}  // namespace

void ShowSettingsDialog(frmIPhoneSettings& form) {
    SettingsDialog(form).Run();
}

}  // namespace tessaro
