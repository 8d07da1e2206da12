// What the tests of all rooms share.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/store.h"
#include "platform/file.h"
#include "tessaro/user_interface.h"

namespace tessaro::test {

/// The bytes written as hexadecimal pairs; everything but hexadecimal digits is ignored.
ByteArray Hex(std::string_view text);
/// The bytes of a text.
ByteArray Ascii(std::string_view text);
/// The text that bytes are.
std::string TextOf(ByteSpan bytes);
/// The bytes of both.
ByteArray operator+(ByteArray left, ByteSpan right);
/// `size` bytes from `from` on; all that follow where it is left out.
ByteArray Part(ByteSpan bytes, std::size_t from, std::size_t size = std::dynamic_extent);

/// The number of the Failure that `body` throws; 0 where it throws none.
template <class Body>
std::int32_t FailureOf(Body&& body) {
    try {
        body();
        return 0;
    } catch (const Failure& failure) {
        return failure.Number;
    }
}

/// A fresh folder, removed again with everything in it. `File` names a path inside.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string File(std::string_view name) const { return JoinPath(path_, name); }
    std::string Write(std::string_view name, std::span<const std::uint8_t> bytes) const;
    ByteArray Read(std::string_view name) const { return ReadWholeFile(File(name)); }
    bool Has(std::string_view name) const { return FileExists(File(name)); }
    void MakeFolder(std::string_view name) const { CreateFolder(File(name)); }
    void RemoveFolder(std::string_view name) const;

private:
    std::string path_;
};

struct ShownBox {
    std::string prompt, title, helpFile;
    std::int32_t style = 0, helpContext = 0;
};

/// Installs itself as the thread's user interface: records every box and answers from a script.
/// Without a scripted answer a question gets No or Cancel, an input box nothing.
class ScriptedUserInterface : public UserInterface {
public:
    ScriptedUserInterface() : before_(SetUserInterface(this)) {}
    ~ScriptedUserInterface() override { SetUserInterface(before_); }

    /// The prompt of the last box; empty where none was shown.
    std::string LastPrompt() const { return boxes.empty() ? "" : boxes.back().prompt; }

    std::vector<ShownBox> boxes;
    std::deque<enmMsgBoxResult> answers;
    std::deque<std::optional<std::string>> inputs;
    std::vector<std::string> inputPrompts, inputTitles;
    std::deque<std::optional<std::int32_t>> colors;
    std::function<void(frmIPhoneSettings&)> onForm;

    enmMsgBoxResult MsgBox(const std::string& Prompt, std::int32_t Style, const std::string& Title,
                           const std::string& HelpFile, std::int32_t HelpContext) override;
    std::optional<std::string> InputBox(const std::string& Prompt,
                                        const std::string& Title) override;
    void ShowIPhoneSettings(frmIPhoneSettings& Form) override;
    std::optional<std::int32_t> ChooseColor(std::int32_t Color) override;

private:
    UserInterface* before_;
};

/// The folder of a real game's data, where TESSARO_GAME_DATA names the folder above it.
std::optional<std::string> GameFolder(const std::string& name = "wl1");

/// Skips the running test where there is no real game data.
#define TESSARO_NEEDS_GAME_DATA()       \
    if (!::tessaro::test::GameFolder()) \
    GTEST_SKIP() << "set TESSARO_GAME_DATA to a folder that holds wl1"

/// Sets AppPath to a folder, so that the error log of a test stays in it, and forgets every other
/// setting of the thread's store.
void FreshStore(const std::string& appPath);

/// A test with a folder, a fresh store and boxes of its own.
class InFolder : public testing::Test {
protected:
    InFolder() { FreshStore(folder_.Path()); }

    TempFolder folder_;
    ScriptedUserInterface ui_;
};

}  // namespace tessaro::test
