#include "foundation/code_page.h"

#include <cstdlib>

#include "platform/system.h"
#include "support/support.h"

namespace tessaro {
namespace {

using namespace modCodePage;

TEST(CodePages, CyrillicGoesBothWays) {
    // А, я, ё, № and a Latin letter in each code page.
    const std::string windows = "\xC0\xFF\xB8\xB9Z", dos = "\x80\xEF\xF1\xFCZ";
    EXPECT_EQ(ConvertCodePage(windows, 1251, 866), dos);
    EXPECT_EQ(ConvertCodePage(dos, 866, 1251), windows);
    for (int letter = 0x410; letter < 0x450; ++letter) {
        const std::string text(1, static_cast<char>(0xC0 + letter - 0x410));
        EXPECT_EQ(ConvertCodePage(ConvertCodePage(text, 1251, 866), 866, 1251), text);
    }
    EXPECT_EQ(ConvertCodePage("", 1251, 866), "");
}

TEST(CodePages, BytesKeepTheirCount) {
    EXPECT_TRUE(TextToBytes("").empty());
    EXPECT_EQ(BytesToDosCodePage({0x41}).size(), 1u);
    EXPECT_EQ(BytesToText({0x41, 0x00, 0xFF}), std::string("A\0\xFF", 3));
}

#ifndef _WIN32

class Locale {
public:
    explicit Locale(const char* name) {
        if (const char* before = std::getenv("LC_ALL"))
            before_ = before;
        ::setenv("LC_ALL", name, 1);
    }
    ~Locale() { before_ ? ::setenv("LC_ALL", before_->c_str(), 1) : ::unsetenv("LC_ALL"); }

private:
    std::optional<std::string> before_;
};

TEST(CodePages, OnlyACyrillicSystemConverts) {
    const std::string text = "\xC0 text";
    {
        Locale utf8("C.UTF-8");
        EXPECT_EQ(TextToDosCodePage(text), text);
        EXPECT_EQ(TextFromDosCodePage(text), text);
    }
    Locale cyrillic("ru_RU.CP1251");
    EXPECT_EQ(ActiveCodePage(), 1251u);
    EXPECT_EQ(TextToDosCodePage(text), "\x80 text");
    EXPECT_EQ(BytesFromDosCodePage({0x80}), ByteArray{0xC0});
    EXPECT_EQ(TextToDosCodePage("\x98"), "?") << "a character without a counterpart";
}

#endif

}  // namespace
}  // namespace tessaro
