#include "tessaro/audio_t.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "audio/audio_file.h"
#include "foundation/guard.h"
#include "foundation/store.h"
#include "huffman/dictionary.h"
#include "platform/file.h"
#include "saving/replace_files.h"
#include "saving/saving_flag.h"

namespace tessaro {
namespace {

constexpr std::int32_t kStartMusicNotFound = 20170330;
constexpr std::int32_t kMostChunks = 65535;

}  // namespace

struct clsAudioT::Self {
    std::string dataPath;  ///< of the set that was opened
    File data;
    std::vector<std::int32_t> offsets;  ///< of the stored chunks, and the end of the last
    /// Where the chunks begin and end in the data file: what lies outside is no chunk's.
    std::int64_t dataBegin = 0, dataEnd = 0;
    std::map<std::int32_t, ByteArray> replaced;
    SavingFlag saving;
    std::int32_t count = 0;  ///< chunks beyond the stored ones are empty
    std::int32_t startMusic = -1;

    bool LoadHuffman();
    bool LoadHeader();

    void CheckChunk(std::int32_t chunk) const {
        if (chunk < 0 || chunk >= count)
            throw Failure(kSubscriptOutOfRange);
    }
    bool IsStored(std::int32_t chunk) const {
        return static_cast<std::size_t>(chunk) + 1 < offsets.size();
    }
    bool IsSparse(std::int32_t chunk) const {
        return IsStored(chunk) && offsets[static_cast<std::size_t>(chunk)] == kSparseAudioOffset;
    }
    void OpenData() {
        if (!data.IsOpen())
            data = File(dataPath, FileMode::Read);
    }
    /// The bytes of a chunk as the data file holds them; opens it where it is closed.
    ByteArray StoredBytes(std::int32_t chunk);

    /// Gives up the stored chunks from `chunks` on; they stay empty when the set grows again.
    void Keep(std::int32_t chunks);

    struct Written {
        ByteWriter data;
        std::vector<std::int32_t> offsets;
    };
    void WriteChunk(std::int32_t chunk, Written& out);
    /// Writes the data file's bytes from `from` up to `to`, as far as they are there.
    void CopyData(std::int64_t from, std::int64_t to, Written& out);
    Written WriteAll(const SaveStatusEvent& saveStatus, std::int32_t& chunk);
    bool Save(const SaveStatusEvent& saveStatus, const SaveErrorEvent& saveError);
};

bool clsAudioT::Self::LoadHuffman() {
    return Guarded("clsAudioT.LoadHuffman", [&] {
        Game& store = ConfiguredGame();
        if (!store.audioIsCompressed)
            return true;
        if (!FileExists(store.audioDictFile))
            throw Failure(0, "Audio huffman dictionary file not found.");
        store.audioDictionary = ReadDictionary(ReadWholeFile(store.audioDictFile));
        return true;
    });
}

bool clsAudioT::Self::LoadHeader() {
    return Guarded("clsAudioT.LoadHeader", [&] {
        auto read = ReadAudioHeader(ReadWholeFile(ConfiguredGame().audioHeaderFile));
        const auto start = FindStartMusic(read, ConfiguredGame().egaGraphics);
        if (!start)
            throw Failure(kStartMusicNotFound, "Could not determine starting music chunk.");
        offsets = std::move(read);
        dataBegin = dataEnd = std::numeric_limits<std::int64_t>::max();
        for (const std::int32_t offset : offsets)
            if (offset >= 0)
                dataBegin = std::min<std::int64_t>(dataBegin, offset);
        if (offsets.back() != kSparseAudioOffset)
            dataEnd = *std::ranges::max_element(offsets);
        count = Narrow<std::int32_t>(offsets.size() - 1);
        startMusic = *start;
        return true;
    });
}

ByteArray clsAudioT::Self::StoredBytes(std::int32_t chunk) {
    if (!IsStored(chunk))
        return {};
    OpenData();
    const AudioRange range = FindAudioRange(offsets, static_cast<std::size_t>(chunk), data.Size());
    if (range.size == 0)
        return {};
    return data.ReadAt(range.offset, range.size);
}

void clsAudioT::Self::Keep(std::int32_t chunks) {
    if (!IsStored(chunks))
        return;
    // The offset that now closes the list still has to end the chunk before it.
    const auto close = offsets.begin() + chunks;
    const auto end = std::find_if(close, offsets.end(),
                                  [](std::int32_t offset) { return offset != kSparseAudioOffset; });
    if (end != offsets.end())
        *close = *end;
    offsets.erase(close + 1, offsets.end());
}

void clsAudioT::Self::WriteChunk(std::int32_t chunk, Written& out) {
    const auto edit = replaced.find(chunk);
    if (edit == replaced.end() && IsSparse(chunk)) {
        out.offsets.push_back(kSparseAudioOffset);
        return;
    }
    out.offsets.push_back(Narrow<std::int32_t>(out.data.Position()));
    if (edit == replaced.end())
        out.data.Bytes(StoredBytes(chunk));
    else if (ConfiguredGame().audioIsCompressed)
        out.data.Bytes(CompressAudioChunk(edit->second, ConfiguredGame().audioDictionary));
    else
        out.data.Bytes(edit->second);
}

void clsAudioT::Self::CopyData(std::int64_t from, std::int64_t to, Written& out) {
    OpenData();
    to = std::min(to, data.Size());
    if (from < to)
        out.data.Bytes(data.ReadAt(from, to - from));
}

/// `chunk` says where it got to. What lies before the first chunk or behind the last one is kept.
clsAudioT::Self::Written clsAudioT::Self::WriteAll(const SaveStatusEvent& saveStatus,
                                                   std::int32_t& chunk) {
    Written out;
    CopyData(0, dataBegin, out);
    for (const std::int32_t total = count; chunk < total; ++chunk) {
        WriteChunk(chunk, out);
        if (saveStatus)
            saveStatus(chunk + 1, total);
    }
    out.offsets.push_back(Narrow<std::int32_t>(out.data.Position()));
    CopyData(dataEnd, std::numeric_limits<std::int64_t>::max(), out);
    return out;
}

bool clsAudioT::Self::Save(const SaveStatusEvent& saveStatus, const SaveErrorEvent& saveError) {
    if (dataPath.empty())  // else the game's own files would make way for empty ones
        throw Failure(kInvalidProcedureCall, "No audio is loaded.");
    std::int32_t chunk = 0;
    try {
        const Game& store = ConfiguredGame();
        const std::string headerOut = ConfiguredGame().OutputPath(store.audioHeaderFile);
        const std::string dataOut = ConfiguredGame().OutputPath(store.audioDataFile);
        const bool inPlace = SameFile(dataOut, dataPath);  // the offsets follow the file they name
        const SavingFlag::Scope scope(saving);
        Written out = WriteAll(saveStatus, chunk);
        data.Release();
        if (!ReplaceFiles(
                {{headerOut, WriteAudioHeader(out.offsets)}, {dataOut, out.data.Release()}}))
            throw Failure(kPathFileAccess, "The old audio files could not be backed up.");
        if (inPlace) {
            dataEnd = out.offsets.back();
            offsets = std::move(out.offsets);
        }
        return true;
    } catch (...) {
        const Failure failure = CurrentFailure();
        if (saveError)
            saveError(std::clamp(chunk, 0, std::max(count - 1, 0)), failure.Description);
        throw failure;
    }
}

clsAudioT::clsAudioT() : self_(std::make_unique<Self>()) {}
clsAudioT::~clsAudioT() = default;

bool clsAudioT::InitializeMusic() {
    return Guarded("clsAudioT.InitializeMusic", [&] {
        self_->saving.RefuseChange();
        *self_ = Self();
        if (!self_->LoadHuffman() || !self_->LoadHeader())
            return false;
        self_->dataPath = ConfiguredGame().audioDataFile;
        try {
            self_->data = File(self_->dataPath, FileMode::Read);
        } catch (...) {
            *self_ = Self();  // a set without its data serves nothing
            throw;
        }
        return true;
    });
}

void clsAudioT::CloseFile() {
    self_->data.Release();
}

bool clsAudioT::LoadChunk(std::int32_t Chunk, ByteArray& Data, std::int32_t& SIZE) {
    return Guarded("clsAudioT.LoadChunk", [&] {
        self_->CheckChunk(Chunk);
        ByteArray bytes;
        if (const auto edit = self_->replaced.find(Chunk); edit != self_->replaced.end()) {
            bytes = edit->second;
        } else if (self_->IsSparse(Chunk)) {
            throw Failure(0, "Tried to load sparse data at chunk " + std::to_string(Chunk));
        } else {
            bytes = self_->StoredBytes(Chunk);
            if (ConfiguredGame().audioIsCompressed)
                bytes = ExpandAudioChunk(std::move(bytes), ConfiguredGame().audioDictionary);
        }
        SIZE = Narrow<std::int32_t>(bytes.size());
        Data = std::move(bytes);
        return true;
    });
}

void clsAudioT::SetChunkData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsAudioT.SetChunkData", [&] {
        self_->CheckChunk(Chunk);
        self_->replaced[Chunk] = Data;
    });
}

bool clsAudioT::SaveAudioT() {
    constexpr const char* kName = "clsAudioT.SaveAudioT";
    const auto mayBegin = [&] {
        self_->saving.RefuseChange();
        return true;
    };
    if (!Guarded(kName, mayBegin))
        return false;
    const bool saved = Guarded(kName, [&] { return self_->Save(SaveStatus, SaveError); });
    Guarded(kName, [&] {
        if (SaveComplete)
            SaveComplete(saved);
    });
    return saved;
}

std::int32_t clsAudioT::NumberOfChunks() const {
    return self_->count;
}

void clsAudioT::NumberOfChunks(std::int32_t NewValue) {
    Guarded("clsAudioT.NumberOfChunks", [&] {
        self_->saving.RefuseChange();
        if (NewValue < 0 || NewValue > kMostChunks)
            throw Failure(kSubscriptOutOfRange);
        self_->Keep(NewValue);
        self_->replaced.erase(self_->replaced.lower_bound(NewValue), self_->replaced.end());
        self_->count = NewValue;
    });
}

std::int32_t clsAudioT::StartMusic() const {
    return self_->startMusic;
}

std::int32_t clsAudioT::NumberOfSongs() const {
    return self_->startMusic < 0 ? 0 : self_->count - self_->startMusic;
}

std::int32_t clsAudioT::NumberOfSounds() const {
    return self_->startMusic < 0 ? 0 : self_->startMusic / 3;
}

}  // namespace tessaro
