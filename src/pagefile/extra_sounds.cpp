#include "pagefile/extra_sounds.h"

#include <algorithm>
#include <string>

#include "pagefile/page_file.h"

namespace tessaro {
namespace {

constexpr std::size_t kTableSize = 4096;

std::size_t NextPage(std::size_t offset) {
    return (offset + kSoundPageSize - 1) / kSoundPageSize * kSoundPageSize;
}

}  // namespace

std::vector<SoundEntry> ReadSoundList(ByteSpan list, SoundListForm form) {
    std::vector<SoundEntry> sounds;
    const std::size_t entrySize = form == SoundListForm::Short ? 4 : 8;
    ByteReader in(list);
    while (in.Remaining() >= entrySize) {
        SoundEntry sound;
        if (form == SoundListForm::Short) {
            sound.startPage = in.I16();
            sound.length = in.U16();
        } else {
            sound.startPage = static_cast<std::int16_t>(in.U32());  // the low word, as all pages
            sound.length = in.I32();
        }
        sounds.push_back(sound);
    }
    return sounds;
}

ByteArray WriteSoundList(std::span<const SoundEntry> sounds, SoundListForm form) {
    ByteWriter out;
    for (const SoundEntry& sound : sounds) {
        if (form == SoundListForm::Short) {
            out.I16(Narrow<std::int16_t>(sound.startPage));
            out.U16(Narrow<std::uint16_t>(sound.length));
        } else {
            out.I32(Narrow<std::int16_t>(sound.startPage));
            out.I32(sound.length);
        }
    }
    return out.Release();
}

ExtraTable ExtraTable::ReadFrom(ByteReader& in, std::int64_t fileSize) {
    ExtraTable table;
    std::size_t at = in.Position();
    for (std::uint32_t offset; (offset = in.U32()) < fileSize; at = in.Position())
        table.offsets.push_back(Narrow<std::int32_t>(offset));
    in.Seek(at);  // what ended the offsets are the first two lengths
    while (table.lengths.size() < table.offsets.size())
        table.lengths.push_back(in.U16());
    return table;
}

void ExtraFileImage::AddSound(ByteSpan bytes, std::int32_t length) {
    const std::size_t start = pages_.size();
    sounds_.push_back({Narrow<std::int32_t>(start / kSoundPageSize), length});
    for (std::size_t rest = bytes.size(); rest > kSoundPageSize; rest -= kSoundPageSize)
        lengths_.push_back(kSoundPageSize);
    lengths_.push_back(bytes.empty() ? 0 : (bytes.size() - 1) % kSoundPageSize + 1);
    pages_.insert(pages_.end(), bytes.begin(), bytes.end());
    pages_.resize(lengths_.size() * kSoundPageSize);  // a sound without bytes has a page, too
}

ByteArray ExtraFileImage::Assemble(SoundListForm form) const {
    if (!sounds_.empty() && sounds_.front().length == 0)
        form = SoundListForm::Long;
    // Where the first two lengths are too small to end the offsets, two full pages that belong to
    // no sound go before them.
    const ByteArray file = Laid(form, 0);
    ByteReader table(file);
    table.Seek(file.size() - kTableSize + 4 * (lengths_.size() + 1));
    return table.U32() >= file.size() ? file : Laid(form, 2);
}

ByteArray ExtraFileImage::Laid(SoundListForm form, std::size_t fillers) const {
    std::vector<SoundEntry> sounds = sounds_;
    for (SoundEntry& sound : sounds)
        sound.startPage += static_cast<std::int32_t>(fillers);
    std::vector<std::size_t> lengths(fillers, kSoundPageSize);
    lengths.insert(lengths.end(), lengths_.begin(), lengths_.end());

    ByteWriter out;
    out.Fill(fillers * kSoundPageSize, 0);
    out.Bytes(pages_);
    const ByteArray list = WriteSoundList(sounds, form);
    lengths.push_back(list.size());
    out.Bytes(list);
    out.Fill(std::max(NextPage(out.Position()), lengths.size() * kSoundPageSize) - out.Position(),
             0);

    const std::size_t table = out.Position();
    for (std::size_t i = 0; i < lengths.size(); ++i)
        out.I32(Narrow<std::int32_t>(i * kSoundPageSize));
    for (const std::size_t length : lengths)
        out.U16(Narrow<std::uint16_t>(length));
    if (out.Position() - table > kTableSize)
        throw Failure(kOverflow, "The extra sound file holds at most " +
                                     std::to_string(kTableSize / 6 - 1) +
                                     " pages of sounds; shorten the sounds.");
    out.Fill(table + kTableSize - out.Position(), 0);
    return out.Release();
}

}  // namespace tessaro
