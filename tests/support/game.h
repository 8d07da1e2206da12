// Whole games in a folder of their own: the sample game, or a copy of a real one.
#pragma once

#include "sample/sample.h"
#include "support/support.h"
#include "tessaro/version.h"

namespace tessaro::test {

inline void WriteFiles(const TempFolder& folder, const std::vector<sample::SampleFile>& files) {
    for (const sample::SampleFile& file : files)
        folder.Write(file.name, file.content);
}

class GameInFolder : public InFolder {
protected:
    void TearDown() override {
        for (const ShownBox& box : ui_.boxes)
            ADD_FAILURE() << box.prompt;
    }

    /// Writes a game and opens it.
    void Open(const std::vector<sample::SampleFile>& files) {
        WriteFiles(folder_, files);
        Open();
    }
    /// Opens the game in the folder. Saves go over it.
    void Open() {
        version_.AppPath(folder_.Path());
        ASSERT_TRUE(version_.LoadDataPath(folder_.Path()));
        version_.OutputFolder(folder_.Path());
        version_.BackupFolder(folder_.File("backup"));
        version_.CompileExtension(version_.Extension());
    }

    clsVersion version_;
};

/// Skipped where there is no real game.
class RealGame : public GameInFolder {
protected:
    void SetUp() override {
        TESSARO_NEEDS_GAME_DATA();
        for (const std::string& name : ListFiles(*GameFolder(), "*.WL1"))
            CopyFileTo(JoinPath(*GameFolder(), name), folder_.File(name));
        Open();
    }

    static ByteArray Original(const std::string& name) {
        return ReadWholeFile(JoinPath(*GameFolder(), name));
    }
};

}  // namespace tessaro::test
