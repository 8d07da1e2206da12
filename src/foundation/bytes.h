// The one bounds-checked way in and out of bytes: every stored form is read through ByteReader and
// built through ByteWriter, so that format code never indexes raw bytes. All numbers are
// little-endian.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "tessaro/failure.h"
#include "tessaro/types.h"

namespace tessaro {

/// What reading beyond the last byte means is part of each format: most reads fail (number 9),
/// some tables take missing bytes as zero.
enum class PastEnd { Fails, ReadsZero };

class ByteReader {
public:
    explicit ByteReader(ByteSpan bytes, PastEnd pastEnd = PastEnd::Fails)
        : bytes_(bytes), pastEnd_(pastEnd) {}

    std::size_t Position() const { return position_; }
    std::size_t Size() const { return bytes_.size(); }
    std::size_t Remaining() const { return bytes_.size() - position_; }
    bool AtEnd() const { return position_ == bytes_.size(); }

    /// Moves to an offset from the first byte; beyond the end it fails (or stops at the end where
    /// missing bytes read as zero).
    void Seek(std::size_t offset) { position_ = offset <= Size() ? offset : EndInstead(); }
    void Skip(std::size_t count) { Take(count); }

    /// The next `count` bytes; fewer, at the end, where missing bytes read as zero.
    ByteSpan Take(std::size_t count) {
        // Never position_ + count: that sum can wrap round.
        const std::size_t end = count <= Remaining() ? position_ + count : EndInstead();
        const std::size_t start = std::exchange(position_, end);
        return bytes_.subspan(start, end - start);
    }

    std::uint8_t U8() { return static_cast<std::uint8_t>(Number<1>()); }
    std::int16_t I16() { return static_cast<std::int16_t>(Number<2>()); }
    std::uint16_t U16() { return static_cast<std::uint16_t>(Number<2>()); }
    std::uint32_t U24() { return Number<3>(); }
    std::int32_t I32() { return static_cast<std::int32_t>(Number<4>()); }
    std::uint32_t U32() { return Number<4>(); }
    /// `size` bytes as text, padding included.
    std::string Text(std::size_t size);

private:
    template <std::size_t Width>
    std::uint32_t Number() {
        const ByteSpan taken = Take(Width);
        std::uint32_t value = 0;
        if (taken.size() == Width) {  // so many bytes in one go
            for (std::size_t i = 0; i < Width; ++i)
                value |= std::uint32_t{taken[i]} << (8 * i);
        } else {
            for (std::size_t i = 0; i < taken.size(); ++i)
                value |= std::uint32_t{taken[i]} << (8 * i);
        }
        return value;
    }
    /// The end of the bytes, where going beyond it is no failure.
    std::size_t EndInstead() const;

    ByteSpan bytes_;
    std::size_t position_ = 0;
    PastEnd pastEnd_;
};

class ByteWriter {
public:
    std::size_t Position() const { return bytes_.size(); }
    /// Takes memory for so many bytes in all at once.
    void Reserve(std::size_t size) { bytes_.reserve(size); }

    void U8(std::uint8_t value) { bytes_.push_back(value); }
    void I16(std::int16_t value) { Number<2>(static_cast<std::uint16_t>(value)); }
    void U16(std::uint16_t value) { Number<2>(value); }
    void U24(std::uint32_t value) { Number<3>(value); }
    void I32(std::int32_t value) { Number<4>(static_cast<std::uint32_t>(value)); }
    void U32(std::uint32_t value) { Number<4>(value); }
    void U16s(std::span<const std::uint16_t> values);
    void U32s(std::span<const std::uint32_t> values);
    void Bytes(ByteSpan bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
    void Text(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    /// Exactly `size` bytes: the text, then zeros. A longer text fails (number 5).
    void Padded(std::string_view text, std::size_t size);
    void Fill(std::size_t count, std::uint8_t value) { bytes_.insert(bytes_.end(), count, value); }
    /// Writes numbers again at an offset that has been written before, for fields known late.
    void PatchU16(std::size_t offset, std::uint16_t value) { Patch(offset, value, 2); }
    void PatchU32(std::size_t offset, std::uint32_t value) { Patch(offset, value, 4); }

    ByteSpan View() const { return bytes_; }
    ByteArray Release() { return std::move(bytes_); }

private:
    template <std::size_t Width>
    void Number(std::uint32_t value) {
        for (std::size_t i = 0; i < Width; ++i)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    void Patch(std::size_t offset, std::uint32_t value, std::size_t width);

    ByteArray bytes_;
};

/// Narrowing that fails (number 6) instead of dropping bits.
template <class To, class From>
To Narrow(From value) {
    if (!std::in_range<To>(value))
        throw Failure(kOverflow);
    return static_cast<To>(value);
}

}  // namespace tessaro
