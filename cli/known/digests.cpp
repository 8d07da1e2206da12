#include "known/digests.h"

#include <zlib.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace tessaro::cli {

namespace {

constexpr std::size_t kBlock = 64;

template <class Words>
std::string Hexadecimal(const Words& words, bool bigEndian) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint32_t word : words)
        for (int i = 0; i < 4; ++i) {
            const std::uint32_t byte = word >> (bigEndian ? 24 - 8 * i : 8 * i) & 0xFF;
            text += kDigits[byte >> 4];
            text += kDigits[byte & 15];
        }
    return text;
}

/// Both digests end the bytes with a 1 bit, zeros, and the number of bits in 8 bytes.
ByteArray Padded(ByteArray bytes, bool bigEndian) {
    const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
    bytes.push_back(0x80);
    while (bytes.size() % kBlock != kBlock - 8)
        bytes.push_back(0);
    for (int i = 0; i < 8; ++i)
        bytes.push_back(static_cast<std::uint8_t>(bits >> (bigEndian ? 56 - 8 * i : 8 * i)));
    return bytes;
}

std::uint32_t Word(const ByteArray& bytes, std::size_t at, bool bigEndian) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i)
        word |= std::uint32_t{bytes[at + i]} << (bigEndian ? 24 - 8 * i : 8 * i);
    return word;
}

}  // namespace

bool Digests::Are(const std::string& wanted) {
    const std::string kind = wanted.substr(0, wanted.find(':') + 1);
    const auto [entry, isNew] = known_.try_emplace(kind);
    if (isNew)
        entry->second = kind == "crc32:"  ? Crc32Of(content_)
                        : kind == "sha1:" ? Sha1Of(content_)
                        : kind == "md5:"  ? Md5Of(content_)
                                          : "";
    return !entry->second.empty() && wanted == kind + entry->second;
}

std::string Crc32Of(const ByteArray& bytes) {
    const uLong sum = crc32_z(crc32_z(0, nullptr, 0), bytes.data(), bytes.size());
    return Hexadecimal(std::array{static_cast<std::uint32_t>(sum)}, true);
}

std::string Md5Of(const ByteArray& bytes) {
    static const std::array<std::uint32_t, 64> sines = [] {
        std::array<std::uint32_t, 64> table{};
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = static_cast<std::uint32_t>(
                std::floor(std::abs(std::sin(static_cast<double>(i + 1))) * 4294967296.0));
        return table;
    }();
    constexpr int kTurns[4][4] = {
        {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    std::array<std::uint32_t, 4> state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    const ByteArray padded = Padded(bytes, false);
    for (std::size_t block = 0; block < padded.size(); block += kBlock) {
        auto [a, b, c, d] = state;
        for (std::size_t i = 0; i < 64; ++i) {
            const std::size_t round = i / 16;
            const std::uint32_t mixed = round == 0   ? (b & c) | (~b & d)
                                        : round == 1 ? (d & b) | (~d & c)
                                        : round == 2 ? b ^ c ^ d
                                                     : c ^ (b | ~d);
            constexpr std::size_t kSteps[] = {1, 5, 3, 7}, kStarts[] = {0, 1, 5, 0};
            const std::size_t word = (kSteps[round] * i + kStarts[round]) % 16;
            const std::uint32_t sum = a + mixed + sines[i] + Word(padded, block + 4 * word, false);
            a = d;
            d = c;
            c = b;
            b += std::rotl(sum, kTurns[round][i % 4]);
        }
        state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
    }
    return Hexadecimal(state, false);
}

std::string Sha1Of(const ByteArray& bytes) {
    std::array<std::uint32_t, 5> state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476,
                                          0xc3d2e1f0};
    const ByteArray padded = Padded(bytes, true);
    for (std::size_t block = 0; block < padded.size(); block += kBlock) {
        std::array<std::uint32_t, 80> words{};
        for (std::size_t i = 0; i < 16; ++i)
            words[i] = Word(padded, block + 4 * i, true);
        for (std::size_t i = 16; i < words.size(); ++i)
            words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);
        auto [a, b, c, d, e] = state;
        for (std::size_t i = 0; i < words.size(); ++i) {
            constexpr std::uint32_t kConstants[] = {0x5a827999, 0x6ed9eba1, 0x8f1bbcdc, 0xca62c1d6};
            const std::size_t round = i / 20;
            const std::uint32_t mixed = round == 0   ? (b & c) | (~b & d)
                                        : round == 2 ? (b & c) | (b & d) | (c & d)
                                                     : b ^ c ^ d;
            const std::uint32_t sum = std::rotl(a, 5) + mixed + e + kConstants[round] + words[i];
            e = d;
            d = c;
            c = std::rotl(b, 30);
            b = a;
            a = sum;
        }
        state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d, state[4] + e};
    }
    return Hexadecimal(state, true);
}

}  // namespace tessaro::cli
