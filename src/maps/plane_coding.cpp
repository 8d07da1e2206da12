#include "maps/plane_coding.h"

#include <algorithm>
#include <optional>

#include "foundation/guard.h"
#include "maps/rlew.h"
#include "maps/word_bytes.h"

namespace tessaro {
namespace {

constexpr std::size_t kLongestRun = 65'535;
constexpr std::size_t kLongestShortLength = 65'535;
constexpr std::size_t kLongestSignedLength = 32'767;
constexpr std::size_t kLongestLiteralRun = 3;

void PutLength(ByteWriter& out, std::size_t length, LengthPrefix prefix) {
    if (prefix == LengthPrefix::Long)
        out.U32(static_cast<std::uint32_t>(length));
    else
        out.U16(static_cast<std::uint16_t>(length));
}

/// The stream that stands for a plane whose Carmack layer is empty: runs of the word 0. They carry
/// the usual tag even where the set has another: that is meant (docs/kept-behaviour.md).
ByteArray EmptyPlaneStream(std::size_t cells, LengthPrefix prefix) {
    constexpr std::uint16_t kUsualTag = 0xABCD;
    ByteWriter out;
    PutLength(out, cells * kWordBytes, prefix);
    while (cells > 0) {
        const std::size_t run = std::min(cells, kLongestRun);
        out.U16(kUsualTag);
        out.U16(static_cast<std::uint16_t>(run));
        out.U16(0);
        cells -= run;
    }
    return out.Release();
}

/// RlewCompress with words equal to the tag as runs, however few; of any length.
ByteArray RlewWithTagsAsRuns(std::uint16_t tag, ByteSpan cells, LengthPrefix prefix) {
    ByteWriter out;
    PutLength(out, cells.size(), prefix);
    const std::size_t count = cells.size() / kWordBytes;
    const auto word = [&](std::size_t i) { return WordAt(cells.data() + i * kWordBytes); };
    for (std::size_t at = 0; at < count;) {
        std::size_t run = 1;
        while (run < kLongestRun && at + run < count && word(at + run) == word(at))
            ++run;
        if (run > kLongestLiteralRun || word(at) == tag) {
            out.U16(tag);
            out.U16(static_cast<std::uint16_t>(run));
            out.U16(word(at));
        } else {
            for (std::size_t i = 0; i < run; ++i)
                out.U16(word(at));
        }
        at += run;
    }
    return out.Release();
}

void NeedShort(const PlaneForm& form, std::size_t size, std::size_t most) {
    if (form.prefix != LengthPrefix::Long && size > most)
        throw Failure(0, "is too large for 16-bit lengths.  Save with long lengths.");
}

ByteArray Encode(ByteSpan cells, const PlaneForm& form, Escapes escapes) {
    ByteArray packed = escapes == Escapes::AsStated
                           ? RlewCompress(form.rlewTag, cells, form.prefix)
                           : RlewWithTagsAsRuns(form.rlewTag, cells, form.prefix);
    if (!form.rlewAlone) {
        NeedShort(form, packed.size(), kLongestSignedLength);  // read back with its sign
        packed = CarmackCompress(packed, form.prefix, form.tags, escapes);
    }
    NeedShort(form, packed.size(), kLongestShortLength);
    return packed;
}

/// The plane in the usual coding, where that gives it back.
std::optional<ByteArray> EncodeAsUsual(ByteSpan cells, const PlaneForm& form) {
    try {
        ByteArray packed = Encode(cells, form, Escapes::AsStated);
        enmCorruptLevel corruption = clNone;
        const ByteArray back = DecodePlane(packed, cells.size() / kWordBytes, form, corruption);
        if (corruption == clNone && std::ranges::equal(back, cells))
            return packed;
    } catch (const Failure&) {  // it does not fit, or it is no stream that can be read
    }
    return std::nullopt;
}

}  // namespace

ByteArray DecodePlane(ByteSpan stored, std::size_t cells, const PlaneForm& form,
                      enmCorruptLevel& corruption) {
    ByteArray bytes(cells * kWordBytes);
    ByteArray stream;
    if (!form.rlewAlone) {
        ByteReader in(stored);
        const std::int32_t length = form.prefix == LengthPrefix::Long ? in.I32() : in.I16();
        if (length < 0)
            throw Failure(kSubscriptOutOfRange);
        if (length == 0) {
            stream = EmptyPlaneStream(cells, form.prefix);
        } else {
            const ByteSpan codes = in.Take(in.Remaining());
            stream.resize(
                std::min(static_cast<std::size_t>(length), CarmackExpandedLimit(codes.size())));
            Step("clsGameMaps.CarmackExpand",
                 [&] { CarmackExpand(codes, stream, length, form.tags); });
        }
        stored = stream;
    }
    Step("clsGameMaps.RLEWExpand", [&] {
        std::int32_t fromPrefix = 0;
        const RlewExpansion result =
            RlewExpand(form.rlewTag, stored, bytes, fromPrefix, form.prefix, Overrun::Cuts);
        if (result.endedEarly)
            corruption = clHigh;
        else if (result.lengthWasZero && corruption == clNone)
            corruption = clLow;
    });
    return bytes;
}

ByteArray EncodePlane(ByteSpan cells, const PlaneForm& form) {
    NeedShort(form, cells.size(), kLongestShortLength);
    if (auto packed = EncodeAsUsual(cells, form))
        return *std::move(packed);
    return Encode(cells, form, Escapes::EveryTag);
}

}  // namespace tessaro
