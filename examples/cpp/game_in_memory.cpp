// Opens, edits and saves a game that is held as bytes: no file is touched but the error log.
// usage: game_in_memory FOLDER
#include <tessaro/tessaro.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    using namespace tessaro;
    if (argc != 2) {
        std::cerr << "usage: game_in_memory FOLDER\n";
        return 2;
    }
    QuietUserInterface messages;  // what goes wrong is kept, and shown to nobody
    SetUserInterface(&messages);

    const auto files = std::make_shared<MemoryFiles>();
    for (const fs::directory_entry& entry : fs::directory_iterator(argv[1])) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream in(entry.path(), std::ios::binary);
        files->Set((fs::path("game") / entry.path().filename()).string(),
                   ByteArray(std::istreambuf_iterator<char>(in), {}));
    }

    clsVersion game;
    game.AppPath(fs::temp_directory_path().string());
    game.Files(files);
    clsGameMaps maps;
    bool done = game.LoadDataPath("game") && maps.Initialize();
    if (done) {
        game.BackupFolder("backup");
        done = maps.SetMapCode(0, 0, 1, 1, 7) && maps.SaveMapFile();
    }
    if (done)
        std::cout << game.GameMapsFile() << " now has " << files->Read(game.GameMapsFile()).size()
                  << " bytes; before it had "
                  << files->Read("backup" + game.GameMapsFile().substr(4) + ".001").size() << "\n";
    for (const typMessage& message : messages.Messages())
        std::cerr << message.Prompt << "\n";
    SetUserInterface(nullptr);
    return done ? 0 : 1;
}
