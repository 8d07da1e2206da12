#include "foundation/guard.h"

#include <new>
#include <stdexcept>

namespace tessaro {

Failure CurrentFailure() {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return Failure(kOutOfMemory);
    } catch (const std::length_error&) {
        return Failure(kOutOfMemory);
    } catch (const std::exception& exception) {
        return Failure(0, exception.what());
    } catch (...) {
        return Failure(0, "Unknown failure");
    }
}

std::string CurrentProcedure(std::string_view procedure) {
    try {
        throw;
    } catch (const StepFailure& failure) {
        return failure.Procedure();
    } catch (...) {
        return std::string(procedure);
    }
}

void Report(std::string_view procedure, const Failure& failure) {
    try {
        modGlobal::SetErrorState(failure);
        modGlobal::ReportError(procedure);
    } catch (...) {
    }
}

}  // namespace tessaro
