#include "saving/text_fields.h"

#include <charconv>

namespace tessaro {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";

std::optional<std::uint64_t> ReadNumber(std::string_view text, int base) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

bool IsPlain(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x20 && byte != 0x7F && c != '%';
}

}  // namespace

std::string Hex16(std::uint64_t value) {
    std::string text;
    for (int shift = 60; shift >= 0; shift -= 4)
        text += kDigits[(value >> shift) & 15];
    return text;
}

std::optional<std::uint64_t> ReadHex16(std::string_view text) {
    if (text.size() != 16 || text.find_first_not_of(kDigits) != std::string_view::npos)
        return std::nullopt;
    return ReadNumber(text, 16);
}

std::optional<std::uint64_t> ReadDecimal(std::string_view text) {
    if (text.empty() || (text.size() > 1 && text[0] == '0') ||
        text.find_first_not_of("0123456789") != std::string_view::npos)
        return std::nullopt;
    return ReadNumber(text, 10);
}

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (IsPlain(c)) {
            escaped += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        escaped += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return escaped;
}

std::optional<std::string> ReadEscaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPlain(text[i])) {
            plain += text[i];
            continue;
        }
        if (text[i] != '%' || text.size() - i < 3)
            return std::nullopt;
        const std::size_t high = kDigits.find(text[i + 1]), low = kDigits.find(text[i + 2]);
        if (high == std::string_view::npos || low == std::string_view::npos)
            return std::nullopt;
        plain += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return plain;
}

std::string StateText(const std::optional<FilePrint>& state) {
    return state ? std::to_string(state->size) + ":" + Hex16(state->checksum) : "absent";
}

bool ReadState(std::string_view text, std::optional<FilePrint>& state) {
    if (text == "absent") {
        state.reset();
        return true;
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return false;
    const auto size = ReadDecimal(text.substr(0, colon));
    const auto checksum = ReadHex16(text.substr(colon + 1));
    if (!size || !checksum)
        return false;
    state = FilePrint{*size, *checksum};
    return true;
}

std::vector<std::string_view> Fields(std::string_view line) {
    std::vector<std::string_view> fields;
    for (;;) {
        const std::size_t blank = line.find(' ');
        fields.push_back(line.substr(0, blank));
        if (blank == std::string_view::npos)
            return fields;
        line.remove_prefix(blank + 1);
    }
}

std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t end; (end = text.find('\n')) != std::string_view::npos;) {
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    return lines;
}

}  // namespace tessaro
