// The commands: one table, from which the command line, the help, the reference, the manual page
// and the completion of a shell come.
#pragma once

#include <CLI/CLI.hpp>
#include <span>
#include <string>
#include <vector>

#include "items/item.h"

namespace tessaro::cli {

struct Command {
    const char* name;                ///< "map set" is `set` below the group `map`
    const char* summary;             ///< one line
    void (*add)(CLI::App& command);  ///< adds the arguments and what runs; null for a group
};

/// Every command, a group before what stands below it.
std::span<const Command> Commands();

/// Adds the commands of the table, and to each the options that all have.
void AddCommands(CLI::App& app);

/// What all the command's documents say about its commands, from the table and the arguments.
enum class Document { Manual, Completion, Reference };
std::string Generate(const CLI::App& app, Document document);

// What the rows of the table add.
void AddInfo(CLI::App& command);
void AddList(CLI::App& command);
void AddRender(CLI::App& command);
void AddSheet(CLI::App& command);
void AddCheck(CLI::App& command);
void AddExtract(CLI::App& command);
void AddImport(CLI::App& command);
void AddMapExport(CLI::App& command);
void AddMapImport(CLI::App& command);
void AddMapConvert(CLI::App& command);
void AddMapResize(CLI::App& command);
void AddMapAdd(CLI::App& command);
void AddMapRemove(CLI::App& command);
void AddMapRename(CLI::App& command);
void AddMapSet(CLI::App& command);
void AddMapFill(CLI::App& command);
void AddMapLine(CLI::App& command);
void AddMapCopy(CLI::App& command);
void AddMapPaste(CLI::App& command);
void AddMapReplace(CLI::App& command);
void AddMapFind(CLI::App& command);
void AddMapStats(CLI::App& command);
void AddText(CLI::App& command);
void AddPaletteConvert(CLI::App& command);
void AddHistory(CLI::App& command);
void AddUndo(CLI::App& command);
void AddRedo(CLI::App& command);
void AddPrune(CLI::App& command);
void AddRecover(CLI::App& command);
void AddSample(CLI::App& command);

}  // namespace tessaro::cli
