// The progress bar of a save.
#pragma once

#include <cstdint>
#include <string>

namespace tessaro::cli {

/// Drawn on stderr from the save events: in place on a terminal, as one finished line elsewhere.
class ProgressBar {
public:
    explicit ProgressBar(std::string label) : label_(std::move(label)) {}

    /// Takes the events of a saving class.
    template <class Container>
    void Follow(Container& container) {
        container.SaveStatus = [this](std::int32_t item, std::int32_t total) { Step(item, total); };
        container.SaveComplete = [this](bool success) { Finish(success); };
    }
    void Step(std::int32_t item, std::int32_t total);
    void Finish(bool success);

private:
    void Draw() const;

    std::string label_;
    std::int32_t item_ = 0, total_ = 0;
    int drawn_ = -1;
};

}  // namespace tessaro::cli
