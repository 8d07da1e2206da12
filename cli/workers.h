// Work that the other cores do meanwhile.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tessaro::cli {

/// Does jobs on as many threads as there are cores. A job must not touch the library's settings,
/// which belong to the thread that made them.
class Workers {
public:
    Workers() = default;
    ~Workers() { Finish(); }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Takes a job; waits while too many are waiting, so that their memory is bounded.
    void Do(std::function<void()> job);
    /// Waits until all are done; hands back what failed, a line each.
    std::vector<std::string> Finish();

private:
    void Work();

    std::mutex mutex_;
    std::condition_variable added_, taken_;
    std::deque<std::function<void()>> jobs_;
    std::vector<std::string> failures_;
    std::vector<std::thread> threads_;
    bool ended_ = false;
};

}  // namespace tessaro::cli
