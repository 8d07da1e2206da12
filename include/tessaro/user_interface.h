// The port through which the library talks to the user. A host may install its own.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tessaro/export.h"

namespace tessaro {

class frmIPhoneSettings;

/// Flags of a message box, added together: one set of buttons and one icon. The values are those
/// of the system's message boxes.
enum enmMsgBoxStyle : std::int32_t {
    mbOKOnly = 0,
    mbOKCancel = 1,
    mbYesNo = 4,
    mbCritical = 16,
    mbQuestion = 32,
    mbExclamation = 48,
    mbInformation = 64,
    mbHelpButton = 16384,
};

/// The button that closed a message box.
enum enmMsgBoxResult : std::int32_t {
    mrOK = 1,
    mrCancel = 2,
    mrYes = 6,
    mrNo = 7,
};

/// Every operation is modal: it returns when the user has answered. An implementation may throw;
/// the operation that asked then fails as it does for any other reason.
class TESSARO_API UserInterface {
public:
    virtual ~UserInterface();

    /// Shows `Prompt` under `Title` (empty: the library's name) with the buttons and the icon of
    /// `Style`. Where `Style` holds mbHelpButton, `HelpFile` and `HelpContext` name the help page.
    virtual enmMsgBoxResult MsgBox(const std::string& Prompt, std::int32_t Style,
                                   const std::string& Title, const std::string& HelpFile,
                                   std::int32_t HelpContext) = 0;

    /// Asks for one line of text; nothing when the user cancels.
    virtual std::optional<std::string> InputBox(const std::string& Prompt,
                                                const std::string& Title) = 0;

    /// Lets the user fill in the iPhone settings: calls the form's operations (the clicks, changes
    /// and scrolls) until it is no longer visible.
    virtual void ShowIPhoneSettings(frmIPhoneSettings& Form) = 0;

    /// Lets the user choose a colour (red in the low byte), starting from `Color`; nothing when
    /// the user cancels.
    virtual std::optional<std::int32_t> ChooseColor(std::int32_t Color) = 0;
};

/// What was said to nobody: a message box, or a question that an input box asked.
struct typMessage {
    std::string Prompt;
    std::string Title;
    std::int32_t Style = 0;  ///< of a message box, a sum of enmMsgBoxStyle; 0 of an input box
};

/// For hosts without a user: shows nothing, answers every question safely (No, Cancel, nothing)
/// and keeps what was said. Install it with SetUserInterface.
class TESSARO_API QuietUserInterface : public UserInterface {
public:
    QuietUserInterface();
    ~QuietUserInterface() override;

    /// What was said since the object was made or cleared, the oldest first; of more than 1,000
    /// messages the last 1,000.
    const std::vector<typMessage>& Messages() const;
    void Clear();

    enmMsgBoxResult MsgBox(const std::string& Prompt, std::int32_t Style, const std::string& Title,
                           const std::string& HelpFile, std::int32_t HelpContext) override;
    std::optional<std::string> InputBox(const std::string& Prompt,
                                        const std::string& Title) override;
    void ShowIPhoneSettings(frmIPhoneSettings& Form) override;
    std::optional<std::int32_t> ChooseColor(std::int32_t Color) override;

private:
    struct Self;
    std::unique_ptr<Self> self_;
};

/// Installs the calling thread's user interface; null brings the system's default back (message
/// boxes on Windows, the terminal elsewhere: it asks only where standard input is a terminal, and
/// otherwise takes the safe answer, No or Cancel). The caller keeps ownership and must outlive the
/// installation. Returns what was installed before, null for the default.
TESSARO_API UserInterface* SetUserInterface(UserInterface* Interface);

#ifdef _WIN32
/// The window (an HWND) that the calling thread's message boxes and forms belong to: they stand
/// before it, and it takes no input until they are answered. Null, as it is at first, stands for
/// the thread's active window.
TESSARO_API void* OwnerWindow();
TESSARO_API void OwnerWindow(void* Window);
#endif

}  // namespace tessaro
