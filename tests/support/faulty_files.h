// A files port whose operations fail, or forget to flush, when they are told to.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <type_traits>

#include "foundation/forwarding_files.h"
#include "foundation/names.h"
#include "saving/journal.h"
#include "tessaro/failure.h"

namespace tessaro::test {

enum class Fault {
    None,
    WithoutEffect,
    AfterEffect,  ///< an error although it was done
    FromThereOn   ///< without effect, and all that follow too
};

/// Counts the operations of a port (from 1) and makes chosen ones fail.
class FaultyFiles : public ForwardingFiles {
public:
    explicit FaultyFiles(Files& below, Fault fault = Fault::None, int at = 0)
        : ForwardingFiles(below), fault_(fault), at_(at) {}

    int Operations() const { return operations_; }
    /// Counts anew, and fails from now on as told.
    void Arm(Fault fault, int at) {
        fault_ = fault;
        at_ = at;
        operations_ = 0;
    }
    /// Called before each operation.
    std::function<void(int operation)> onOperation = [](int) {};
    /// What was flushed, each kind of it once, and the kind that is left out without a word.
    std::set<std::string> flushes;
    std::string leftOut;

    ByteArray Read(const std::string& path) const override {
        return Do([&] { return below_.Read(path); });
    }
    std::optional<FileKind> Kind(const std::string& path) const override {
        return Do([&] { return below_.Kind(path); });
    }
    std::vector<std::string> List(const std::string& folder) const override {
        return Do([&] { return below_.List(folder); });
    }
    void Create(const std::string& path, ByteSpan bytes, Flushed flushed,
                const std::string& like = {}) override {
        const bool journal = std::string(bytes.begin(), bytes.end()).starts_with("tessaro-journal");
        Flushed now = flushed;
        if (flushed == Flushed::Yes)
            now = Flush(FolderOf(path) + (journal ? ": a journal" : ": a file"));
        Do([&] { below_.Create(path, bytes, now, like); });
        last_ = "creating";
    }
    void Append(const std::string& path, ByteSpan bytes, Flushed flushed) override {
        Flushed now = flushed;
        if (flushed == Flushed::Yes)
            now = Flush("a line of " + NameOf(path));
        Do([&] { below_.Append(path, bytes, now); });
        last_ = "appending";
    }
    void Rename(const std::string& from, const std::string& to, IfTaken ifTaken) override {
        Do([&] { below_.Rename(from, to, ifTaken); });
        last_ = NameOf(to) == kJournalName ? "naming the journal" : "renaming";
    }
    void FlushFolder(const std::string& folder) override {
        const Flushed now = Flush(folder + " after " + last_);
        Do([&] {
            if (now == Flushed::Yes)
                below_.FlushFolder(folder);
        });
        last_ = "flushing";
    }
    void Remove(const std::string& path) override {
        Do([&] { below_.Remove(path); });
        last_ = NameOf(path) == kJournalName ? "removing the journal" : "removing";
    }
    void MakeFolder(const std::string& path) override {
        Do([&] { below_.MakeFolder(path); });
    }

private:
    Flushed Flush(const std::string& kind) {
        flushes.insert(kind);
        return kind == leftOut ? Flushed::No : Flushed::Yes;
    }
    template <class Operation>
    std::invoke_result_t<Operation&> Do(Operation&& operation) const {
        onOperation(++operations_);
        const bool hit = operations_ == at_;
        if ((hit && fault_ == Fault::WithoutEffect) ||
            (fault_ == Fault::FromThereOn && operations_ >= at_))
            throw Failure(kDeviceIOError);
        if (hit && fault_ == Fault::AfterEffect) {
            operation();
            throw Failure(kDeviceIOError);
        }
        return operation();
    }

    Fault fault_;
    int at_;
    std::string last_ = "nothing";
    mutable int operations_ = 0;
};

}  // namespace tessaro::test
