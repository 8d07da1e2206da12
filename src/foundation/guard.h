// The boundary of every public operation.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "foundation/global.h"

namespace tessaro {

/// What is being handled in a catch block, as a Failure: our own as it is, exhausted memory as
/// number 7, anything else with its own text.
Failure CurrentFailure();

/// A failure that carries the name of the private step in which it happened.
class StepFailure final : public Failure {
public:
    StepFailure(std::string_view procedure, const Failure& failure)
        : Failure(failure), procedure_(procedure) {}
    const std::string& Procedure() const { return procedure_; }

private:
    std::string procedure_;
};

/// The step that the failure being handled in a catch block happened in, else `procedure`.
std::string CurrentProcedure(std::string_view procedure);

/// Runs one private step of an operation. A failure is reported under the step's name, the
/// innermost one's where steps stand within each other.
template <class Body>
decltype(auto) Step(std::string_view procedure, Body&& body) {
    try {
        return body();
    } catch (const StepFailure&) {
        throw;
    } catch (...) {
        throw StepFailure(procedure, CurrentFailure());
    }
}

/// Shows and logs a failure under a procedure's name. Neither a log that cannot be written nor a
/// host's box that throws keeps the operation from returning its failure value.
void Report(std::string_view procedure, const Failure& failure);

/// Runs the body of one public operation; nothing leaves it. After a failure, which has been
/// reported by then, the result is the operation's failure value (False, 0, nothing).
template <class Body, class Result = std::invoke_result_t<Body&>>
Result Guarded(std::string_view procedure, Body&& body,
               std::type_identity_t<Result> onFailure = {}) requires(!std::is_void_v<Result>) {
    try {
        return body();
    } catch (...) {
        Report(CurrentProcedure(procedure), CurrentFailure());
    }
    return onFailure;
}

template <class Body, class Result = std::invoke_result_t<Body&>>
void Guarded(std::string_view procedure, Body&& body) requires std::is_void_v<Result> {
    try {
        return body();
    } catch (...) {
        Report(CurrentProcedure(procedure), CurrentFailure());
    }
}

}  // namespace tessaro
