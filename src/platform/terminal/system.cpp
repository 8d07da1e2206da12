#include "platform/system.h"

#include <dlfcn.h>
#include <langinfo.h>
#include <locale.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include "platform/file.h"

namespace tessaro {
namespace {

constexpr std::uint32_t kUtf8 = 65001;

std::string RealPath(const char* path) {
    const std::unique_ptr<char, void (*)(void*)> real(::realpath(path, nullptr), std::free);
    return real ? real.get() : "";
}

/// The code set named by the locale's environment: it counts also where the locale itself is not
/// installed.
std::string LocaleCodeSet() {
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0')
            continue;
        const std::string_view name = value;
        if (const std::size_t point = name.find('.'); point != name.npos)
            return std::string(name.substr(point + 1, name.find('@') - point - 1));
        break;
    }
    std::string codeSet;
    if (const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr)) {
        codeSet = ::nl_langinfo_l(CODESET, locale);
        ::freelocale(locale);
    }
    return codeSet;
}

// What the upper halves of the two code pages mean.
using UpperHalf = std::array<char16_t, 128>;

constexpr UpperHalf MakeWindows1251() {
    UpperHalf table{0x402,  0x403,  0x201A, 0x453,  0x201E, 0x2026, 0x2020, 0x2021, 0x20AC, 0x2030,
                    0x409,  0x2039, 0x40A,  0x40C,  0x40B,  0x40F,  0x452,  0x2018, 0x2019, 0x201C,
                    0x201D, 0x2022, 0x2013, 0x2014, 0x98,   0x2122, 0x459,  0x203A, 0x45A,  0x45C,
                    0x45B,  0x45F,  0xA0,   0x40E,  0x45E,  0x408,  0xA4,   0x490,  0xA6,   0xA7,
                    0x401,  0xA9,   0x404,  0xAB,   0xAC,   0xAD,   0xAE,   0x407,  0xB0,   0xB1,
                    0x406,  0x456,  0x491,  0xB5,   0xB6,   0xB7,   0x451,  0x2116, 0x454,  0xBB,
                    0x458,  0x405,  0x455,  0x457};
    for (std::size_t i = 0; i < 64; ++i)
        table[64 + i] = static_cast<char16_t>(0x410 + i);
    return table;
}

constexpr UpperHalf MakeDos866() {
    constexpr std::array<char16_t, 48> kBoxes{
        0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563,
        0x2551, 0x2557, 0x255D, 0x255C, 0x255B, 0x2510, 0x2514, 0x2534, 0x252C, 0x251C,
        0x2500, 0x253C, 0x255E, 0x255F, 0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550,
        0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559, 0x2558, 0x2552, 0x2553, 0x256B,
        0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580};
    constexpr std::array<char16_t, 16> kLast{0x401,  0x451, 0x404,  0x454,  0x407, 0x457,
                                             0x40E,  0x45E, 0xB0,   0x2219, 0xB7,  0x221A,
                                             0x2116, 0xA4,  0x25A0, 0xA0};
    UpperHalf table{};
    for (std::size_t i = 0; i < 48; ++i) {
        table[i] = static_cast<char16_t>(0x410 + i);
        table[48 + i] = kBoxes[i];
    }
    for (std::size_t i = 0; i < 16; ++i) {
        table[96 + i] = static_cast<char16_t>(0x440 + i);
        table[112 + i] = kLast[i];
    }
    return table;
}

const UpperHalf* FindCodePage(std::uint32_t codePage) {
    static constexpr UpperHalf kWindows1251 = MakeWindows1251();
    static constexpr UpperHalf kDos866 = MakeDos866();
    return codePage == 1251 ? &kWindows1251 : codePage == 866 ? &kDos866 : nullptr;
}

}  // namespace

std::string LibraryFolder() {
    Dl_info info{};
    std::string file;
    if (::dladdr(reinterpret_cast<void*>(&LibraryFolder), &info) != 0 && info.dli_fname != nullptr)
        file = RealPath(info.dli_fname);
    if (file.empty())  // a program found through the search path
        file = RealPath("/proc/self/exe");
    const std::size_t separator = LastSeparator(file);
    return separator == std::string::npos ? "." : file.substr(0, separator);
}

std::string DefaultAppPath() {
    std::string folder = LibraryFolder();
    if (::access(folder.c_str(), W_OK) == 0)
        return folder;
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    if (state != nullptr && *state == '/')
        folder = state;
    else if (home != nullptr && *home == '/')
        folder = std::string(home) + "/.local/state";
    else
        return folder;
    folder += "/tessaro";
    std::error_code ignored;  // what cannot be made shows itself when the log is written
    std::filesystem::create_directories(folder, ignored);
    return folder;
}

std::string PathFromHost(const std::string& path) {
    return path;
}
std::string PathToHost(const std::string& path) {
    return path;
}

std::uint32_t ActiveCodePage() {
    const std::string codeSet = UpperCase(LocaleCodeSet());
    if (codeSet == "CP1251" || codeSet == "WINDOWS-1251")
        return 1251;
    if (codeSet == "UTF-8" || codeSet == "UTF8")
        return kUtf8;
    return 0;
}

std::string ConvertBetweenCodePages(const std::string& text, std::uint32_t source,
                                    std::uint32_t target) {
    const UpperHalf* from = FindCodePage(source);
    const UpperHalf* to = FindCodePage(target);
    if (from == nullptr || to == nullptr)
        return {};
    std::string converted = text;
    for (char& c : converted) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (byte < 0x80)
            continue;
        const char16_t wide = (*from)[byte - 0x80u];
        c = '?';
        for (std::size_t i = 0; i < to->size(); ++i)
            if ((*to)[i] == wide)
                c = static_cast<char>(0x80 + i);
    }
    return converted;
}

std::string LocalTimestamp() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    std::array<char, 64> text{};
    const std::size_t size = std::strftime(text.data(), text.size(), "%m/%d/%Y %I:%M %p", &local);
    std::string timestamp(text.data(), size);
    if (timestamp.ends_with(' '))  // a locale without designators
        timestamp += local.tm_hour < 12 ? "AM" : "PM";
    return timestamp;
}

}  // namespace tessaro
