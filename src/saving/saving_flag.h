// While a set is being saved its events call the host, and the host may call back.
#pragma once

#include "tessaro/failure.h"

namespace tessaro {

/// Whether a container is writing its set. What a save relies on from its first event to its last
/// may not change meanwhile: another set, the number of items, their sizes, a save within the save.
class SavingFlag {
public:
    void RefuseChange() const {
        if (saving_)
            throw Failure(kInvalidProcedureCall,
                          "This cannot be done while the set is being saved.");
    }

    /// What StopSave does: a handler of SaveStatus, and nobody else, may end the save.
    void AskToStop() {
        if (!inStatus_)
            throw Failure(kInvalidProcedureCall,
                          "A save can be stopped only while SaveStatus is raised.");
        stop_ = true;
    }

    /// Raises SaveStatus, and ends the save where its handler asked for that.
    template <class Raise>
    void Status(Raise&& raise) {
        inStatus_ = true;
        try {
            raise();
        } catch (...) {
            inStatus_ = false;
            throw;
        }
        inStatus_ = false;
        if (stop_)
            throw Failure(0, "The save was stopped.");
    }

    /// For as long as the set is written.
    class Scope {
    public:
        explicit Scope(SavingFlag& flag) : flag_(flag) {
            flag.RefuseChange();
            flag.saving_ = true;
            flag.stop_ = false;
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { flag_.saving_ = false; }

    private:
        SavingFlag& flag_;
    };

private:
    bool saving_ = false;
    bool inStatus_ = false;
    bool stop_ = false;
};

}  // namespace tessaro
