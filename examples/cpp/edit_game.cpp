// Changes a cell and a wall of the game in a folder, saves, and reads both back.
#include <tessaro/tessaro.h>

#include <filesystem>
#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: edit_game FOLDER\n";
        return 2;
    }
    const std::string folder = argv[1];

    tessaro::clsVersion game;
    if (!game.LoadDataPath(folder)) {
        std::cerr << "No game in " << folder << "\n";
        return 1;
    }
    game.OutputFolder(folder);
    game.BackupFolder((std::filesystem::path(folder) / "backup").string());
    game.CompileExtension(game.Extension());

    // The cell two to the right and two below the top left corner becomes a wall of kind 5.
    tessaro::clsGameMaps maps;
    if (!maps.Initialize())
        return 1;
    for (std::int32_t map = 0; map < maps.NumberOfMaps(); ++map)
        std::cout << "Map " << map << ": " << maps.MapName(map).c_str() << "\n";
    if (!maps.SetMapCode(0, 0, 2, 2, 5) || !maps.SaveMapFile())
        return 1;

    // A frame of colour 15 around the first wall. The pixels of its BMP image are its last 4096
    // bytes.
    tessaro::clsVSwap pages;
    tessaro::ByteArray image;
    if (!pages.Initialize() || !pages.LoadWall(0, image) || image.size() < 4096)
        return 1;
    std::uint8_t* pixels = image.data() + image.size() - 4096;
    for (int i = 0; i < 64; ++i)
        pixels[i] = pixels[63 * 64 + i] = pixels[i * 64] = pixels[i * 64 + 63] = 15;
    pages.SetChunkData(0, image);
    pages.SaveStatus = [](std::int32_t chunk, std::int32_t total) {
        if (chunk == total)
            std::cout << total << " pages written\n";
    };
    if (!pages.SaveVSwap(tessaro::vcGood))
        return 1;

    // New containers read what is on the disk.
    tessaro::clsGameMaps savedMaps;
    tessaro::typMapPlane planes;
    std::int32_t width = 0, height = 0;
    tessaro::clsVSwap savedPages;
    tessaro::ByteArray savedImage;
    const bool saved = savedMaps.Initialize() && savedMaps.LoadMap(0, planes, width, height) &&
                       savedPages.Initialize() && savedPages.LoadWall(0, savedImage) &&
                       planes.Plane[0].Grid[static_cast<std::size_t>(2 * width + 2)] == 5 &&
                       savedImage == image;
    std::cout << (saved ? "Saved\n" : "The edit was lost\n");
    return saved ? 0 : 1;
}
