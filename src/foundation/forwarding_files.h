// A files port that hands every operation on to another, for those that change one or two of them.
#pragma once

#include "tessaro/files.h"

namespace tessaro {

class ForwardingFiles : public Files {
public:
    explicit ForwardingFiles(Files& below) : below_(below) {}

    ByteArray Read(const std::string& path) const override { return below_.Read(path); }
    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override {
        return below_.ReadAt(path, offset, size);
    }
    std::optional<FileKind> Kind(const std::string& path) const override {
        return below_.Kind(path);
    }
    std::vector<std::string> List(const std::string& folder) const override {
        return below_.List(folder);
    }
    void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                const std::string& like = {}) override {
        below_.Create(path, bytes, flushed, like);
    }
    void Append(const std::string& path, ByteSpan bytes, Flushed flushed) override {
        below_.Append(path, bytes, flushed);
    }
    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override {
        below_.Rename(from, to, ifTaken);
    }
    void FlushFolder(const std::string& folder) override { below_.FlushFolder(folder); }
    void Remove(const std::string& path) override { below_.Remove(path); }
    void MakeFolder(const std::string& path) override { below_.MakeFolder(path); }
    std::unique_ptr<FolderLock> Lock(const std::string& folder, Sharing sharing) override {
        return below_.Lock(folder, sharing);
    }

protected:
    Files& below_;
};

}  // namespace tessaro
