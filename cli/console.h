// The command's user interface: no boxes, one clear line at the end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tessaro/tessaro.h"

namespace tessaro::cli {

/// What the options say about an iPhone map file; what is missing keeps the form's value.
struct IPhoneOptions {
    std::optional<std::string> mapName, musicName;
    std::optional<std::int32_t> minutes, seconds, tag, floor, ceiling;
};

/// Collects what the library has to say instead of showing it, answers its questions, and fills in
/// the iPhone form from the options. One for the process, installed by main.
class Console : public UserInterface {
public:
    /// Answers every question with Yes.
    bool assumeYes = false;
    IPhoneOptions iphone;

    enmMsgBoxResult MsgBox(const std::string& prompt, std::int32_t style, const std::string& title,
                           const std::string& helpFile, std::int32_t helpContext) override;
    std::optional<std::string> InputBox(const std::string& prompt,
                                        const std::string& title) override;
    void ShowIPhoneSettings(frmIPhoneSettings& form) override;
    std::optional<std::int32_t> ChooseColor(std::int32_t color) override;

    /// Asks a question of the command's own, with the same rules.
    bool Confirm(const std::string& question);
    /// Whether a failure was reported since the messages were last taken.
    bool HasFailure() const;
    /// The number of the first of them; nothing where there is none.
    std::optional<std::int32_t> FailureNumber() const { return failureNumber_; }
    /// Why the last operation failed, on one line; forgets what was collected.
    std::string TakeReason();
    /// What was said besides failures; forgets it.
    std::vector<std::string> TakeNotices();

private:
    void PrepareLogFolder();

    clsVersion settings_;  // made once: making one brings the default palette back
    std::vector<std::string> failures_, notices_;
    std::string declined_;
    std::optional<std::int32_t> failureNumber_;
    std::optional<std::int32_t> pendingColor_;
};

Console& TheConsole();

/// Whether the stream is a terminal: 0 standard input, 2 standard error.
bool IsTerminal(int stream);

/// The folder for the error log, created by the first failure: the user's state folder, otherwise
/// the system's folder for temporary files.
std::string StateFolder();

}  // namespace tessaro::cli
