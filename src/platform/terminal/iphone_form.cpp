#include "platform/terminal/iphone_form.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace tessaro {
namespace {

constexpr const char* kTitle = frmIPhoneSettings::Caption;

std::optional<std::int32_t> ParseNumber(const std::string& text, int base) {
    std::int32_t number = 0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number, base);
    if (parsed.ec != std::errc() || parsed.ptr != end || number < 0)
        return std::nullopt;
    return number;
}

std::int32_t WithRedAndBlueExchanged(std::int32_t color) {
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

std::string SixDigits(std::int32_t color) {
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), "%06X",
                  static_cast<unsigned>(WithRedAndBlueExchanged(color)) & 0xFFFFFFU);
    return digits.data();
}

/// The fields in the order of the form. False as soon as the input ends.
class Fields {
public:
    Fields(UserInterface& terminal, frmIPhoneSettings& form) : terminal_(terminal), form_(form) {}

    bool AskAll() {
        return Ask("Map Name", form_.txtMapName(),
                   [&](const std::string& text) { form_.txtMapName(text); }) &&
               Ask("Music", form_.txtMusicName(),
                   [&](const std::string& text) { form_.txtMusicName(text); }) &&
               AskNumber("Par Time, Minutes", form_.vsbMinutes(),
                         [&](std::int32_t value) { form_.vsbMinutes(value); }) &&
               AskNumber("Par Time, Seconds", form_.vsbSeconds(),
                         [&](std::int32_t value) { form_.vsbSeconds(value); }) &&
               AskToClick("Floor", SixDigits(form_.lblColor(0)),
                          [&] { form_.cmdChooseColor_Click(0); }) &&
               AskToClick("Ceiling", SixDigits(form_.lblColor(1)),
                          [&] { form_.cmdChooseColor_Click(1); }) &&
               AskToClick("RLEW Tag", form_.lblRLEWTag(), [&] { form_.lblRLEWTag_Click(); });
    }

private:
    template <class Set>
    bool Ask(const std::string& label, const std::string& value, Set&& set) {
        const auto answer = terminal_.InputBox(label + " [" + value + "]:", kTitle);
        if (answer && !answer->empty())
            set(*answer);
        return answer.has_value();
    }

    template <class Set>
    bool AskNumber(const std::string& label, std::int32_t value, Set&& set) {
        return Ask(label, std::to_string(value), [&](const std::string& text) {
            if (const auto number = ParseNumber(text, 10))
                set(*number);
        });
    }

    /// For fields that open a question of their own.
    template <class Click>
    bool AskToClick(const std::string& label, const std::string& value, Click&& click) {
        return Ask(label, value + ", c to change", [&](const std::string& text) {
            if (text == "c" || text == "C")
                click();
        });
    }

    UserInterface& terminal_;
    frmIPhoneSettings& form_;
};

}  // namespace

void AskIPhoneSettings(UserInterface& terminal, frmIPhoneSettings& form) {
    while (form.Visible()) {
        if (Fields(terminal, form).AskAll())
            form.cmdOK_Click();
        else
            form.cmdCancel_Click();
    }
}

std::optional<std::int32_t> AskColor(UserInterface& terminal, std::int32_t color) {
    const auto answer =
        terminal.InputBox("A colour as RRGGBB [" + SixDigits(color) + "]:", "Colour");
    if (!answer || answer->size() != 6)
        return std::nullopt;
    if (const auto typed = ParseNumber(*answer, 16))
        return WithRedAndBlueExchanged(*typed);
    return std::nullopt;
}

}  // namespace tessaro
