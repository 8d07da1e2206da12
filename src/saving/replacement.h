// The steps of a transaction that change data files.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "saving/journal.h"
#include "saving/targets.h"

namespace tessaro {

/// New files beside their targets, put in place by renames that a journal can finish. What puts
/// the old files back after a failure is the same again, with the old bytes as the new ones.
class Replacement {
public:
    /// The caller holds the locks of the targets' folders.
    Replacement(Files& files, const std::vector<Target>& targets)
        : files_(files), targets_(targets), id_(NewTransactionId()) {}

    const std::string& Id() const { return id_; }

    /// Throws the failure of the step that failed: everything is as before then, or unfinished.
    void Run();
    bool IsUnfinished() const { return unfinished_; }
    /// After Run: what fails here is no failure of the save.
    void Close();

private:
    std::string NextTemporary(const std::string& folder);
    void AddEntry(const Target& target, const std::string& temporary,
                  std::optional<FilePrint> before, std::optional<FilePrint> after);
    void Prepare();
    void StartJournals();
    void Finish();
    void FlushFolders();
    void DropJournal(const std::string& folder);
    bool Abort();
    bool PutBack();
    bool TryPutBack();

    Files& files_;
    const std::vector<Target>& targets_;
    std::string id_;
    std::map<std::string, Journal> journals_;  ///< by folder
    std::vector<std::string> temporaries_;
    bool journalTried_ = false, renaming_ = false, puttingBack_ = false, unfinished_ = false;
};

}  // namespace tessaro
