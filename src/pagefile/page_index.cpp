#include "pagefile/page_index.h"

#include <algorithm>

#include "foundation/names.h"

namespace tessaro {
namespace {

/// A sound of this length in a short list is empty: the games mark absent sounds so.
constexpr std::int32_t kMarkedEmpty = 65535;

}  // namespace

PageIndex PageIndex::Open(const Game& game, const Files& files) {
    PageIndex index;
    index.page = DataFile::Read(files, game.vswapFile);
    index.IndexPages();
    try {
        index.IndexSounds(files, JoinPath(game.dataPath, "AUDIOMUS." + game.dataExtension));
    } catch (...) {
        index.soundsFailed = true;
        index.sounds.clear();
    }
    return index;
}

void PageIndex::IndexPages() {
    ByteReader first(page.At(0, 2));
    ByteReader in(
        page.At(0, static_cast<std::int64_t>(PageTable::Size(PageTable::ChunksIn(first)))));
    PageTable table = PageTable::ReadFrom(in);

    fileChunks = static_cast<std::int32_t>(table.offsets.size());
    walls = std::clamp(table.spriteStart, 0, fileChunks);
    soundStart = std::max(table.soundStart, walls);
    sprites = std::min(soundStart, fileChunks) - walls;
    offsets = std::move(table.offsets);
    lengths = table.lengths;
    storedLengths = std::move(table.lengths);
}

void PageIndex::IndexSounds(const Files& files, const std::string& extraPath) {
    if (files.Kind(extraPath))
        extra = DataFile::Read(files, extraPath);
    hasSoundList = soundStart < fileChunks;
    if (hasSoundList) {
        sounds = ReadSoundList(Read(fileChunks - 1), SoundListForm::Short);
        WalkSounds(sounds, soundStart, SoundListForm::Short);
    }
    if (extra.WasRead())
        IndexExtraFile();
}

void PageIndex::IndexExtraFile() {
    firstExtraChunk = fileChunks;
    const std::int64_t size = extra.Size();
    ByteReader in(extra.At(size - static_cast<std::int64_t>(kSoundPageSize), kSoundPageSize));
    const ExtraTable table = ExtraTable::ReadFrom(in, size);
    offsets.insert(offsets.end(), table.offsets.begin(), table.offsets.end());
    for (std::vector<std::int32_t>* all : {&lengths, &storedLengths})
        all->insert(all->end(), table.lengths.begin(), table.lengths.end());
    if (table.offsets.empty())
        throw Failure(kSubscriptOutOfRange);

    const ByteArray list = Read(static_cast<std::int32_t>(offsets.size()) - 1);
    std::vector<SoundEntry> more = ReadSoundList(list, SoundListForm::Short);
    if (!more.empty() && more.front().length == 0) {
        extraForm = SoundListForm::Long;
        more = ReadSoundList(list, extraForm);
    }
    if (sounds.size() < 2) {
        if (!sounds.empty())
            replacedSound = sounds.front();
        sounds.clear();
        soundCount = 0;
    }
    firstExtraSound = static_cast<std::int32_t>(sounds.size());
    WalkSounds(more, firstExtraChunk, extraForm);
    sounds.insert(sounds.end(), more.begin(), more.end());
}

/// Counts the sounds of a list up to its end or the first later entry with page 0, and gives the
/// first page of each the length of the whole sound: its pages follow each other, so one read
/// takes them all. Entries with a page below 0 are dropped, so that the counted ones are the list.
void PageIndex::WalkSounds(std::vector<SoundEntry>& entries, std::int32_t firstChunk,
                           SoundListForm form) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const SoundEntry& entry = entries[i];
        if (entry.startPage == 0 && i > 0) {
            entries.resize(i);
            break;
        }
        if (entry.startPage < 0)
            continue;
        ++soundCount;
        const std::int32_t chunk = firstChunk + entry.startPage;
        if (std::cmp_greater_equal(chunk, lengths.size()))
            throw Failure(kSubscriptOutOfRange);
        const bool marked = form == SoundListForm::Short && entry.length == kMarkedEmpty;
        if (HasPlace(chunk))
            lengths[static_cast<std::size_t>(chunk)] = marked ? 0 : entry.length;
    }
    std::erase_if(entries, [](const SoundEntry& entry) { return entry.startPage < 0; });
}

void PageIndex::Close() {
    page.Close();
    extra.Close();
}

void PageIndex::Reopen(const Files& files) {
    for (DataFile* file : {&page, &extra}) {
        if (file->WasRead())
            file->Reopen(files);
    }
}

bool PageIndex::HasPlace(std::int32_t chunk) const {
    const auto i = static_cast<std::size_t>(chunk);
    return offsets[i] >= 1 || (HasExtraFile() && chunk >= firstExtraChunk);
}

bool PageIndex::HasData(std::int32_t chunk) const {
    return lengths[static_cast<std::size_t>(chunk)] > 0 && HasPlace(chunk);
}

void PageIndex::Check(std::int32_t chunk) const {
    if (chunk < 0 || std::cmp_greater_equal(chunk, offsets.size()))
        throw Failure(kSubscriptOutOfRange);
}

ByteArray PageIndex::ReadBytes(std::int32_t chunk, std::int32_t length) const {
    const DataFile& file = HasExtraFile() && chunk >= firstExtraChunk ? extra : page;
    const ByteSpan bytes = file.At(offsets[static_cast<std::size_t>(chunk)], length);
    return {bytes.begin(), bytes.end()};
}

ByteArray PageIndex::Read(std::int32_t chunk) const {
    Check(chunk);
    return HasData(chunk) ? ReadBytes(chunk, lengths[static_cast<std::size_t>(chunk)])
                          : ByteArray();
}

std::optional<std::int32_t> PageIndex::SoundChunk(std::size_t sound) const {
    if (sound >= sounds.size() || sounds[sound].startPage < 0)
        return std::nullopt;
    const bool isExtra = HasExtraFile() && std::cmp_greater_equal(sound, firstExtraSound);
    return sounds[sound].startPage + (isExtra ? firstExtraChunk : soundStart);
}

bool PageIndex::MarksEmpty(std::int32_t chunk, std::int32_t listLength) const {
    const bool inLongList =
        HasExtraFile() && chunk >= firstExtraChunk && extraForm == SoundListForm::Long;
    return listLength == kMarkedEmpty && !inLongList;
}

/// The bytes that a sound takes up in its file.
std::int32_t PageIndex::StoredLength(std::int32_t chunk, std::int32_t listLength) const {
    Check(chunk);
    if (!HasPlace(chunk))
        return 0;
    if (!MarksEmpty(chunk, listLength))
        return std::max(listLength, 0);
    // It reads as empty, but its pages may hold a sound of just that length.
    std::int32_t stored = 0;
    for (auto i = static_cast<std::size_t>(chunk); i < storedLengths.size(); ++i) {
        stored = std::min(stored + storedLengths[i], kMarkedEmpty);
        if (storedLengths[i] != static_cast<std::int32_t>(kSoundPageSize))
            break;
    }
    return stored;
}

StoredSound PageIndex::ReadSound(std::int32_t chunk, std::int32_t listLength) const {
    const std::int32_t length = StoredLength(chunk, listLength);
    if (!HasPlace(chunk))
        return {};
    return {ReadBytes(chunk, length), MarksEmpty(chunk, listLength) ? kMarkedEmpty : length};
}

StoredSound PageIndex::ReadServedSound(std::size_t sound) const {
    const auto chunk = SoundChunk(sound);
    if (!chunk)
        return {};
    if (ByteArray served = Read(*chunk); !served.empty()) {
        const auto length = static_cast<std::int32_t>(served.size());
        return {std::move(served), length};
    }
    const std::int32_t listLength = sounds[sound].length;
    return MarksEmpty(*chunk, listLength) ? ReadSound(*chunk, listLength) : StoredSound{};
}

StoredSound PageIndex::ReadReplacedSound() const {
    const std::int32_t chunk = soundStart + replacedSound->startPage;
    const std::int32_t listLength = replacedSound->length;
    StoredSound sound{ReadWhatIsThere(chunk, StoredLength(chunk, listLength))};
    sound.listLength = HasPlace(chunk) && MarksEmpty(chunk, listLength)
                           ? kMarkedEmpty
                           : static_cast<std::int32_t>(sound.bytes.size());
    return sound;
}

ByteArray PageIndex::ReadWhatIsThere(std::int32_t chunk, std::int32_t length) const {
    if (!HasPlace(chunk))
        return {};
    const std::int64_t offset = offsets[static_cast<std::size_t>(chunk)];
    const std::int64_t there = std::max<std::int64_t>(page.Size() - offset, 0);
    const ByteSpan bytes =
        page.At(std::min(offset, page.Size()), std::min<std::int64_t>(length, there));
    return {bytes.begin(), bytes.end()};
}

}  // namespace tessaro
