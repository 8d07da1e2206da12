#include "saving/save_set.h"

#include <deque>
#include <optional>

#include "foundation/guard.h"
#include "foundation/names.h"
#include "foundation/overlay_files.h"
#include "platform/system.h"
#include "saving/transaction.h"

namespace tessaro {
namespace {

/// What a host's handler throws does not keep the others from being called.
template <class Body>
void Quietly(Body&& body) {
    try {
        body();
    } catch (...) {
    }
}

/// For as long as a game must not be found anew.
class GameScope {
public:
    explicit GameScope(Game& game) : game_(game) { ++game_.saving; }
    GameScope(const GameScope&) = delete;
    GameScope& operator=(const GameScope&) = delete;
    ~GameScope() { --game_.saving; }

private:
    Game& game_;
};

struct Written {
    SetSave* set;
    std::vector<NewFile> files;
};

class Saving {
public:
    explicit Saving(std::span<SetSave* const> sets) : sets_(sets) {}

    bool Run() {
        std::deque<SavingFlag::Scope> scopes;
        std::deque<GameScope> games;
        const auto mayBegin = [&] {
            for (SetSave* set : sets_) {
                scopes.emplace_back(set->Flag());
                games.emplace_back(set->GameOf());
            }
            return true;
        };
        if (sets_.empty() || !Guarded(sets_.front()->Procedure(), mayBegin))
            return false;
        try {
            Write();
            saved_ = true;
        } catch (...) {
            const Failure failure = CurrentFailure();
            const std::string procedure =
                Culprit().ReportName(CurrentProcedure(Culprit().Procedure()));
            for (SetSave* set : sets_)
                Quietly([&] { set->PutBack(); });
            Report(procedure, failure);
            for (SetSave* set : sets_) {
                if (culprit_ == nullptr || set == culprit_)
                    Quietly([&] { set->RaiseError(failure); });
            }
        }
        scopes.clear();
        games.clear();
        Quietly([&] { ShowNotices(notices_); });
        for (SetSave* set : sets_)
            Quietly([&] { set->RaiseComplete(saved_); });
        return saved_;
    }

private:
    SetSave& Culprit() const { return culprit_ != nullptr ? *culprit_ : *sets_.front(); }

    void Write() {
        std::vector<Written> written;
        for (SetSave* set : sets_) {
            culprit_ = set;
            written.push_back({set, set->Write()});
        }
        for (const Written& one : written) {
            culprit_ = one.set;
            OverlayFiles laid(*one.set->AtStart().files);
            for (const NewFile& file : one.files)
                laid.Lay(file.path, file.content);
            one.set->Prove(laid);
        }
        culprit_ = sets_.size() == 1 ? sets_.front() : nullptr;

        SavePlan plan;
        plan.backupFolder = sets_.front()->AtStart().backupFolder;
        for (const Written& one : written) {
            plan.files.insert(plan.files.end(), one.files.begin(), one.files.end());
            for (DataFile* file : one.set->Read())
                plan.read.push_back(file);
            for (std::string& item : one.set->Changed())
                plan.changed.push_back(std::move(item));
        }
        try {
            notices_ = Commit(*sets_.front()->AtStart().files, plan).notices;
        } catch (...) {
            Failure failure = CurrentFailure();
            for (const Written& one : written)
                Quietly([&] { failure.Description += one.set->KeepAside(one.files); });
            throw failure;
        }
        for (SetSave* set : sets_)
            set->Adopt();
    }

    std::span<SetSave* const> sets_;
    SetSave* culprit_ = nullptr;  ///< null where a step failed that is all sets'
    std::vector<std::string> notices_;
    bool saved_ = false;
};

}  // namespace

bool SaveSets(std::span<SetSave* const> sets) {
    return Saving(sets).Run();
}

bool SaveSet(SetSave& set) {
    SetSave* const one = &set;
    return SaveSets({&one, 1});
}

bool IsInPlace(const Files& files, const std::string& target, const DataFile& read) {
    if (!read.WasRead())
        return false;
    const auto there = files.Kind(target), source = files.Kind(read.Path());
    return there && source ? there->identity == source->identity
                           : !there && !source && SameName(target, read.Path());
}

void ShowNotices(const std::vector<std::string>& notices) {
    for (const std::string& notice : notices)
        CurrentUserInterface().MsgBox(notice, mbInformation, "", "", 0);
}

}  // namespace tessaro
