// New bytes laid over what lies below: a set that is not written yet, read by its own opener.
#pragma once

#include "tessaro/files.h"

namespace tessaro {

/// Reads are served from `over` where it has the name, otherwise from `below`. It is only read:
/// whatever would write fails.
class OverlayFiles final : public Files {
public:
    explicit OverlayFiles(const Files& below) : below_(below) {}

    /// Shows `bytes` under a name, over what stands there. The bytes stay the caller's.
    void Lay(const std::string& path, ByteSpan bytes);

    ByteArray Read(const std::string& path) const override;
    ByteArray ReadAt(const std::string& path, std::uint64_t offset,
                     std::size_t size) const override;
    std::optional<FileKind> Kind(const std::string& path) const override;
    std::vector<std::string> List(const std::string& folder) const override;
    void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                const std::string& like = {}) override;
    void Append(const std::string& path, ByteSpan bytes, Flushed flushed) override;
    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override;
    void FlushFolder(const std::string& folder) override;
    void Remove(const std::string& path) override;
    void MakeFolder(const std::string& path) override;
    std::unique_ptr<FolderLock> Lock(const std::string& folder, Sharing sharing) override;

private:
    struct Laid {
        std::string path;
        ByteSpan bytes;
    };
    const Laid* Find(const std::string& path) const;

    const Files& below_;
    std::vector<Laid> laid_;
};

}  // namespace tessaro
