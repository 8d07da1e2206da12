// The disk, where each operation can be made to fail as those of platform/file.h can.
#pragma once

#include "foundation/forwarding_files.h"
#include "platform/file.h"

namespace tessaro::test {

class HookedFiles final : public ForwardingFiles {
public:
    HookedFiles() : ForwardingFiles(*DiskFiles()) {}

    ByteArray Read(const std::string& path) const override {
        CallFileOperationHook(FileOperation::Read, path);
        return below_.Read(path);
    }
    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override {
        CallFileOperationHook(FileOperation::Read, path);
        return below_.ReadAt(path, offset, size);
    }
    std::optional<FileKind> Kind(const std::string& path) const override {
        CallFileOperationHook(FileOperation::Open, path);
        return below_.Kind(path);
    }
    std::vector<std::string> List(const std::string& folder) const override {
        CallFileOperationHook(FileOperation::Open, folder);
        return below_.List(folder);
    }
    void Create(const std::string& path, ByteSpan bytes, Flushed,
                const std::string& like) override {
        CallFileOperationHook(FileOperation::Write, path);
        below_.Create(path, bytes, Flushed::No, like);  // no test cuts this disk's power
    }
    void Append(const std::string& path, ByteSpan bytes, Flushed) override {
        CallFileOperationHook(FileOperation::Write, path);
        below_.Append(path, bytes, Flushed::No);
    }
    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override {
        CallFileOperationHook(FileOperation::Move, from);
        below_.Rename(from, to, ifTaken);
    }
    void FlushFolder(const std::string& folder) override {
        CallFileOperationHook(FileOperation::Close, folder);
    }
    void Remove(const std::string& path) override {
        CallFileOperationHook(FileOperation::Delete, path);
        below_.Remove(path);
    }
    void MakeFolder(const std::string& path) override {
        CallFileOperationHook(FileOperation::CreateFolder, path);
        below_.MakeFolder(path);
    }
};

}  // namespace tessaro::test
