#include "foundation/bytes.h"

#include <bit>

namespace tessaro {

std::size_t ByteReader::EndInstead() const {
    if (pastEnd_ == PastEnd::Fails)
        throw Failure(kSubscriptOutOfRange);
    return bytes_.size();
}

std::string ByteReader::Text(std::size_t size) {
    const ByteSpan bytes = Take(size);
    return {bytes.begin(), bytes.end()};
}

void ByteWriter::U16s(std::span<const std::uint16_t> values) {
    const std::size_t start = bytes_.size();
    bytes_.resize(start + 2 * values.size());
    std::uint8_t* at = bytes_.data() + start;
    for (const std::uint16_t value : values) {
        *at++ = static_cast<std::uint8_t>(value);
        *at++ = static_cast<std::uint8_t>(value >> 8);
    }
}

void ByteWriter::U32s(std::span<const std::uint32_t> values) {
    if constexpr (std::endian::native == std::endian::little) {
        const auto* first = reinterpret_cast<const std::uint8_t*>(values.data());
        Bytes({first, values.size_bytes()});
    } else {
        for (const std::uint32_t value : values)
            U32(value);
    }
}

void ByteWriter::Padded(std::string_view text, std::size_t size) {
    if (text.size() > size)
        throw Failure(kInvalidProcedureCall);
    Text(text);
    Fill(size - text.size(), 0);
}

void ByteWriter::Patch(std::size_t offset, std::uint32_t value, std::size_t width) {
    if (offset > bytes_.size() || width > bytes_.size() - offset)
        throw Failure(kSubscriptOutOfRange);
    for (std::size_t i = 0; i < width; ++i)
        bytes_[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

}  // namespace tessaro
