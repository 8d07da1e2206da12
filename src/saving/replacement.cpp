#include "saving/replacement.h"

#include <utility>

#include "foundation/guard.h"
#include "foundation/names.h"
#include "saving/backups.h"
#include "saving/quietly.h"

namespace tessaro {

void Replacement::Run() {
    try {
        Prepare();
        if (targets_.size() > 1)
            StartJournals();
        renaming_ = true;
        Finish();
    } catch (...) {
        const Failure failure = CurrentFailure();
        unfinished_ = !(renaming_ ? PutBack() : Abort());
        throw failure;
    }
}

void Replacement::Close() {
    for (const auto& [folder, journal] : journals_)
        DropJournal(folder);
}

std::string Replacement::NextTemporary(const std::string& folder) {
    temporaries_.push_back(JoinPath(folder, TemporaryName(id_, temporaries_.size())));
    return temporaries_.back();
}

void Replacement::Prepare() {
    for (const Target& target : targets_) {
        std::string temporary;
        if (target.after) {
            temporary = NextTemporary(target.folder);
            files_.Create(temporary, *target.after, Flushed::Yes,
                          target.before ? target.path : std::string());
        }
        AddEntry(target, temporary, target.printBefore, target.printAfter);
    }
}

void Replacement::AddEntry(const Target& target, const std::string& temporary,
                           std::optional<FilePrint> before, std::optional<FilePrint> after) {
    Journal& journal = journals_[target.folder];
    journal.id = id_;
    journal.putsBack = puttingBack_;
    journal.entries.push_back(
        {temporary.empty() ? temporary : NameOf(temporary), NameOf(target.path), before, after});
}

void Replacement::StartJournals() {
    std::vector<std::pair<std::string, std::string>> journals;
    for (const auto& [folder, journal] : journals_) {
        journals.emplace_back(NextTemporary(folder), JoinPath(folder, kJournalName));
        files_.Create(journals.back().first, WriteJournal(journal), Flushed::Yes);
    }
    FlushFolders();  // the temporaries' names, before anything names them
    journalTried_ = true;
    for (const auto& [temporary, path] : journals)
        files_.Rename(temporary, path, IfTaken::Replaces);
    FlushFolders();  // the journals, before the first target changes
}

void Replacement::Finish() {
    for (const auto& [folder, journal] : journals_) {
        for (const JournalEntry& entry : journal.entries) {
            const std::string target = JoinPath(folder, entry.target);
            if (!entry.temporary.empty())
                files_.Rename(JoinPath(folder, entry.temporary), target, IfTaken::Replaces);
            else if (!entry.after && files_.Kind(target))
                files_.Remove(target);
        }
    }
    FlushFolders();  // from here on the save has succeeded
}

void Replacement::FlushFolders() {
    for (const auto& [folder, journal] : journals_)
        files_.FlushFolder(folder);
}

void Replacement::DropJournal(const std::string& folder) {
    const std::string path = JoinPath(folder, kJournalName);
    if (targets_.size() == 1)
        return;
    if (files_.Kind(path))
        files_.Remove(path);
    files_.FlushFolder(folder);
}

/// Before the first target was renamed. The temporaries go only when no journal names them.
bool Replacement::Abort() {
    if (journalTried_ && !Quietly([&] { Close(); }))
        return false;
    for (const std::string& temporary : temporaries_)
        RemoveQuietly(files_, temporary);
    return true;
}

/// After a rename. False when it could not be done: then nothing more is removed, and the
/// journal that is there leads to the new files or to the old ones.
bool Replacement::PutBack() {
    const std::size_t firstTemporaries = temporaries_.size();
    bool nothingChanged = false;
    if (!Quietly([&] { nothingChanged = !TryPutBack(); }))
        return false;
    if (nothingChanged)
        return Abort();
    if (Quietly([&] { Close(); })) {
        for (std::size_t i = 0; i < firstTemporaries; ++i)
            RemoveQuietly(files_, temporaries_[i]);
    }
    return true;
}

/// False when no target has changed.
bool Replacement::TryPutBack() {
    puttingBack_ = true;
    auto first = std::exchange(journals_, {});
    bool changed = false;
    for (const Target& target : targets_) {
        const std::optional<FilePrint> now = PrintNow(files_, target.path);
        std::string temporary;
        if (now != target.printBefore) {
            if (now != target.printAfter)
                throw Failure(kPermissionDenied);  // another program's
            changed = true;
            if (target.before) {
                temporary = NextTemporary(target.folder);
                files_.Create(temporary, *target.before, Flushed::Yes,
                              target.after ? target.path : std::string());
            }
        }
        AddEntry(target, temporary, target.printAfter, target.printBefore);
    }
    if (!changed) {
        journals_ = std::move(first);
        return false;
    }
    if (targets_.size() > 1)
        StartJournals();
    Finish();
    return true;
}

}  // namespace tessaro
