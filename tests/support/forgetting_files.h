// A disk in memory that can lose its power: what was not flushed, contents and names, is kept or
// lost as chance will have it.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tessaro/files.h"

namespace tessaro::test {

class ForgettingFiles final : public Files {
public:
    struct Content {
        ByteArray now;
        std::optional<ByteArray> kept;  ///< as it was flushed last
        bool operator<(const Content& other) const {
            return std::tie(now, kept) < std::tie(other.now, other.kept);
        }
    };
    using Names = std::map<std::string, int>;  ///< the number of each file's content
    struct NameChange {
        std::string folder;
        std::vector<std::pair<std::string, std::optional<int>>> names;
        bool operator<(const NameChange& other) const {
            return std::tie(folder, names) < std::tie(other.folder, other.names);
        }
    };
    struct State {
        Names now, kept;
        std::vector<NameChange> pending;
        std::vector<Content> contents;
        bool operator<(const State& other) const {
            return std::tie(now, kept, pending, contents) <
                   std::tie(other.now, other.kept, other.pending, other.contents);
        }
    };

    ForgettingFiles() = default;
    /// The same disk, without the watcher of its steps.
    ForgettingFiles(const ForgettingFiles& other)
        : Files(), state(other.state), folders(other.folders) {}

    State state;
    std::set<std::string> folders;
    /// Called before each step that changes something: here a process may die, or the power go.
    std::function<void()> step = [] {};

    /// Puts a file there that has been on the disk for long.
    void Seed(const std::string& path, const ByteArray& bytes);
    /// The states that a power cut may leave: all of them, or `limit` chosen by `random`.
    std::vector<State> PowerCuts(std::size_t limit, std::mt19937& random) const;

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
    Content& At(const std::string& path);
    void Change(const std::string& folder,
                std::vector<std::pair<std::string, std::optional<int>>> names);
};

}  // namespace tessaro::test
