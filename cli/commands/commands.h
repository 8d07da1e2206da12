// The commands: each adds itself to the command line and runs when it is called.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "items/item.h"

namespace tessaro::cli {

void AddInfo(CLI::App& app);
void AddList(CLI::App& app);
void AddRender(CLI::App& app);
void AddSheet(CLI::App& app);
void AddExtract(CLI::App& app);
void AddImport(CLI::App& app);
void AddMap(CLI::App& app);
void AddText(CLI::App& app);
void AddPalette(CLI::App& app);
void AddSample(CLI::App& app);

// The commands below `map`.
void AddMapExport(CLI::App& map);
void AddMapImport(CLI::App& map);
void AddMapConvert(CLI::App& map);
void AddMapEdits(CLI::App& map);

/// The FOLDER that nearly every command starts with.
void AddFolder(CLI::App& command, std::string& folder);
/// --kind K, as often as wanted.
void AddKinds(CLI::App& command, std::vector<std::string>& names);
/// The kinds of those names, all kinds for none.
std::vector<const ItemKind*> KindsNamed(const std::vector<std::string>& names);

/// The options that fill in an iPhone map file, and the format and tag that go with an export.
struct ExportOptions {
    std::string formatName, par, floor, ceiling, tag;
    bool noNames = false;

    void AddTo(CLI::App& command);
    /// Hands the settings to the form; fails with a UsageError for a value that makes no sense.
    void Apply(clsGameMaps& maps) const;
    /// The format asked for, otherwise the one of the file's extension, otherwise KZR.
    enmMapFileType FormatFor(const std::string& file) const;
};

/// "KZR", for people.
std::string FormatName(enmMapFileType type);
/// Whether a file of this extension can take several maps.
bool HoldsManyMaps(const std::string& file);

/// A failure that does not end the command: its line goes to stderr at once, and the exit code will
/// be 1.
void ReportAndGoOn(const std::string& message);
bool AnythingReported();

}  // namespace tessaro::cli
