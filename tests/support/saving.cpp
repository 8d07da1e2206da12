#include "support/saving.h"

#include <algorithm>

namespace tessaro::test {

FailingFiles::FailingFiles(int first, int last, std::optional<FileOperation> only) {
    SetFileOperationHook([=, this](FileOperation operation, const std::string&) {
        if (only && operation != *only)
            return;
        if (++calls_ >= first && calls_ <= last) {
            failed_ = true;
            throw Failure(kDiskFull);
        }
    });
}

FailingFiles::~FailingFiles() {
    SetFileOperationHook(nullptr);
}

void EachFailure(int least, const std::function<void()>& prepare, const std::function<bool()>& act,
                 const std::function<void(bool done)>& check, Fails fails) {
    constexpr int kMost = 1000;
    for (int n = 1; n < kMost; ++n) {
        SCOPED_TRACE("operation " + std::to_string(n));
        prepare();
        bool done = false, failed = false;
        {
            const FailingFiles files(n, fails == Fails::Once ? n : FailingFiles::kNoLast);
            try {
                done = act();
            } catch (const Failure& failure) {
                EXPECT_EQ(failure.Number, kDiskFull);
            }
            failed = files.Failed();
        }
        check(done);
        if (testing::Test::HasFatalFailure())
            return;
        if (!failed) {
            EXPECT_TRUE(done);
            EXPECT_GT(n, least);
            return;
        }
    }
    ADD_FAILURE() << "no end of failing operations";
}

bool SaveEvents::EndedOnce(bool saved) const {
    return std::ranges::count_if(
               seen, [](const auto& event) { return event.starts_with("SaveComplete"); }) == 1 &&
           seen.back() == (saved ? "SaveComplete True" : "SaveComplete False");
}

int SaveEvents::ErrorAt() const {
    for (const std::string& event : seen)
        if (event.starts_with("SaveError "))
            return std::stoi(event.substr(10));
    return -1;
}

std::vector<std::string> EventsOfASave(int items) {
    std::vector<std::string> events;
    for (int item = 1; item <= items; ++item)
        events.push_back("SaveStatus " + std::to_string(item) + " " + std::to_string(items));
    events.push_back("SaveComplete True");
    return events;
}

}  // namespace tessaro::test
