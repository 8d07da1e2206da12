#include "pagefile/page_index.h"

#include <algorithm>

#include "foundation/store.h"

namespace tessaro {
namespace {

/// A sound of this length in a short list is empty: the games mark absent sounds so.
constexpr std::int32_t kMarkedEmpty = 65535;

}  // namespace

void PageIndex::OpenPageFile(const std::string& file) {
    path = file;
    page = File(path, FileMode::Read);
    const ByteArray head = page.ReadAt(0, 2);
    ByteReader first(head);
    const ByteArray tables =
        page.ReadAt(0, static_cast<std::int64_t>(PageTable::Size(PageTable::ChunksIn(first))));
    ByteReader in(tables);
    PageTable table = PageTable::ReadFrom(in);

    fileChunks = static_cast<std::int32_t>(table.offsets.size());
    walls = std::clamp(table.spriteStart, 0, fileChunks);
    soundStart = std::max(table.soundStart, walls);
    sprites = std::min(soundStart, fileChunks) - walls;
    offsets = std::move(table.offsets);
    lengths = table.lengths;
    storedLengths = std::move(table.lengths);
}

void PageIndex::IndexSounds() {
    hasSoundList = soundStart < fileChunks;
    if (hasSoundList) {
        sounds = ReadSoundList(Read(fileChunks - 1), SoundListForm::Short);
        WalkSounds(sounds, soundStart, SoundListForm::Short);
    }
    Game& store = ConfiguredGame();
    extraPath = JoinPath(store.dataPath, "AUDIOMUS." + store.dataExtension);
    if (!FileExists(extraPath))
        extraPath.clear();
    store.audioMusFile = extraPath;
    if (!extraPath.empty())
        IndexExtraFile();
}

void PageIndex::IndexExtraFile() {
    firstExtraChunk = fileChunks;
    extra = File(extraPath, FileMode::Read);
    const std::int64_t size = extra.Size();
    const ByteArray last =
        extra.ReadAt(size - static_cast<std::int64_t>(kSoundPageSize), kSoundPageSize);
    ByteReader in(last);
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
        ConfiguredGame().readSoundLengthsAsLong = true;
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

void PageIndex::GiveUpSounds() {
    soundsFailed = true;
    sounds.clear();
}

void PageIndex::Close() {
    page.Release();
    extra.Release();
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

ByteArray PageIndex::ReadBytes(std::int32_t chunk, std::int32_t length) {
    File& file = HasExtraFile() && chunk >= firstExtraChunk ? extra : page;
    return file.ReadAt(offsets[static_cast<std::size_t>(chunk)], length);
}

ByteArray PageIndex::Read(std::int32_t chunk) {
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

StoredSound PageIndex::ReadSound(std::int32_t chunk, std::int32_t listLength) {
    const std::int32_t length = StoredLength(chunk, listLength);
    if (!HasPlace(chunk))
        return {};
    return {ReadBytes(chunk, length), MarksEmpty(chunk, listLength) ? kMarkedEmpty : length};
}

StoredSound PageIndex::ReadReplacedSound() {
    const std::int32_t chunk = soundStart + replacedSound->startPage;
    const std::int32_t listLength = replacedSound->length;
    StoredSound sound{ReadWhatIsThere(chunk, StoredLength(chunk, listLength))};
    sound.listLength = HasPlace(chunk) && MarksEmpty(chunk, listLength)
                           ? kMarkedEmpty
                           : static_cast<std::int32_t>(sound.bytes.size());
    return sound;
}

ByteArray PageIndex::ReadWhatIsThere(std::int32_t chunk, std::int32_t length) {
    if (!HasPlace(chunk))
        return {};
    const std::int64_t offset = offsets[static_cast<std::size_t>(chunk)];
    const std::int64_t there = std::max<std::int64_t>(page.Size() - offset, 0);
    return page.ReadAt(std::min(offset, page.Size()), std::min<std::int64_t>(length, there));
}

}  // namespace tessaro
