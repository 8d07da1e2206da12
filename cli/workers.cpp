#include "workers.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tessaro::cli {

void Workers::Do(std::function<void()> job) {
    constexpr std::size_t kMostWaiting = 16;
    if (threads_.empty())
        for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i)
            threads_.emplace_back([this] { Work(); });
    std::unique_lock lock(mutex_);
    taken_.wait(lock, [&] { return jobs_.size() < kMostWaiting; });
    jobs_.push_back(std::move(job));
    added_.notify_one();
}

std::vector<std::string> Workers::Finish() {
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    added_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
    threads_.clear();
    ended_ = false;
    return std::exchange(failures_, {});
}

void Workers::Work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        added_.wait(lock, [&] { return ended_ || !jobs_.empty(); });
        if (jobs_.empty())
            return;
        {
            const std::function<void()> job = std::move(jobs_.front());
            jobs_.pop_front();
            taken_.notify_one();
            lock.unlock();
            std::string failure;
            try {
                job();
            } catch (const std::exception& error) {
                failure = error.what();
            }
            lock.lock();
            if (!failure.empty())
                failures_.push_back(failure);
        }
    }
}

}  // namespace tessaro::cli
