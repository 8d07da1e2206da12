#include "support/support.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "support/hooked_files.h"

namespace tessaro::test {

ByteArray Hex(std::string_view text) {
    ByteArray bytes;
    int high = -1;
    for (char c : text) {
        const std::size_t digit = std::string_view("0123456789ABCDEF").find(UpperCase({&c, 1}));
        if (digit == std::string_view::npos)
            continue;
        if (high < 0) {
            high = static_cast<int>(digit);
        } else {
            bytes.push_back(static_cast<std::uint8_t>(high * 16 + static_cast<int>(digit)));
            high = -1;
        }
    }
    return bytes;
}

ByteArray Ascii(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string TextOf(ByteSpan bytes) {
    return {bytes.begin(), bytes.end()};
}

ByteArray operator+(ByteArray left, ByteSpan right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

ByteArray Part(ByteSpan bytes, std::size_t from, std::size_t size) {
    const ByteSpan part = bytes.subspan(from, size);
    return {part.begin(), part.end()};
}

TempFolder::TempFolder() {
    static std::atomic<int> counter{0};
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    do {
        path_ = (base / ("tessaro-test-" + std::to_string(std::random_device{}()) + "-" +
                         std::to_string(counter++)))
                    .string();
    } while (!std::filesystem::create_directory(path_));
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void TempFolder::RemoveFolder(std::string_view name) const {
    std::filesystem::remove_all(File(name));
}

std::string TempFolder::Write(std::string_view name, std::span<const std::uint8_t> bytes) const {
    WriteWholeFile(File(name), bytes);
    return File(name);
}

enmMsgBoxResult ScriptedUserInterface::MsgBox(const std::string& Prompt, std::int32_t Style,
                                              const std::string& Title, const std::string& HelpFile,
                                              std::int32_t HelpContext) {
    boxes.push_back({Prompt, Title, HelpFile, Style, HelpContext});
    const std::int32_t buttons = Style & 7;
    if (buttons == mbOKOnly)
        return mrOK;
    if (answers.empty())
        return buttons == mbYesNo ? mrNo : mrCancel;
    const enmMsgBoxResult answer = answers.front();
    answers.pop_front();
    return answer;
}

std::optional<std::string> ScriptedUserInterface::InputBox(const std::string& Prompt,
                                                           const std::string& Title) {
    inputPrompts.push_back(Prompt);
    inputTitles.push_back(Title);
    if (inputs.empty())
        return std::nullopt;
    const std::optional<std::string> input = inputs.front();
    inputs.pop_front();
    return input;
}

void ScriptedUserInterface::ShowIPhoneSettings(frmIPhoneSettings& Form) {
    if (onForm)
        onForm(Form);
}

std::optional<std::int32_t> ScriptedUserInterface::ChooseColor(std::int32_t) {
    if (colors.empty())
        return std::nullopt;
    const std::optional<std::int32_t> color = colors.front();
    colors.pop_front();
    return color;
}

std::optional<std::string> GameFolder(const std::string& name) {
    const char* root = std::getenv("TESSARO_GAME_DATA");
    if (root == nullptr || *root == '\0')
        return std::nullopt;
    const std::string folder = JoinPath(root, name);
    if (!FolderExists(folder))
        return std::nullopt;
    return folder;
}

void FreshStore(const std::string& appPath) {
    static const auto files = std::make_shared<HookedFiles>();
    Store& store = SharedStore();
    store = Store{};
    store.files = store.game->files = files;
    store.appPath = appPath;
}

}  // namespace tessaro::test
