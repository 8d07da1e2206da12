// The boundary of every public operation.
#pragma once

#include <string_view>
#include <type_traits>

#include "foundation/global.h"

namespace tessaro {

/// What is being handled in a catch block, as a Failure: our own as it is, exhausted memory as
/// number 7, anything else with its own text.
Failure CurrentFailure();

/// Runs the body of one public operation. After a failure, which has been reported by then, the
/// result is the operation's failure value (False, 0, nothing).
template <class Body, class Result = std::invoke_result_t<Body&>>
Result Guarded(std::string_view procedure, Body&& body,
               std::type_identity_t<Result> onFailure = {}) requires(!std::is_void_v<Result>) {
    try {
        return body();
    } catch (...) {
        modGlobal::SetErrorState(CurrentFailure());
    }
    modGlobal::ReportError(procedure);
    return onFailure;
}

template <class Body, class Result = std::invoke_result_t<Body&>>
void Guarded(std::string_view procedure, Body&& body) requires std::is_void_v<Result> {
    try {
        return body();
    } catch (...) {
        modGlobal::SetErrorState(CurrentFailure());
    }
    modGlobal::ReportError(procedure);
}

}  // namespace tessaro
