#include "huffman/huffman.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "huffman/huffman_tables.h"

namespace tessaro {
namespace {

std::uint64_t Load64(const std::uint8_t* bytes) {
    std::uint64_t value;
    std::memcpy(&value, bytes, 8);
    if constexpr (std::endian::native == std::endian::big)
        value = __builtin_bswap64(value);
    return value;
}

void Store64(std::uint8_t* bytes, std::uint64_t value) {
    if constexpr (std::endian::native == std::endian::big)
        value = __builtin_bswap64(value);
    std::memcpy(bytes, &value, 8);
}

std::size_t SymbolCount(DecodeStep step) {
    return static_cast<std::size_t>(step >> 56);
}
unsigned BitCount(DecodeStep step) {
    return static_cast<unsigned>(step & 63);
}

/// A walk through a stream, bit by bit or in steps of the decode table.
class StreamWalk {
public:
    StreamWalk(ByteSpan source, const HuffDictionary& dictionary)
        : source_(source), dictionary_(dictionary), bitEnd_(std::uint64_t{source.size()} * 8) {}

    /// Ignores what follows after the given number of bits.
    void EndAt(std::uint64_t bitEnd) { bitEnd_ = bitEnd; }
    bool AtEnd() const { return bit_ >= bitEnd_; }
    std::size_t ByteIndex() const { return static_cast<std::size_t>(bit_ / 8); }
    bool WithinCode() const { return withinCode_; }
    /// The bytes of which a bit has been taken.
    std::size_t BytesTouched() const { return static_cast<std::size_t>((bit_ + 7) / 8); }

    /// Takes one bit; true when it completes the code of `value`.
    bool Step(std::uint8_t& value) {
        const bool one = (source_[ByteIndex()] >> (bit_ & 7) & 1) != 0;
        ++bit_;
        const std::int16_t next = one ? dictionary_[node_].Bit1 : dictionary_[node_].Bit0;
        const auto low = static_cast<std::uint8_t>(next & 0xFF);
        withinCode_ = !IsLeaf(next);
        if (withinCode_) {
            node_ = low;
            return false;
        }
        node_ = kRootNode;
        value = low;
        return true;
    }

    /// Decodes into `target` until it is full or the stream ends; returns the symbols written.
    std::size_t Fill(std::span<std::uint8_t> target) {
        const DecodeTable& table = DecodeTableFor(dictionary_);
        std::size_t count = table.longest == 0 ? 0 : FillFast(target, table);
        while (count < target.size() && !AtEnd())
            count += Step(target[count]) ? 1 : 0;
        return count;
    }

private:
    // Each step of a round stores 8 bytes whatever its number of symbols. The surplus is
    // overwritten later for sure: 8 more symbols are both wanted and, even if they have the longest
    // codes, in the stream.
    std::size_t FillFast(std::span<std::uint8_t> target, const DecodeTable& table) {
        constexpr std::size_t kRound = 4;  // steps from one load: 4 x 12 of its 56 sure bits
        constexpr std::size_t kRoom = kRound * DecodeTable::kSymbols + 8;
        constexpr std::uint64_t kMask = (std::uint64_t{1} << DecodeTable::kBits) - 1;
        const std::uint64_t ahead = 128 + std::uint64_t{8} * table.longest;
        std::size_t count = 0;
        while (count + kRoom <= target.size() && bit_ + ahead <= bitEnd_) {
            const DecodeStep* const steps = table.steps.data();
            const std::uint8_t* in = source_.data() + ByteIndex();
            const std::uint8_t* const lastIn = source_.data() + (bitEnd_ - ahead) / 8;
            std::uint8_t* out = target.data() + count;
            const std::uint8_t* const lastOut = target.data() + (target.size() - kRoom);

            // `bits` holds `ready` bits of the stream, those before `in`; a load adds whole bytes
            // above them, and where it brings bits of the next byte too, they come again later.
            auto ready = 8 - static_cast<unsigned>(bit_ & 7);
            std::uint64_t bits = std::uint64_t{*in++} >> (bit_ & 7);
            DecodeStep last = 0;
            do {
                bits |= Load64(in) << ready;
                in += (63 - ready) >> 3;
                ready |= 56;
                std::uint64_t sum = 0;
                for (std::size_t i = 0; i < kRound; ++i) {
                    last = steps[bits & kMask];
                    bits >>= BitCount(last);
                    Store64(out, last >> 8);
                    out += SymbolCount(last);
                    sum += last;
                }
                ready -= static_cast<unsigned>(sum & 63);
            } while (SymbolCount(last) != 0 && out <= lastOut && in <= lastIn);
            bit_ = static_cast<std::uint64_t>(in - source_.data()) * 8 - ready;
            count = static_cast<std::size_t>(out - target.data());
            if (SymbolCount(last) == 0)
                count += LongCode(target[count]);
        }
        return FillCarefully(target, count, table);
    }

    /// Goes on from `count` up to where a step might take more than there is.
    std::size_t FillCarefully(std::span<std::uint8_t> target, std::size_t count,
                              const DecodeTable& table) {
        while (count + DecodeTable::kSymbols <= target.size() &&
               bit_ + DecodeTable::kBits <= bitEnd_) {
            const DecodeStep step = table.steps[Next12Bits()];
            if (SymbolCount(step) == 0) {
                const std::size_t whole = LongCode(target[count]);
                if (whole == 0)
                    break;
                count += whole;
                continue;
            }
            for (std::size_t i = 1; i <= SymbolCount(step); ++i)
                target[count++] = static_cast<std::uint8_t>(step >> (8 * i));
            bit_ += BitCount(step);
        }
        return count;
    }

    std::size_t LongCode(std::uint8_t& value) {
        while (!AtEnd())
            if (Step(value))
                return 1;
        return 0;
    }

    std::size_t Next12Bits() const {
        const std::size_t at = ByteIndex();
        std::uint32_t bits = source_[at];
        for (std::size_t i = 1; i < 3 && at + i < source_.size(); ++i)
            bits |= std::uint32_t{source_[at + i]} << (8 * i);
        return bits >> (bit_ & 7) & 0xFFF;
    }

    ByteSpan source_;
    const HuffDictionary& dictionary_;
    std::uint64_t bitEnd_;
    std::uint64_t bit_ = 0;
    std::size_t node_ = kRootNode;
    bool withinCode_ = false;
};

/// The stream for `source` behind `room` bytes of zero; its last byte is partly filled or empty.
ByteArray CompressBehind(std::size_t room, ByteSpan source, const HuffDictionary& dictionary) {
    constexpr std::size_t kGroup = 4;                   // codes between two stores
    constexpr unsigned kFits = 57;                      // bits that join 7 left over
    constexpr std::size_t kBlock = 256;                 // codes between two looks at the space
    constexpr std::size_t kBlockSize = 4 * kBlock + 8;  // 32 bits each, and a store's surplus
    const CodeTable& table = CodeTableFor(dictionary);
    const std::array<Code, 256>& codes = table.codes;
    const auto unfit = [&](std::uint8_t value) { return codes[value].length > 32; };
    if (table.longest > 32 && std::ranges::any_of(source, unfit))
        throw Failure(kSubscriptOutOfRange);

    ByteArray bytes(room + source.size() + kBlockSize);  // mostly enough
    std::size_t used = room;
    std::uint64_t pending = 0;
    unsigned pendingBits = 0;
    for (std::size_t done = 0; done < source.size();) {
        const std::size_t end = std::min(done + kBlock, source.size());
        if (bytes.size() - used < kBlockSize)
            bytes.resize(2 * bytes.size() + kBlockSize);
        std::uint8_t* out = bytes.data() + used;
        const auto append = [&](std::uint64_t bits, unsigned length) {
            pending |= bits << pendingBits;
            pendingBits += length;
            Store64(out, pending);
            out += pendingBits >> 3;
            const unsigned half = (pendingBits & ~7U) / 2;  // twice, since 64 at once is too far
            pending = pending >> half >> half;
            pendingBits &= 7;
        };
        while (done < end) {
            if (done + kGroup <= end) {
                const Code& a = codes[source[done]];
                const Code& b = codes[source[done + 1]];
                const Code& c = codes[source[done + 2]];
                const Code& d = codes[source[done + 3]];
                const unsigned two = a.length + b.length;
                const unsigned three = two + c.length;
                if (three + d.length <= kFits) {
                    append(a.bits | std::uint64_t{b.bits} << a.length |
                               std::uint64_t{c.bits} << two | std::uint64_t{d.bits} << three,
                           three + d.length);
                    done += kGroup;
                    continue;
                }
            }
            const Code& code = codes[source[done++]];
            append(code.bits, code.length);
        }
        used = static_cast<std::size_t>(out - bytes.data());
    }
    bytes[used] = static_cast<std::uint8_t>(pending);
    bytes.resize(used + 1);
    return bytes;
}

}  // namespace

void HuffExpand(ByteSpan source, ByteArray& dest, std::int32_t& expandedLength,
                const HuffDictionary& dictionary, bool keepGoing) {
    StreamWalk walk(source, dictionary);
    if (!keepGoing) {
        const auto wanted = static_cast<std::size_t>(std::max(expandedLength, 0));
        const std::size_t room = std::min(wanted, dest.size());
        const std::size_t count = walk.Fill(std::span(dest).first(room));
        std::uint8_t surplus = 0;
        while (count == room && room < wanted && !walk.AtEnd())
            if (walk.Step(surplus))
                throw Failure(kSubscriptOutOfRange);
        return;
    }
    std::size_t count = 0;
    const auto reached = [&] { return std::cmp_greater_equal(count, expandedLength); };
    while (!walk.AtEnd() && !(reached() && walk.ByteIndex() + 1 >= source.size())) {
        if (reached()) {
            expandedLength = Narrow<std::int32_t>(count + 1);
            dest.resize(count + 2);
        }
        std::uint8_t value = 0;
        if (!walk.Step(value))
            continue;
        if (count >= dest.size())
            throw Failure(kSubscriptOutOfRange);
        dest[count++] = value;
    }
}

ByteArray CompressStream(ByteSpan source, const HuffDictionary& dictionary) {
    return CompressBehind(0, source, dictionary);
}

ByteArray HuffCompress(ByteSpan source, const HuffDictionary& dictionary) {
    constexpr std::size_t kLengthField = 4;
    if (source.size() < 4)
        return ByteArray(kLengthField);
    ByteArray chunk = CompressBehind(kLengthField, source, dictionary);
    const auto length = Narrow<std::int32_t>(source.size());
    for (std::size_t i = 0; i < kLengthField; ++i)
        chunk[i] = static_cast<std::uint8_t>(length >> (8 * i));
    return chunk;
}

std::int32_t DetermineChunkSize(ByteSpan source, ByteArray& dest,
                                const HuffDictionary& dictionary) {
    constexpr std::size_t kBlock = 4096;
    StreamWalk walk(source, dictionary);
    walk.EndAt(source.empty() ? 0 : std::uint64_t{source.size() - 1} * 8);
    ByteArray symbols;
    std::size_t count = 0;
    while (!walk.AtEnd()) {
        symbols.resize(count + kBlock);
        count += walk.Fill(std::span(symbols).subspan(count));
    }
    const std::size_t capacity = count + (walk.WithinCode() ? 1 : 0);
    const auto result = Narrow<std::int32_t>(capacity);
    symbols.resize(count);
    symbols.resize(capacity + 1);
    dest = std::move(symbols);
    return result;
}

std::optional<std::size_t> BytesLeft(ByteSpan stream, std::int64_t count,
                                     const HuffDictionary& dictionary) {
    std::array<std::uint8_t, 1024> symbols;
    StreamWalk walk(stream, dictionary);
    while (count > 0) {
        const std::size_t wanted = std::min(symbols.size(), static_cast<std::size_t>(count));
        if (walk.Fill(std::span(symbols).first(wanted)) < wanted)
            return std::nullopt;
        count -= static_cast<std::int64_t>(wanted);
    }
    return stream.size() - walk.BytesTouched();
}

std::int32_t DetermineHuffLength(std::uint8_t value, const HuffDictionary& dictionary) {
    return static_cast<std::int32_t>(CodeTableFor(dictionary).codes[value].length);
}

ByteArray ExpandStream(ByteSpan stream, std::int32_t expandedLength,
                       const HuffDictionary& dictionary, bool keepGoing) {
    constexpr std::size_t kAlwaysBelieved = 65535;
    const auto wanted = static_cast<std::size_t>(std::max(expandedLength, 0));
    const std::size_t reachable = std::max(kAlwaysBelieved, stream.size() * 8);
    ByteArray bytes(std::min(wanted, reachable));
    auto length = static_cast<std::int32_t>(bytes.size());
    HuffExpand(stream, bytes, length, dictionary, keepGoing);
    return bytes;
}

ByteArray ExpandChunk(ByteSpan chunk, const HuffDictionary& dictionary) {
    if (chunk.size() < 5)
        return {};
    ByteReader in(chunk);
    const std::int32_t length = in.I32();
    return ExpandStream(in.Take(in.Remaining()), length, dictionary);
}

bool CanCompress(ByteSpan bytes, const HuffDictionary& dictionary) {
    const CodeTable& table = CodeTableFor(dictionary);
    return std::ranges::all_of(bytes, [&](std::uint8_t value) { return table.readsBack[value]; });
}

}  // namespace tessaro
