#include "foundation/code_page.h"

#include "platform/system.h"

namespace tessaro::modCodePage {
namespace {

constexpr std::uint32_t kWindowsCyrillic = 1251;
constexpr std::uint32_t kDosCyrillic = 866;

}  // namespace

std::string ConvertCodePage(const std::string& text, std::uint32_t source, std::uint32_t target) {
    return ConvertBetweenCodePages(text, source, target);
}

std::string TextToDosCodePage(const std::string& text) {
    if (ActiveCodePage() != kWindowsCyrillic)
        return text;
    return ConvertCodePage(text, kWindowsCyrillic, kDosCyrillic);
}

std::string TextFromDosCodePage(const std::string& text) {
    if (ActiveCodePage() != kWindowsCyrillic)
        return text;
    return ConvertCodePage(text, kDosCyrillic, kWindowsCyrillic);
}

std::string BytesToText(const ByteArray& bytes) {
    return {bytes.begin(), bytes.end()};
}

ByteArray TextToBytes(const std::string& text) {
    return {text.begin(), text.end()};
}

ByteArray BytesToDosCodePage(const ByteArray& bytes) {
    return TextToBytes(TextToDosCodePage(BytesToText(bytes)));
}

ByteArray BytesFromDosCodePage(const ByteArray& bytes) {
    return TextToBytes(TextFromDosCodePage(BytesToText(bytes)));
}

}  // namespace tessaro::modCodePage
