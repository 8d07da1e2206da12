#include "platform/windows/input_box.h"

#include "platform/windows/dialog.h"
#include "platform/windows/text.h"

namespace tessaro {
namespace {

class InputDialog final : public Dialog {
public:
    InputDialog(const std::wstring& prompt, const std::wstring& title)
        : Dialog(title.c_str(), 240, 74) {
        AddLabel(-1, prompt.c_str(), {7, 7, 170, 36}, SS_NOPREFIX);
        AddEdit(kText, {7, 53, 226, 14});
        AddButton(IDOK, L"OK", {183, 7, 50, 14}, BS_DEFPUSHBUTTON);
        AddButton(IDCANCEL, L"Cancel", {183, 25, 50, 14});
    }

    std::optional<std::string> answer;

private:
    static constexpr int kText = 100;

    void Clicked(int id) override {
        if (id == IDOK)
            answer = Text(kText);
        if (id == IDOK || id == IDCANCEL)
            Finish();
    }
};

}  // namespace

std::optional<std::string> AskForText(const std::string& prompt, const std::string& title) {
    const std::wstring widePrompt = ToWide(prompt);
    const std::wstring wideTitle = ToWide(title);
    InputDialog dialog(widePrompt, wideTitle);
    dialog.Run();
    return dialog.answer;
}

}  // namespace tessaro
