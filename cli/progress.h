// The progress bar of a save, or of whatever takes its time.
#pragma once

#include <cstdint>
#include <string>

namespace tessaro::cli {

/// Drawn in place on a terminal; nowhere else, and not where the user wants it quiet.
class ProgressBar {
public:
    explicit ProgressBar(std::string label) : label_(std::move(label)) {}

    /// Takes the events of a saving class.
    template <class Container>
    void Follow(Container& container) {
        container.SaveStatus = [this](std::int32_t item, std::int32_t total) { Step(item, total); };
        container.SaveComplete = [this](bool) { Finish(); };
    }
    void Step(std::int32_t item, std::int32_t total);
    /// Takes the bar away.
    void Finish();

private:
    void Draw() const;

    std::string label_;
    std::int32_t item_ = 0, total_ = 0;
    int drawn_ = -1;
};

}  // namespace tessaro::cli
