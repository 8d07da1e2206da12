// The default user interface outside Windows: texts go to standard error; questions are asked only
// where standard input is a terminal, and otherwise get the safe answer.
#include <unistd.h>

#include <iostream>
#include <string>

#include "platform/system.h"
#include "platform/terminal/iphone_form.h"

namespace tessaro {
namespace {

bool CanAsk() {
    return ::isatty(STDIN_FILENO) == 1;
}

std::optional<std::string> ReadLine() {
    std::string line;
    if (!std::getline(std::cin, line))
        return std::nullopt;
    return line;
}

/// A text that may quote a file's bytes, without what would steer the terminal.
std::string Printable(std::string text) {
    std::erase(text, '\r');
    for (char& c : text) {
        if ((static_cast<unsigned char>(c) < ' ' && c != '\n') || c == '\x7F')
            c = '?';
    }
    return text;
}

class TerminalInterface : public UserInterface {
public:
    enmMsgBoxResult MsgBox(const std::string& Prompt, std::int32_t Style, const std::string& Title,
                           const std::string& HelpFile, std::int32_t HelpContext) override {
        std::cerr << (Title.empty() ? "Tessaro" : Title) << ": " << Printable(Prompt) << '\n';
        if ((Style & mbHelpButton) != 0)
            std::cerr << "(help: " << HelpFile << ", page " << HelpContext << ")\n";
        switch (Style & 7) {
            case mbYesNo:
                return Ask("[y/N] ", "yY") ? mrYes : mrNo;
            case mbOKCancel:
                return Ask("[o/C] ", "oO") ? mrOK : mrCancel;
            default:
                return mrOK;
        }
    }

    std::optional<std::string> InputBox(const std::string& Prompt,
                                        const std::string& Title) override {
        if (!CanAsk())
            return std::nullopt;
        std::cerr << Title << ": " << Printable(Prompt) << ' ';
        return ReadLine();
    }

    void ShowIPhoneSettings(frmIPhoneSettings& Form) override { AskIPhoneSettings(*this, Form); }

    std::optional<std::int32_t> ChooseColor(std::int32_t Color) override {
        return AskColor(*this, Color);
    }

private:
    static bool Ask(const char* choices, std::string_view agreeing) {
        if (!CanAsk())
            return false;
        std::cerr << choices;
        const std::optional<std::string> answer = ReadLine();
        return answer && !answer->empty() && agreeing.find(answer->front()) != agreeing.npos;
    }
};

}  // namespace

UserInterface& DefaultUserInterface() {
    static TerminalInterface terminal;
    return terminal;
}

}  // namespace tessaro
