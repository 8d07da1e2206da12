#include <algorithm>
#include <map>

#include "foundation/names.h"
#include "tessaro/failure.h"
#include "tessaro/files.h"

namespace tessaro {

FolderLock::~FolderLock() = default;
Files::~Files() = default;

namespace {

struct MemoryFile {
    std::string path;  ///< as it was spelt
    ByteArray bytes;
    std::int64_t time = 0;
    std::uint64_t number = 0;  ///< goes with the file when it is renamed
};

}  // namespace

struct MemoryFiles::Self {
    std::map<std::string, MemoryFile> files;  ///< by their names in upper case
    std::map<std::string, std::string> folders;
    std::int64_t clock = 0;

    const MemoryFile& At(const std::string& path) const {
        const auto found = files.find(UpperCase(path));
        if (found == files.end())
            throw Failure(kFileNotFound);
        return found->second;
    }
    void Put(const std::string& path, ByteSpan bytes) {
        AddFolder(FolderOf(path));
        ++clock;
        files.insert_or_assign(
            UpperCase(path),
            MemoryFile{
                path, {bytes.begin(), bytes.end()}, clock, static_cast<std::uint64_t>(clock)});
    }
    void AddFolder(const std::string& folder) { folders.try_emplace(UpperCase(folder), folder); }
};

MemoryFiles::MemoryFiles() : self_(std::make_unique<Self>()) {}
MemoryFiles::~MemoryFiles() = default;

void MemoryFiles::Set(const std::string& path, ByteArray bytes) {
    self_->Put(path, bytes);
}

ByteArray MemoryFiles::Read(const std::string& path) const {
    return self_->At(path).bytes;
}

ByteArray MemoryFiles::ReadAt(const std::string& path, std::uint64_t offset,
                              std::size_t size) const {
    const ByteSpan bytes = self_->At(path).bytes;
    const auto from = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes.size()));
    const ByteSpan part = bytes.subspan(from, std::min(size, bytes.size() - from));
    return {part.begin(), part.end()};
}

std::optional<FileKind> MemoryFiles::Kind(const std::string& path) const {
    FileKind kind;
    if (const auto file = self_->files.find(UpperCase(path)); file != self_->files.end()) {
        kind.realPath = file->second.path;
        kind.identity = std::to_string(file->second.number);
        kind.size = file->second.bytes.size();
        kind.time = file->second.time;
        return kind;
    }
    if (const auto folder = self_->folders.find(UpperCase(path)); folder != self_->folders.end()) {
        kind.type = FileKind::Folder;
        kind.realPath = folder->second;
        kind.identity = "folder " + folder->first;
        return kind;
    }
    return std::nullopt;
}

std::vector<std::string> MemoryFiles::List(const std::string& folder) const {
    if (!self_->folders.contains(UpperCase(folder)))
        throw Failure(kPathNotFound);
    std::vector<std::string> names;
    for (const auto& [key, file] : self_->files) {
        if (SameName(FolderOf(file.path), folder))
            names.push_back(NameOf(file.path));
    }
    SortNames(names);
    return names;
}

void MemoryFiles::Create(const std::string& path, ByteSpan bytes, Flushed, const std::string&) {
    if (Kind(path))
        throw Failure(kPermissionDenied);
    if (!self_->folders.contains(UpperCase(FolderOf(path))))
        throw Failure(kPathNotFound);
    self_->Put(path, bytes);
}

void MemoryFiles::Append(const std::string& path, ByteSpan bytes, Flushed) {
    ByteArray all = Kind(path) ? Read(path) : ByteArray();
    all.insert(all.end(), bytes.begin(), bytes.end());
    const std::string spelt = Kind(path) ? Kind(path)->realPath : path;
    self_->Put(spelt, all);
}

void MemoryFiles::Rename(const std::string& from, const std::string& to, IfTaken ifTaken) {
    MemoryFile file = self_->At(from);
    const auto taken = Kind(to);
    if (taken && (ifTaken == IfTaken::Fails || taken->type == FileKind::Folder))
        throw Failure(kPermissionDenied);
    file.path = taken ? taken->realPath : to;
    self_->AddFolder(FolderOf(to));
    self_->files.erase(UpperCase(from));
    self_->files.insert_or_assign(UpperCase(to), std::move(file));
}

void MemoryFiles::FlushFolder(const std::string&) {}

void MemoryFiles::Remove(const std::string& path) {
    self_->At(path);
    self_->files.erase(UpperCase(path));
}

void MemoryFiles::MakeFolder(const std::string& path) {
    if (Kind(path))
        throw Failure(kPathFileAccess);
    self_->AddFolder(path);
}

/// Nobody else is there to wait for.
std::unique_ptr<FolderLock> MemoryFiles::Lock(const std::string&, Sharing) {
    return std::make_unique<FolderLock>();
}

}  // namespace tessaro
