#include "progress.h"

#include <algorithm>
#include <iostream>

#include "console.h"
#include "report.h"

namespace tessaro::cli {

namespace {
constexpr int kWidth = 40;
}

void ProgressBar::Step(std::int32_t item, std::int32_t total) {
    item_ = item;
    total_ = total;
    const int filled = total > 0 ? static_cast<int>(std::int64_t{item} * kWidth / total) : kWidth;
    if (filled == drawn_ || !IsTerminal(2) || TheManner().quiet || TheManner().json)
        return;
    drawn_ = filled;
    std::cerr << '\r';
    Draw();
    std::cerr << std::flush;
}

void ProgressBar::Finish() {
    if (drawn_ >= 0)
        std::cerr << '\r' << std::string(label_.size() + kWidth + 30, ' ') << '\r' << std::flush;
    drawn_ = -1;
}

void ProgressBar::Draw() const {
    const int filled = total_ > 0 ? static_cast<int>(std::int64_t{item_} * kWidth / total_) : 0;
    const int full = std::clamp(filled, 0, kWidth);
    std::cerr << label_ << " [" << std::string(static_cast<std::size_t>(full), '#')
              << std::string(static_cast<std::size_t>(kWidth - full), '.') << "] " << item_ << '/'
              << total_;
}

}  // namespace tessaro::cli
