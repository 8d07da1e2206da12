// The options that fill in an iPhone map file, and the format and tag that go with an export.
#pragma once

#include <optional>
#include <string>

#include "game.h"
#include "map_formats.h"

namespace tessaro::cli {

struct ExportOptions {
    std::optional<enmMapFileType> format;
    std::string par, floor, ceiling, tag;
    bool noNames = false;

    void AddTo(CLI::App& command);
    /// Hands the settings to the form; fails with a UsageError for a value that makes no sense.
    void Apply(clsGameMaps& maps) const;
    /// The format asked for, otherwise the one of the file's extension, otherwise KZR.
    const MapFormat& FormatFor(const std::string& file) const;
};

}  // namespace tessaro::cli
