#include "foundation/game.h"

#include "foundation/global.h"
#include "foundation/names.h"

namespace tessaro {

std::shared_ptr<const Finding> Game::Take(Finding finding) {
    auto kept = std::make_shared<const Finding>(std::move(finding));
    (*kept)(*this);
    std::erase_if(findings, [](const auto& other) { return other.expired(); });
    findings.push_back(kept);
    return kept;
}

void Game::TakeFindingsAgain() {
    for (const auto& finding : findings) {
        if (const auto kept = finding.lock())
            (*kept)(*this);
    }
}

std::string Game::OutputPath(const std::string& inputPath) const {
    if (outputFolder.empty())
        throw Failure(kPathNotFound, "No output folder is set.");
    if (compileExtension.empty())
        throw Failure(kBadFileNameOrNumber, "No compile extension is set.");
    return JoinPath(outputFolder,
                    modGlobal::FileNameFromPath(inputPath, true) + "." + compileExtension);
}

bool SameFolder(const Files& files, const std::string& a, const std::string& b) {
    const auto kindA = files.Kind(a), kindB = files.Kind(b);
    return kindA && kindB ? kindA->identity == kindB->identity : a == b;
}

}  // namespace tessaro
