#include "support/forgetting_files.h"

#include <algorithm>

#include "foundation/names.h"
#include "tessaro/failure.h"

namespace tessaro::test {
namespace {

void Apply(ForgettingFiles::Names& names, const ForgettingFiles::NameChange& change) {
    for (const auto& [name, content] : change.names) {
        if (content)
            names[name] = *content;
        else
            names.erase(name);
    }
}

/// Half of what was written since the last flush, and a byte of something else.
ByteArray Torn(const ForgettingFiles::Content& content) {
    ByteArray torn = content.kept.value_or(ByteArray());
    const auto from = static_cast<std::ptrdiff_t>(torn.size());
    const auto count = std::max<std::ptrdiff_t>(std::ssize(content.now) - from, 0) / 2;
    const auto start = content.now.begin() + (count > 0 ? from : 0);
    torn.insert(torn.end(), start, start + count);
    torn.push_back(0);
    return torn;
}

}  // namespace

void ForgettingFiles::Seed(const std::string& path, const ByteArray& bytes) {
    folders.insert(FolderOf(path));
    state.contents.push_back({bytes, bytes});
    state.now[path] = state.kept[path] = static_cast<int>(state.contents.size() - 1);
}

std::vector<ForgettingFiles::State> ForgettingFiles::PowerCuts(std::size_t limit,
                                                               std::mt19937& random) const {
    std::set<State> cuts;
    std::size_t doubtful = state.pending.size();
    for (const Content& content : state.contents)
        doubtful += content.kept != content.now ? 2u : 0u;
    const bool all = doubtful < 20 && (std::size_t{1} << doubtful) <= limit;
    const std::size_t count = all ? std::size_t{1} << doubtful : limit;
    for (std::size_t i = 0; i < count; ++i) {
        // Nothing kept and everything kept are always among them.
        std::uint64_t choice = all || i == 0 ? i : i == 1 ? ~std::uint64_t{0} : random();
        const auto next = [&] { return std::exchange(choice, choice >> 1) & 1; };
        State cut;
        cut.now = state.kept;
        for (const NameChange& change : state.pending) {
            if (next())
                Apply(cut.now, change);
        }
        cut.contents = state.contents;
        for (Content& content : cut.contents) {
            if (content.kept != content.now && !next())
                content.now = next() ? content.kept.value_or(ByteArray()) : Torn(content);
            content.kept = content.now;
        }
        cut.kept = cut.now;
        cuts.insert(std::move(cut));
    }
    return {cuts.begin(), cuts.end()};
}

ForgettingFiles::Content& ForgettingFiles::At(const std::string& path) {
    const auto found = state.now.find(path);
    if (found == state.now.end())
        throw Failure(kFileNotFound);
    return state.contents[static_cast<std::size_t>(found->second)];
}

void ForgettingFiles::Change(const std::string& folder,
                             std::vector<std::pair<std::string, std::optional<int>>> names) {
    state.pending.push_back({folder, std::move(names)});
    Apply(state.now, state.pending.back());
}

ByteArray ForgettingFiles::Read(const std::string& path) const {
    return const_cast<ForgettingFiles*>(this)->At(path).now;
}

ByteArray ForgettingFiles::ReadAt(const std::string& path, std::uint64_t, std::size_t) const {
    return Read(path);
}

std::optional<FileKind> ForgettingFiles::Kind(const std::string& path) const {
    FileKind kind;
    kind.realPath = path;
    if (const auto found = state.now.find(path); found != state.now.end()) {
        kind.identity = std::to_string(found->second);
        kind.size = Read(path).size();
        return kind;
    }
    kind.type = FileKind::Folder;
    return folders.contains(path) ? std::optional(kind) : std::nullopt;
}

std::vector<std::string> ForgettingFiles::List(const std::string& folder) const {
    std::vector<std::string> names;
    for (const auto& [path, content] : state.now) {
        if (FolderOf(path) == folder)
            names.push_back(NameOf(path));
    }
    return names;
}

void ForgettingFiles::Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                             const std::string&) {
    if (Kind(path))
        throw Failure(kPermissionDenied);
    step();
    state.contents.push_back({});
    Change(FolderOf(path), {{path, static_cast<int>(state.contents.size() - 1)}});
    step();
    At(path).now.assign(bytes.begin(), bytes.end());
    if (flushed == Flushed::Yes) {
        step();
        At(path).kept = At(path).now;
    }
}

void ForgettingFiles::Append(const std::string& path, ByteSpan bytes, Flushed flushed) {
    if (!Kind(path))
        Create(path, {}, Flushed::No);
    step();
    At(path).now.insert(At(path).now.end(), bytes.begin(), bytes.end());
    if (flushed == Flushed::Yes) {
        step();
        At(path).kept = At(path).now;
    }
}

void ForgettingFiles::Rename(const std::string& from, const std::string& to, IfTaken ifTaken) {
    At(from);
    if (ifTaken == IfTaken::Fails && Kind(to))
        throw Failure(kPermissionDenied);
    step();
    Change(FolderOf(to), {{from, std::nullopt}, {to, state.now.at(from)}});
}

void ForgettingFiles::FlushFolder(const std::string& folder) {
    step();
    std::erase_if(state.pending, [&](const NameChange& change) {
        if (change.folder == folder)
            Apply(state.kept, change);
        return change.folder == folder;
    });
}

void ForgettingFiles::Remove(const std::string& path) {
    At(path);
    step();
    Change(FolderOf(path), {{path, std::nullopt}});
}

void ForgettingFiles::MakeFolder(const std::string& path) {
    folders.insert(path);
}

std::unique_ptr<FolderLock> ForgettingFiles::Lock(const std::string&, Sharing) {
    return std::make_unique<FolderLock>();
}

}  // namespace tessaro::test
