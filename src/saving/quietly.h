// Steps of clearing away after a failure.
#pragma once

namespace tessaro {

/// One step of clearing away: the failure that caused it is the one that the caller is told of.
template <class Step>
bool Quietly(Step&& step) {
    try {
        step();
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace tessaro
