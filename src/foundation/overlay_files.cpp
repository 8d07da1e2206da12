#include "foundation/overlay_files.h"

#include <algorithm>

#include "foundation/names.h"
#include "tessaro/failure.h"

namespace tessaro {
namespace {

[[noreturn]] void RefuseWrite() {
    throw Failure(kPermissionDenied);
}

}  // namespace

void OverlayFiles::Lay(const std::string& path, ByteSpan bytes) {
    laid_.push_back({path, bytes});
}

const OverlayFiles::Laid* OverlayFiles::Find(const std::string& path) const {
    const auto found =
        std::ranges::find_if(laid_, [&](const Laid& laid) { return SameName(laid.path, path); });
    return found == laid_.end() ? nullptr : &*found;
}

ByteArray OverlayFiles::Read(const std::string& path) const {
    if (const Laid* laid = Find(path))
        return {laid->bytes.begin(), laid->bytes.end()};
    return below_.Read(path);
}

ByteArray OverlayFiles::ReadAt(const std::string& path, std::uint64_t offset,
                               std::size_t size) const {
    if (const Laid* laid = Find(path)) {
        const auto from =
            static_cast<std::size_t>(std::min<std::uint64_t>(offset, laid->bytes.size()));
        const ByteSpan part = laid->bytes.subspan(from, std::min(size, laid->bytes.size() - from));
        return {part.begin(), part.end()};
    }
    return below_.ReadAt(path, offset, size);
}

std::optional<FileKind> OverlayFiles::Kind(const std::string& path) const {
    if (const Laid* laid = Find(path)) {
        FileKind kind;
        kind.realPath = laid->path;
        kind.identity = "laid over " + laid->path;
        kind.size = laid->bytes.size();
        return kind;
    }
    return below_.Kind(path);
}

std::vector<std::string> OverlayFiles::List(const std::string& folder) const {
    std::vector<std::string> names = below_.List(folder);
    for (const Laid& laid : laid_) {
        if (SameName(FolderOf(laid.path), folder) &&
            std::ranges::none_of(
                names, [&](const std::string& name) { return SameName(name, NameOf(laid.path)); }))
            names.push_back(NameOf(laid.path));
    }
    SortNames(names);
    return names;
}

void OverlayFiles::Create(const std::string&, ByteSpan, Flushed, const std::string&) {
    RefuseWrite();
}
void OverlayFiles::Append(const std::string&, ByteSpan, Flushed) {
    RefuseWrite();
}
void OverlayFiles::Rename(const std::string&, const std::string&, IfTaken) {
    RefuseWrite();
}
void OverlayFiles::FlushFolder(const std::string&) {}
void OverlayFiles::Remove(const std::string&) {
    RefuseWrite();
}
void OverlayFiles::MakeFolder(const std::string&) {
    RefuseWrite();
}
/// Whoever reads through it works within a save, which has locked already.
std::unique_ptr<FolderLock> OverlayFiles::Lock(const std::string&, Sharing) {
    return nullptr;
}

}  // namespace tessaro
