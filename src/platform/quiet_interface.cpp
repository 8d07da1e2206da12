// The user interface of hosts without a user.
#include "tessaro/iphone_settings.h"
#include "tessaro/user_interface.h"

namespace tessaro {

struct QuietUserInterface::Self {
    std::vector<typMessage> messages;

    void Keep(typMessage message) {
        constexpr std::size_t kMost = 1000;
        if (messages.size() == kMost)
            messages.erase(messages.begin());
        messages.push_back(std::move(message));
    }
};

QuietUserInterface::QuietUserInterface() : self_(std::make_unique<Self>()) {}
QuietUserInterface::~QuietUserInterface() = default;

const std::vector<typMessage>& QuietUserInterface::Messages() const {
    return self_->messages;
}

void QuietUserInterface::Clear() {
    self_->messages.clear();
}

enmMsgBoxResult QuietUserInterface::MsgBox(const std::string& Prompt, std::int32_t Style,
                                           const std::string& Title, const std::string&,
                                           std::int32_t) {
    self_->Keep({Prompt, Title, Style});
    constexpr std::int32_t kButtons = 15;
    switch (Style & kButtons) {
        case mbYesNo:
            return mrNo;
        case mbOKCancel:
            return mrCancel;
        default:
            return mrOK;
    }
}

std::optional<std::string> QuietUserInterface::InputBox(const std::string& Prompt,
                                                        const std::string& Title) {
    self_->Keep({Prompt, Title, 0});
    return std::nullopt;
}

void QuietUserInterface::ShowIPhoneSettings(frmIPhoneSettings& Form) {
    Form.cmdCancel_Click();
}

std::optional<std::int32_t> QuietUserInterface::ChooseColor(std::int32_t) {
    return std::nullopt;
}

}  // namespace tessaro
