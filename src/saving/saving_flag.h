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

    /// For as long as the set is written.
    class Scope {
    public:
        explicit Scope(SavingFlag& flag) : flag_(flag) {
            flag.RefuseChange();
            flag.saving_ = true;
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { flag_.saving_ = false; }

    private:
        SavingFlag& flag_;
    };

private:
    bool saving_ = false;
};

}  // namespace tessaro
