#include "game.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <thread>

#include "commands/arguments.h"
#include "console.h"
#include "file_kinds.h"
#include "files.h"
#include "known/item_names.h"
#include "progress.h"
#include "report.h"

namespace tessaro::cli {

namespace fs = std::filesystem;

void SaveOptions::AddTo(CLI::App& command) {
    command.add_option("--output", output, "Write into DIR and leave the game as it is")
        ->type_name("DIR");
    command.add_option("--backup", backup, "Folder for the replaced files [backup, beside them]")
        ->type_name("DIR");
    AddYes(command);
}

void MapLayoutOptions::AddTo(CLI::App& command) {
    AddNumber(command, "--name-size", nameSize, 16, 1024,
              "Give map names this room; the game must be built for it");
    command.add_flag("--long-lengths", longLengths,
                     "Store lengths in 32 bits; the game must be built for it");
}

void MapLayoutOptions::Apply(clsGameMaps& maps) const {
    if (nameSize > 0)
        maps.OutputMapNameSize(static_cast<std::int16_t>(nameSize));
    if (longLengths)
        maps.SaveLengthsAsLong(true);
}

namespace {

/// The library names the file that it looked for last, which is the one that is missing.
std::string WhyIncomplete(const clsVersion& version) {
    for (const std::string& tried :
         {version.VGAHeaderFile(), version.VGAGraphFile(), version.VGADictFile(),
          version.VSwapFile(), version.AudioHeaderFile(), version.AudioDataFile(),
          version.MapHeaderFile(), version.GameMapsFile()})
        if (!tried.empty())
            return "no complete game: " + fs::path(tried).filename().string() + " is missing";
    return "no game: neither VGADICT.* nor EGADICT.* is there";
}

template <class Container>
Container& Opened(std::unique_ptr<Container>& slot, bool (Container::*open)(),
                  const std::string& what) {
    if (!slot) {
        auto container = std::make_unique<Container>();
        if (!(container.get()->*open)())
            Fail("cannot open " + what);
        slot = std::move(container);
    }
    return *slot;
}

}  // namespace

Game::Game(const std::string& folder) : folder_(folder) {
    while (folder_.size() > 1 && (folder_.back() == '/' || folder_.back() == '\\'))
        folder_.pop_back();
    std::error_code error;
    if (folder.empty())
        throw UsageError("FOLDER is empty; it names the folder with the game's files");
    if (!fs::is_directory(folder_, error))
        throw CommandError(folder + (fs::exists(folder_, error)
                                         ? " is not a folder; give the one that the file is in"
                                         : " is not a folder: there is nothing of that name"));
    version_.AppPath(StateFolder());
    if (!version_.LoadDataPath(folder_)) {
        if (TheConsole().HasFailure())
            Fail(folder);
        throw CommandError(folder + ": " + WhyIncomplete(version_));
    }
    palette_.LoadPalette();
    for (const std::string& file : DataFiles())
        Protect(file);
}

Game::~Game() = default;

std::vector<std::string> Game::DataFiles() const {
    std::vector<std::string> files;
    for (const std::string& file :
         {version_.MapHeaderFile(), version_.GameMapsFile(), version_.VSwapFile(),
          version_.VGADictFile(), version_.VGAHeaderFile(), version_.VGAGraphFile(),
          version_.AudioHeaderFile(), version_.AudioDictFile(), version_.AudioDataFile(),
          version_.AudioMusFile()})
        if (!file.empty())
            files.push_back(file);
    return files;
}

ItemNames& Game::Names() {
    if (!names_)
        names_ = std::make_unique<ItemNames>(*this);
    return *names_;
}

clsGameMaps& Game::Maps() {
    return Opened(maps_, &clsGameMaps::Initialize, "the maps of " + folder_);
}

clsVSwap& Game::Pages() {
    if (!HasPages())
        throw CommandError(folder_ + ": this game has no page file");
    return Opened(pages_, &clsVSwap::Initialize, version_.VSwapFile());
}

clsVGAGraph& Game::Graphics() {
    return Opened(graphics_, &clsVGAGraph::InitializeGraphics, "the graphics of " + folder_);
}

clsAudioT& Game::Audio() {
    return Opened(audio_, &clsAudioT::InitializeMusic, "the audio of " + folder_);
}

void Game::PrepareSave(const SaveOptions& options) {
    const std::string output = options.output.empty() ? folder_ : options.output;
    const std::string backup = options.backup.empty() ? PathIn(output, "backup") : options.backup;
    CreateFolders(output);
    if (const fs::path parent = fs::path(backup).parent_path(); !parent.empty())
        CreateFolders(parent.string());
    version_.OutputFolder(output);
    version_.BackupFolder(backup);
    version_.CompileExtension(version_.Extension());
}

void Game::SaveMaps(const SaveOptions& options) {
    PrepareSave(options);
    if (!options.output.empty())
        MoveMapsTo(options.output);
    ProgressBar bar("saving maps");
    bar.Follow(Maps());
    if (!Maps().SaveMapFile())
        Fail("the maps were not saved");
}

/// Maps are saved in place, so that the pair is copied first and the copy becomes the place. What
/// stands there under the same names moves to the backup folder.
void Game::MoveMapsTo(const std::string& output) {
    const std::array<fs::path, 2> from = {version_.GameMapsFile(), version_.MapHeaderFile()};
    std::array<fs::path, 2> to;
    for (std::size_t i = 0; i < 2; ++i)
        to[i] = fs::path(output) / from[i].filename();
    try {
        if (fs::equivalent(output, folder_))
            return;
        const fs::path backup = version_.BackupFolder();
        const auto backupOf = [&](const fs::path& file, int number) {
            return backup / (file.filename().string() + "." + Padded(number, 3));
        };
        int number = 1;
        while (fs::exists(backupOf(to[0], number)) || fs::exists(backupOf(to[1], number)))
            ++number;
        for (std::size_t i = 0; i < 2; ++i) {
            if (fs::exists(to[i])) {
                fs::create_directory(backup);
                fs::rename(to[i], backupOf(to[i], number));
            }
            fs::copy_file(from[i], to[i]);
        }
    } catch (const fs::filesystem_error& failure) {
        throw CommandError(std::string("cannot copy the map files: ") + failure.what());
    }
    version_.GameMapsFile(to[0].string());
    version_.MapHeaderFile(to[1].string());
}

void Game::SavePages(const SaveOptions& options, enmVSWAPCompression compression) {
    PrepareSave(options);
    ProgressBar bar("saving the page file");
    bar.Follow(Pages());
    if (!Pages().SaveVSwap(compression))
        Fail("the page file was not saved");
}

void Game::SaveGraphics(const SaveOptions& options) {
    PrepareSave(options);
    ProgressBar bar("saving graphics");
    bar.Follow(Graphics());
    if (!Graphics().SaveVGAGraph())
        Fail("the graphics were not saved");
}

void Game::SaveAudio(const SaveOptions& options) {
    PrepareSave(options);
    ProgressBar bar("saving audio");
    bar.Follow(Audio());
    if (!Audio().SaveAudioT())
        Fail("the audio was not saved");
}

void WithOtherGame(const std::string& folder, const std::function<void(Game&)>& work) {
    std::exception_ptr failure;
    std::thread([&] {
        SetUserInterface(&TheConsole());  // whose own thread waits
        try {
            Game other(folder);
            work(other);
        } catch (...) {
            failure = std::current_exception();
        }
        SetUserInterface(nullptr);
    }).join();
    if (failure)
        std::rethrow_exception(failure);
}

std::string DisplayName(const clsGameMaps& maps, int map) {
    std::string name = maps.MapName(map);
    name.resize(std::min(name.size(), name.find('\0')));
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

void CheckNumber(const char* what, int number, int count, int first) {
    if (number >= first && number < first + count)
        return;
    std::string message = "there is no " + std::string(what) + " " + std::to_string(number);
    if (count > 0)
        message += " (they run from " + std::to_string(first) + " to " +
                   std::to_string(first + count - 1) + ")";
    throw CommandError(message);
}

}  // namespace tessaro::cli
