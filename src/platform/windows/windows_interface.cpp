// The default user interface on Windows: real message boxes.
#include <windows.h>

#include "platform/system.h"

namespace tessaro {
namespace {

class WindowsInterface : public UserInterface {
public:
    enmMsgBoxResult MsgBox(const std::string& Prompt, std::int32_t Style, const std::string& Title,
                           const std::string&, std::int32_t) override {
        const int button =
            MessageBoxA(nullptr, Prompt.c_str(), Title.empty() ? "Tessaro" : Title.c_str(),
                        static_cast<UINT>(Style) | MB_TASKMODAL);
        return static_cast<enmMsgBoxResult>(button);
    }

    std::optional<std::string> InputBox(const std::string&, const std::string&) override {
        return std::nullopt;
    }

    void ShowIPhoneSettings(frmIPhoneSettings&) override {}

    std::optional<std::int32_t> ChooseColor(std::int32_t) override { return std::nullopt; }
};

}  // namespace

UserInterface& DefaultUserInterface() {
    static WindowsInterface windows;
    return windows;
}

}  // namespace tessaro
