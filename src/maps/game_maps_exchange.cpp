// The operations of clsGameMaps that read and write the files of other editors and games.
#include <algorithm>
#include <iterator>
#include <limits>

#include "foundation/guard.h"
#include "foundation/names.h"
#include "maps/exchange/exchange_format.h"
#include "maps/exchange/iphone_map.h"
#include "maps/exchange/rott.h"
#include "maps/game_maps_self.h"
#include "platform/system.h"
#include "saving/save_set.h"
#include "saving/transaction.h"

namespace tessaro {
namespace {

using Self = GameMapsInternals::Self;

/// As Guarded, for bodies that may refuse: a refusal is told in its own box.
template <class Body, class Result = std::invoke_result_t<Body&>>
Result GuardedExchange(std::string_view procedure, Body&& body) {
    return Guarded(procedure, [&]() -> Result {
        try {
            return body();
        } catch (const Refusal& refusal) {
            if (!refusal.procedure.empty())
                Report(refusal.procedure, refusal);
            CurrentUserInterface().MsgBox(refusal.prompt, refusal.style, refusal.title, "", 0);
            return {};
        }
    });
}

ExchangeSettings SettingsOf(const Self& self, bool exportNames = true) {
    return {.exportNames = exportNames,
            .planes = self.outputMapPlanes,
            .nameSize = self.outputMapNameSize,
            .rlewTag = self.compileRlewTag,
            .readTags = self.tags,
            .writeTags = self.compileTags};
}

/// Replaces a file, or makes it, complete or not at all.
void PutFile(const Self& self, const std::string& path, ByteSpan content) {
    ShowNotices(ReplaceOneFile(*self.GameOf().files, PathFromHost(path), content));
}

bool IsThere(const Self& self, const std::string& path) {
    return self.GameOf().files->Kind(PathFromHost(path)).has_value();
}

// --- export -------------------------------------------------------------------------------------

/// A map in memory as the formats take it.
ForeignMap MapForExport(Self& self, std::int32_t mapNum, std::size_t slot) {
    const MapItem& item = self.MapAt(mapNum);
    return {.name = item.record.name,
            .width = item.record.width,
            .height = item.record.height,
            .planes = item.planes,
            .slot = Narrow<std::int32_t>(slot)};
}

std::string Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

/// What the form starts from: the settings of an earlier file, or those for a new one (null).
iPhoneMapSettings LoadIPhoneMapSettings(const ByteArray* earlier, const ForeignMap& map,
                                        std::uint16_t tag) {
    return earlier ? ReadIPhoneSettings(*earlier)
                   : DefaultIPhoneSettings(Trimmed(NameBeforeZero(*map.name)), tag);
}

void SaveIPhoneMapFile(const Self& self, const std::string& fileName,
                       const iPhoneMapSettings& settings, CarmackTags tags) {
    PutFile(self, fileName, WriteIPhoneMap(settings, tags));
}

/// Asks for the settings, starting from those of an earlier file (null without one), and writes the
/// file. False when the user cancels.
bool ExportToIPhone(Self& self, std::int32_t mapNum, const std::string& fileName,
                    const ByteArray* earlier) {
    const ForeignMap map = MapForExport(self, mapNum, 0);
    iPhoneMapSettings settings =
        LoadIPhoneMapSettings(earlier, map, static_cast<std::uint16_t>(self.compileRlewTag));
    IPhonePlaneBytes(map.width, map.height);  // refused before the user fills in a form for nothing
    settings.Width = Narrow<std::uint16_t>(map.width);
    settings.Height = Narrow<std::uint16_t>(map.height);
    for (std::size_t plane = 0; plane < kIPhonePlanes; ++plane) {
        ByteWriter cells;
        WriteCells(cells, map, plane);
        settings.Planes.push_back(cells.Release());
    }
    frmIPhoneSettings form;
    form.LoadSettings(settings);
    form.ShowModal();
    if (!form.PressedOK())
        return false;
    SaveIPhoneMapFile(self, fileName, form.Settings(), self.compileTags);
    return true;
}

/// The format that an extension stands for in an export of several maps; null for any other.
const ExchangeFormat* FormatOfExtension(const std::string& fileName) {
    const std::string extension =
        UpperCase(fileName.substr(fileName.size() - std::min<std::size_t>(fileName.size(), 4)));
    if (extension == ".LVL")
        return &kFloEditFormat;
    if (extension == ".MAP")
        return &kKzrFormat;
    if (extension == ".RTL")
        return &kRottRtlFormat;
    if (extension == ".RTC")
        return &kRottRtcFormat;
    return nullptr;
}

struct ExportList {
    std::vector<ForeignMap> maps;
    bool complete = true;        ///< no map had to be left out
    bool sizeForFloEdit = true;  ///< collecting ends at the first map of another size
};

ExportList CollectMaps(Self& self, const std::vector<std::int32_t>& mapArray,
                       const ExchangeFormat& format) {
    ExportList list;
    for (std::size_t i = 0; i < mapArray.size(); ++i) {
        try {
            self.BringIn(mapArray[i]);
        } catch (...) {
            Report(CurrentProcedure("clsGameMaps.LoadMap"), CurrentFailure());
            Report("clsGameMaps.ExportMultiMap",
                   Failure(kMapExportFailure, "Error loading map data for file export"));
            list.complete = false;
            continue;
        }
        list.maps.push_back(MapForExport(self, mapArray[i], i));
        const ForeignMap& map = list.maps.back();
        if (&format == &kFloEditFormat && (map.width != 64 || map.height != 64)) {
            list.sizeForFloEdit = false;
            break;
        }
    }
    return list;
}

bool AgreesToOverwrite(const Self& self, const std::string& path) {
    return !IsThere(self, path) ||
           CurrentUserInterface().MsgBox(
               modGlobal::FileNameFromPath(path, false) + " already exists. Overwrite?", mbYesNo,
               "Overwrite File Confirmation", "", 0) == mrYes;
}

// --- import -------------------------------------------------------------------------------------

std::vector<ForeignMap> ReadMapFile(const Self& self, const std::string& fileName) {
    return ReadForeignMaps(self.GameOf().files->Read(PathFromHost(fileName)),
                           modGlobal::FileNameFromPath(fileName, false), SettingsOf(self));
}

/// Gives every map as many planes as the set has. Returns how many the file has.
std::size_t FitPlanes(std::vector<ForeignMap>& maps, std::int16_t planes) {
    std::size_t most = 0;
    for (ForeignMap& map : maps) {
        auto& own = map.planes.Plane;
        most = std::max(most, own.size());
        const std::size_t cells = PlaneCells(map.width, map.height);
        if (cells * Narrow<std::size_t>(planes) > static_cast<std::size_t>(kMostMapCells))
            throw Failure(kOutOfMemory);
        own.resize(Narrow<std::size_t>(planes));
        for (typMapGrid& plane : own)
            plane.Grid.resize(cells);
    }
    return most;
}

void TellUnusedPlanes(std::size_t filePlanes, std::int16_t setPlanes) {
    if (!std::cmp_greater(filePlanes, setPlanes))
        return;
    CurrentUserInterface().MsgBox("This file has maps that contain " + std::to_string(filePlanes) +
                                      " map planes and this project is set up to use " +
                                      std::to_string(setPlanes) +
                                      " planes.  The unused planes were not loaded",
                                  mbInformation, "Map Planes", "", 0);
}

bool AgreesToAddMaps(std::int32_t current, std::int32_t end) {
    return CurrentUserInterface().MsgBox(
               "Importing this map file will result in maps being added.\r\n\r\n"
               "Current map count: " +
                   std::to_string(current) + "\r\n\r\nEnd map count: " + std::to_string(end) +
                   "\r\nContinue?",
               mbYesNo | mbQuestion, "Add Map Confirmation", "", 0) == mrYes;
}

}  // namespace

bool clsGameMaps::ExportMap(std::int32_t MapNum, const std::string& FileName, bool ExportNames,
                            enmMapFileType& FileType) {
    return GuardedExchange("clsGameMaps.ExportMap", [&] {
        self_->BringIn(MapNum);
        ByteArray existing;
        const ExchangeFormat* kept = nullptr;
        if (IsThere(*self_, FileName)) {
            existing = self_->GameOf().files->Read(PathFromHost(FileName));
            kept = DetectMapFileType(existing, modGlobal::FileNameFromPath(FileName, false));
            if (kept)
                FileType = kept->type;
        }
        if (FileType == mftiPhoneMapFile)
            return ExportToIPhone(*self_, MapNum, FileName, kept ? &existing : nullptr);
        const ExchangeFormat* format = FormatOfType(FileType);
        if (!format || !format->write)
            throw Refusal("Tried to save map to an unknown format", mbExclamation,
                          "Unknown format");
        const ForeignMap map = MapForExport(*self_, MapNum, 0);
        PutFile(*self_, FileName, format->write({&map, 1}, SettingsOf(*self_, ExportNames)));
        return true;
    });
}

bool clsGameMaps::ExportMultiMap(const std::vector<std::int32_t>& MapArray,
                                 const std::string& FileName, bool ExportNames) {
    return GuardedExchange("clsGameMaps.ExportMultiMap", [&] {
        std::string name = FileName;
        const ExchangeFormat* format = FormatOfExtension(name);
        if (!format) {  // an empty file where none stands, and True: that is meant
            if (!IsThere(*self_, name))
                PutFile(*self_, name, {});
            return true;
        }
        if ((format == &kRottRtlFormat || format == &kRottRtcFormat) &&
            MapArray.size() > kRottSlots)
            throw TooManyRottMaps();
        ExportList list = CollectMaps(*self_, MapArray, *format);
        if (!list.sizeForFloEdit) {
            name.replace(name.size() - 3, 3, "map");
            CurrentUserInterface().MsgBox(
                "FloEdit floor files do not support non-64x64 maps.  Saving as a KZR map files.",
                mbExclamation, "", "", 0);
            if (!AgreesToOverwrite(*self_, name))
                return false;
            format = &kKzrFormat;
            list = CollectMaps(*self_, MapArray, *format);
        }
        if (list.maps.empty()) {  // an empty file where none stands: that is meant
            if (!IsThere(*self_, name))
                PutFile(*self_, name, {});
            return list.complete;
        }
        PutFile(*self_, name, format->write(list.maps, SettingsOf(*self_, ExportNames)));
        return list.complete;
    });
}

bool clsGameMaps::ImportMap(std::int32_t MapNum, const std::string& FileName) {
    return GuardedExchange("clsGameMaps.ImportMap", [&] {
        self_->saving.RefuseChange();
        std::vector<ForeignMap> maps = ReadMapFile(*self_, FileName);
        const std::size_t filePlanes = FitPlanes(maps, self_->set.layout.planes);
        if (MapNum < 0)
            throw Failure(kSubscriptOutOfRange);
        if (maps.empty())
            return true;
        const auto end = Narrow<std::int32_t>(std::int64_t{MapNum} + std::ssize(maps));
        if (end > NumberOfMaps()) {
            if (!AgreesToAddMaps(NumberOfMaps(), end))
                return false;
            std::vector<MapItem> added(static_cast<std::size_t>(end - NumberOfMaps()),
                                       self_->NewMap());
            self_->set.maps.insert(self_->set.maps.end(), std::make_move_iterator(added.begin()),
                                   std::make_move_iterator(added.end()));
        }
        for (std::size_t i = 0; i < maps.size(); ++i) {
            ForeignMap& map = maps[i];
            MapItem& item = self_->MapAt(MapNum + static_cast<std::int32_t>(i));
            if (map.name)
                item.record.name = *std::move(map.name);
            self_->ReplacePlanes(item, Narrow<std::int16_t>(map.width),
                                 Narrow<std::int16_t>(map.height), std::move(map.planes));
            item.corruption = clNone;  // what was damaged is no longer there
        }
        TellUnusedPlanes(filePlanes, self_->set.layout.planes);
        return true;
    });
}

std::int32_t clsGameMaps::ImportMapsForClipboard(const std::string& FileName) {
    return GuardedExchange("clsGameMaps.ImportMapsForClipboard", [&] {
        std::vector<ForeignMap> maps = ReadMapFile(*self_, FileName);
        const std::size_t filePlanes = FitPlanes(maps, self_->set.layout.planes);
        std::vector<ClipboardMap> clipboard;
        for (ForeignMap& map : maps)
            clipboard.push_back(
                {std::move(map.name).value_or(""), map.width, map.height, std::move(map.planes)});
        self_->clipboard = std::move(clipboard);
        TellUnusedPlanes(filePlanes, self_->set.layout.planes);
        return Narrow<std::int32_t>(self_->clipboard.size());
    });
}

void clsGameMaps::GetClipboardMap(std::int32_t MapNum, typMapPlane& PlaneData, std::int32_t& Width,
                                  std::int32_t& Height, std::string& Name) {
    Guarded("clsGameMaps.GetClipboardMap", [&] {
        if (!std::in_range<std::size_t>(MapNum) ||
            static_cast<std::size_t>(MapNum) >= self_->clipboard.size())
            throw Failure(kSubscriptOutOfRange);
        ClipboardMap map = self_->clipboard[static_cast<std::size_t>(MapNum)];
        PlaneData = std::move(map.planes);
        Name = std::move(map.name);
        Width = map.width;
        Height = map.height;
    });
}

}  // namespace tessaro
