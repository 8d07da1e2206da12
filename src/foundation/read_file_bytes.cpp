#include "foundation/read_file_bytes.h"

#include <array>

#include "foundation/guard.h"

namespace tessaro::modReadFileBytes {
namespace {

void CheckByteCount(std::int16_t byteCount) {
    if (byteCount < 1)
        throw Failure(kSubscriptOutOfRange);
    if (byteCount > 4)  // the result holds only four bytes
        throw Failure(kInvalidProcedureCall);
}

}  // namespace

std::int32_t ReadFileBytes(File& file, std::int16_t byteCount, std::int32_t position) {
    return Guarded("modReadFileBytes.ReadFileBytes", [&] {
        CheckByteCount(byteCount);
        std::array<std::uint8_t, 4> bytes{};
        if (position >= 1)
            file.Seek(position - 1);
        file.Read(std::span(bytes).first(static_cast<std::size_t>(byteCount)));
        return static_cast<std::int32_t>(bytes[0] | std::uint32_t{bytes[1]} << 8 |
                                         std::uint32_t{bytes[2]} << 16 |
                                         std::uint32_t{bytes[3]} << 24);
    });
}

void WriteFileBytes(File& file, const std::int32_t& value, std::int16_t byteCount,
                    std::int32_t position) {
    Guarded("modReadFileBytes.WriteFileBytes", [&] {
        CheckByteCount(byteCount);
        const auto number = static_cast<std::uint32_t>(value);
        const std::array<std::uint8_t, 4> bytes{
            static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8),
            static_cast<std::uint8_t>(number >> 16), static_cast<std::uint8_t>(number >> 24)};
        if (position >= 1)
            file.Seek(position - 1);
        file.Write(std::span(bytes).first(static_cast<std::size_t>(byteCount)));
    });
}

}  // namespace tessaro::modReadFileBytes
