// What the tests of saves share: files that fail, and what is raised meanwhile.
#pragma once

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "support/support.h"

namespace tessaro::test {

/// Makes operations on files of this thread fail as on a full disk: those from the `first` to the
/// `last`, counted from 1; where `only` is given, among those of that kind.
class FailingFiles {
public:
    static constexpr int kNoLast = std::numeric_limits<int>::max();

    FailingFiles(int first, int last, std::optional<FileOperation> only = {});
    explicit FailingFiles(int n) : FailingFiles(n, n) {}
    ~FailingFiles();
    FailingFiles(const FailingFiles&) = delete;
    FailingFiles& operator=(const FailingFiles&) = delete;

    /// Whether an operation has failed.
    bool Failed() const { return failed_; }

private:
    int calls_ = 0;
    bool failed_ = false;
};

enum class Fails { Once, FromThenOn };

/// Calls `act` with its first operation on files failing, then its second, and so on until it meets
/// none that fails; that happens after `least` attempts or more, and it then returns true. Before
/// each attempt comes `prepare`, behind it `check` with what `act` has returned (false for a
/// Failure), both with files that work.
void EachFailure(int least, const std::function<void()>& prepare, const std::function<bool()>& act,
                 const std::function<void(bool done)>& check, Fails fails = Fails::Once);

/// Notes what a container raises while it saves: "SaveStatus 1 7", "SaveError 3 text" (or the
/// number of a kind), "SaveComplete True".
class SaveEvents {
public:
    template <class Container>
    void Listen(Container& container) {
        const auto note = [this](const char* event, const std::string& arguments) {
            seen.push_back(event + (" " + arguments));
        };
        container.SaveStatus = [=](std::int32_t item, std::int32_t total) {
            note("SaveStatus", std::to_string(item) + " " + std::to_string(total));
        };
        container.SaveError = [=](std::int32_t item, const auto& what) {
            if constexpr (std::is_enum_v<std::remove_cvref_t<decltype(what)>>)
                note("SaveError", std::to_string(item) + " " + std::to_string(what));
            else
                note("SaveError", std::to_string(item) + " " + what);
        };
        container.SaveComplete = [=](bool saved) {
            note("SaveComplete", saved ? "True" : "False");
        };
    }

    /// Whether the save has ended once, as its last event, with this result.
    bool EndedOnce(bool saved) const;
    /// The number that SaveError has passed; -1 where it was not raised.
    int ErrorAt() const;

    std::vector<std::string> seen;
};

/// What a save of so many items raises where nothing fails.
std::vector<std::string> EventsOfASave(int items);

}  // namespace tessaro::test
