// Runs the built command.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/support.h"

namespace tessaro::test {

struct Ran {
    int exitCode = -1;
    std::string out, err;
};

/// Runs `tessaro` with these arguments and nothing on standard input. The user's state folder is
/// the one given; empty: one of this process.
Ran Tessaro(const std::vector<std::string>& arguments, const std::string& state = {});

/// The sample game in a folder of its own, which a test may change.
class SampleGame {
public:
    explicit SampleGame(bool ega = false);

    const std::string& Path() const { return folder_.Path(); }
    const TempFolder& Folder() const { return folder_; }

private:
    TempFolder folder_;
};

using Json = nlohmann::json;

/// `list --json` of the kinds given, all for none.
Json List(const std::string& game, const std::vector<std::string>& kinds = {});
/// One item of a list.
Json ItemOf(const std::string& game, const std::string& kind, int number);
/// The numbers of a kind's items that have data.
std::vector<int> Filled(const std::string& game, const std::string& kind);

}  // namespace tessaro::test
