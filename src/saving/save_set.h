// The one order of every save, of one set or of several, and the only place from which SaveError
// and SaveComplete are raised.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/data_file.h"
#include "foundation/game.h"
#include "saving/new_file.h"
#include "saving/saving_flag.h"
#include "tessaro/types.h"

namespace tessaro {

/// One container's part of a save. It works on the settings as they were when it was made.
class SetSave {
public:
    SetSave(std::string_view procedure, std::shared_ptr<Game> game, SavingFlag& flag)
        : procedure_(procedure), game_(std::move(game)), flag_(flag), atStart_(*game_) {}
    SetSave(const SetSave&) = delete;
    SetSave& operator=(const SetSave&) = delete;
    virtual ~SetSave() = default;

    const std::string& Procedure() const { return procedure_; }
    Game& GameOf() const { return *game_; }
    SavingFlag& Flag() const { return flag_; }
    /// The settings that the save works on.
    const Game& AtStart() const { return atStart_; }

    /// Every file of the set, complete, in memory. Raises SaveStatus for each item.
    virtual std::vector<NewFile> Write() = 0;
    /// Opens what Write returned, which `files` shows at its places, by the container's own opener,
    /// and throws, naming item, place and remedy, where it is not what the save was asked to write.
    virtual void Prove(const Files& files) = 0;
    /// The files that this save replaces and that the container read.
    virtual std::vector<DataFile*> Read() { return {}; }
    /// The items that the save changes, one text each, for the history.
    virtual std::vector<std::string> Changed() const { return {}; }
    /// Serves the new files where they have replaced the container's own.
    virtual void Adopt() = 0;
    /// After a failure: whatever the container has to put right.
    virtual void PutBack() {}
    /// The files are proven, but could not be put in their places. What this returns is added to
    /// the failure's description.
    virtual std::string KeepAside(const std::vector<NewFile>&) { return {}; }
    /// The name that a failure is reported under, where it happened in `procedure`.
    virtual std::string ReportName(const std::string& procedure) const { return procedure; }

    virtual void RaiseError(const Failure& failure) = 0;
    virtual void RaiseComplete(bool success) = 0;

protected:
    /// A change of the settings that only this save sees.
    Game& Settings() { return atStart_; }

private:
    std::string procedure_;
    std::shared_ptr<Game> game_;
    SavingFlag& flag_;
    Game atStart_;
};

/// Saves sets, all or none. First every set is written and proven, then one transaction puts all
/// files in place. At the end, each once: the failure's box and log entry, SaveError, SaveComplete;
/// what those handlers throw is dropped. A save that may not begin (one of the sets is being saved)
/// is reported and raises no event.
bool SaveSets(std::span<SetSave* const> sets);
bool SaveSet(SetSave& set);

/// Whether a file that a save writes is one that its container read.
bool IsInPlace(const Files& files, const std::string& target, const DataFile& read);

/// Shows what the user shall be told of an opening or a save.
void ShowNotices(const std::vector<std::string>& notices);

}  // namespace tessaro
