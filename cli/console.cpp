#include "console.h"

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <utility>

#include "report.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace tessaro::cli {

namespace {

/// A failure's box says "Error 53 in clsVSwap.Initialize: File not found" under the title
/// "clsVSwap.Initialize Error". The user is told what the command tried instead of the procedure.
struct BoxOfFailure {
    std::optional<std::int32_t> number;
    std::string description;
};

BoxOfFailure ReadBox(const std::string& prompt, const std::string& title) {
    constexpr std::string_view kStart = "Error ", kSuffix = " Error";
    std::int32_t number = 0;
    const char* end = prompt.data() + prompt.size();
    if (title.size() <= kSuffix.size() || !prompt.starts_with(kStart) ||
        std::from_chars(prompt.data() + kStart.size(), end, number).ec != std::errc())
        return {{}, prompt};
    const std::string procedure = " in " + title.substr(0, title.size() - kSuffix.size());
    const std::size_t at = prompt.find(procedure);
    const std::size_t colon =
        at == std::string::npos ? at : prompt.find(": ", at + procedure.size());
    return {number, colon == std::string::npos ? prompt : prompt.substr(colon + 2)};
}

}  // namespace

/// The library writes its log as soon as the box is closed, so the folder has to be there by now.
void Console::PrepareLogFolder() {
    std::error_code error;
    const std::filesystem::path folder = StateFolder();
    std::filesystem::create_directories(folder, error);
    const bool usable = !error && std::ofstream(folder / "Error.log", std::ios::app).good();
    settings_.AppPath(usable ? folder.string()
                             : std::filesystem::temp_directory_path(error).string());
}

enmMsgBoxResult Console::MsgBox(const std::string& prompt, std::int32_t style,
                                const std::string& title, const std::string&, std::int32_t) {
    if (style & mbYesNo)
        return Confirm(OneLine(prompt)) ? mrYes : mrNo;
    const bool failure = (style & 0xF0) == mbCritical;
    if (!failure) {
        notices_.push_back(OneLine(prompt));
        return mrOK;
    }
    PrepareLogFolder();
    const BoxOfFailure box = ReadBox(prompt, title);
    if (failures_.empty())
        failureNumber_ = box.number;
    failures_.push_back(OneLine(box.description));
    return mrOK;
}

bool Console::Confirm(const std::string& question) {
    if (assumeYes)
        return true;
    if (IsTerminal(0)) {
        std::cerr << question << " [y/N] " << std::flush;
        std::string answer;
        if (std::getline(std::cin, answer) && !answer.empty() &&
            (answer[0] == 'y' || answer[0] == 'Y'))
            return true;
    }
    declined_ = question;
    return false;
}

std::optional<std::string> Console::InputBox(const std::string&, const std::string&) {
    return {};
}

void Console::ShowIPhoneSettings(frmIPhoneSettings& form) {
    if (iphone.mapName)
        form.txtMapName(*iphone.mapName);
    if (iphone.musicName)
        form.txtMusicName(*iphone.musicName);
    if (iphone.minutes)
        form.vsbMinutes(*iphone.minutes);
    if (iphone.seconds)
        form.vsbSeconds(*iphone.seconds);
    if (iphone.tag)
        form.vsbRLEWTag(*iphone.tag);
    const std::optional<std::int32_t> colors[] = {iphone.floor, iphone.ceiling};
    for (std::int32_t label = 0; label < 2; ++label) {
        pendingColor_ = colors[label];
        if (pendingColor_)
            form.cmdChooseColor_Click(label);
    }
    form.cmdOK_Click();
    if (form.Visible())  // refused: the reason has been collected
        form.cmdCancel_Click();
}

std::optional<std::int32_t> Console::ChooseColor(std::int32_t) {
    return std::exchange(pendingColor_, {});
}

bool Console::HasFailure() const {
    return !failures_.empty();
}

std::string Console::TakeReason() {
    std::string reason = !failures_.empty()  ? failures_.front()
                         : !notices_.empty() ? notices_.front()
                                             : std::string();
    if (reason.empty() && !declined_.empty())
        reason = "not confirmed (--yes confirms): " + declined_;
    failures_.clear();
    failureNumber_.reset();
    notices_.clear();
    declined_.clear();
    return reason;
}

std::vector<std::string> Console::TakeNotices() {
    return std::exchange(notices_, {});
}

Console& TheConsole() {
    static Console console;
    return console;
}

bool IsTerminal(int stream) {
#ifdef _WIN32
    return _isatty(stream) != 0;
#else
    return isatty(stream) != 0;
#endif
}

std::string StateFolder() {
    const auto under = [](const char* variable, const char* rest) -> std::filesystem::path {
        const char* folder = std::getenv(variable);
        return folder && *folder ? std::filesystem::path(folder) / rest : std::filesystem::path();
    };
#ifdef _WIN32
    std::filesystem::path folder = under("LOCALAPPDATA", "Tessaro");
#else
    std::filesystem::path folder = under("XDG_STATE_HOME", "tessaro");
    if (folder.empty())
        folder = under("HOME", ".local/state/tessaro");
#endif
    if (folder.empty()) {
        std::error_code error;
        folder = std::filesystem::temp_directory_path(error);
    }
    return folder.string();
}

}  // namespace tessaro::cli
