#include "foundation/bytes.h"

namespace tessaro {

void ByteReader::Seek(std::size_t offset) {
    if (offset > bytes_.size()) {
        if (pastEnd_ == PastEnd::Fails)
            throw Failure(kSubscriptOutOfRange);
        offset = bytes_.size();
    }
    position_ = offset;
}

ByteSpan ByteReader::Take(std::size_t count) {
    if (count > Remaining()) {  // never position_ + count: that sum can wrap round
        if (pastEnd_ == PastEnd::Fails)
            throw Failure(kSubscriptOutOfRange);
        count = Remaining();
    }
    return bytes_.subspan(std::exchange(position_, position_ + count), count);
}

std::string ByteReader::Text(std::size_t size) {
    const ByteSpan bytes = Take(size);
    return {bytes.begin(), bytes.end()};
}

std::uint32_t ByteReader::Number(std::size_t width) {
    std::uint32_t value = 0;
    unsigned shift = 0;
    for (std::uint8_t byte : Take(width)) {
        value |= std::uint32_t{byte} << shift;
        shift += 8;
    }
    return value;
}

void ByteWriter::Padded(std::string_view text, std::size_t size) {
    if (text.size() > size)
        throw Failure(kInvalidProcedureCall);
    Text(text);
    Fill(size - text.size(), 0);
}

void ByteWriter::Number(std::uint32_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i)
        bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void ByteWriter::Patch(std::size_t offset, std::uint32_t value, std::size_t width) {
    if (offset > bytes_.size() || width > bytes_.size() - offset)
        throw Failure(kSubscriptOutOfRange);
    for (std::size_t i = 0; i < width; ++i)
        bytes_[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

}  // namespace tessaro
