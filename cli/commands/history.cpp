// tessaro history, undo, redo, prune, recover FOLDER
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands/arguments.h"
#include "commands/commands.h"
#include "files.h"
#include "report.h"
#include "tessaro/tessaro.h"

namespace tessaro::cli {

namespace {

struct Options {
    std::string folder, backup;
    std::optional<int> to;
    int keep = 0;
    bool discard = false;
};

std::shared_ptr<Options> AddPlace(CLI::App& command) {
    auto options = std::make_shared<Options>();
    AddFolder(command, options->folder);
    command.add_option("--backup", options->backup, "Folder of the backups [FOLDER/backup]");
    return options;
}

clsHistory HistoryOf(const Options& options) {
    return clsHistory(options.backup.empty() ? PathIn(options.folder, "backup") : options.backup,
                      options.folder);
}

void TellNotices(const clsHistory& history) {
    for (const std::string& notice : history.Notices())
        Note(notice);
}

const char* NameOf(enmSaveKind kind) {
    return kind == skSave ? "save" : kind == skUndo ? "undo" : "redo";
}

void ShowHistory(const Options& options) {
    clsHistory history = HistoryOf(options);
    const std::vector<typSave> saves = history.Saves();
    TellNotices(history);
    const int state = saves.empty() ? 0 : history.State();
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const typSave& save : saves) {
        nlohmann::ordered_json entry{{"number", save.Number},       {"kind", NameOf(save.Kind)},
                                     {"leadsTo", save.LeadsTo},     {"date", save.Date},
                                     {"backup", save.BackupNumber}, {"items", save.Items}};
        std::string names;
        for (const typSavedFile& file : save.Files) {
            names += (names.empty() ? "" : ", ") + OneLine(file.Path);
            nlohmann::ordered_json told{{"path", file.Path}};
            if (file.Existed)
                told["backup"] = file.Backup, told["oldBytes"] = file.OldSize;
            if (file.Exists && file.NewSize >= 0)
                told["newBytes"] = file.NewSize, told["newChecksum"] = file.NewChecksum;
            entry["files"].push_back(std::move(told));
        }
        if (!TheManner().json)
            std::cout << (save.LeadsTo == state ? '*' : ' ') << std::setw(5) << save.Number << "  "
                      << std::left << std::setw(20) << save.Date << std::right << "  "
                      << NameOf(save.Kind)
                      << (save.Kind == skSave ? "" : " to " + std::to_string(save.LeadsTo)) << "  "
                      << names << '\n';
        for (const std::string& item : save.Items) {
            if (!TheManner().json)
                std::cout << std::string(30, ' ') << OneLine(item) << '\n';
        }
        all.push_back(std::move(entry));
    }
    if (TheManner().json)
        std::cout << all.dump(1, ' ', true, nlohmann::json::error_handler_t::replace) << '\n';
}

void TellState(clsHistory& history, bool done, const Options& options) {
    if (!done)
        Fail(options.folder);
    TellNotices(history);
    Say(options.folder + ": state " + std::to_string(history.State()));
}

void RunUndo(const Options& options) {
    clsHistory history = HistoryOf(options);
    TellState(history, options.to ? history.UndoTo(*options.to) : history.Undo(), options);
}

void RunRedo(const Options& options) {
    clsHistory history = HistoryOf(options);
    TellState(history, history.Redo(), options);
}

void RunPrune(const Options& options) {
    clsHistory history = HistoryOf(options);
    const int count = history.Prune(options.keep);
    if (count < 0)
        Fail(options.folder);
    TellNotices(history);
    Say(options.folder + ": backups of " + std::to_string(count) + " saves removed");
}

void RunRecover(const Options& options) {
    clsHistory history = HistoryOf(options);
    const enmRecovery found = history.Recover(options.folder);
    if (found == rcFailed)
        Fail(options.folder);
    const bool stuck = found == rcStuck || found == rcUnreadable;
    if (!stuck || !options.discard) {
        const std::string told =
            history.Notices().empty() ? "no interrupted save" : history.Notices().front();
        if (stuck || found == rcBusy)
            throw CommandError(found == rcBusy ? options.folder + ": a save is under way" : told);
        Say(options.folder + ": " + told);
        return;
    }
    std::vector<std::string> paths;
    if (!history.Discard(options.folder, paths))
        Fail(options.folder);
    for (const std::string& path : paths)
        Say("set aside: " + path);
}

}  // namespace

void AddHistory(CLI::App& command) {
    auto options = AddPlace(command);
    AddJson(command, "One JSON array instead of a table; errors as JSON too");
    command.callback([options] { ShowHistory(*options); });
}

void AddUndo(CLI::App& command) {
    auto options = AddPlace(command);
    command.add_option("--to", options->to,
                       "The state to go to: a save's number, from the history");
    command.callback([options] { RunUndo(*options); });
}

void AddRedo(CLI::App& command) {
    auto options = AddPlace(command);
    command.callback([options] { RunRedo(*options); });
}

void AddPrune(CLI::App& command) {
    auto options = AddPlace(command);
    AddNumber(command, "--keep", options->keep, 0, 999'999, "How many of the newest saves stay")
        ->required();
    command.callback([options] { RunPrune(*options); });
}

void AddRecover(CLI::App& command) {
    auto options = AddPlace(command);
    command.add_flag("--discard", options->discard,
                     "Set a journal that cannot be followed aside, in the backup folder");
    command.callback([options] { RunRecover(*options); });
}

}  // namespace tessaro::cli
