#include "tessaro/palette.h"

#include <algorithm>

#include "foundation/guard.h"
#include "foundation/store.h"
#include "palette/builtin_palettes.h"
#include "palette/palette_files.h"
#include "palette/text_palettes.h"
#include "platform/file.h"
#include "platform/system.h"

namespace tessaro {
namespace {

void SetCurrentPalette(ByteSpan palette) {
    ByteReader in(palette);
    for (std::int32_t& color : SharedStore().palette)
        color = static_cast<std::int32_t>(in.U24());  // red comes first: the low byte
}

ByteArray CurrentPalette() {
    ByteWriter out;
    for (std::int32_t color : SharedStore().palette)
        out.U24(static_cast<std::uint32_t>(color));
    return out.Release();
}

std::int32_t& ColorAt(std::int32_t number) {
    auto& palette = SharedStore().palette;
    if (number < 0 || number >= static_cast<std::int32_t>(palette.size()))
        throw Failure(kSubscriptOutOfRange);
    return palette[static_cast<std::size_t>(number)];
}

/// Makes the palette of a file the current one.
/// @return False after a failure that the user has been told.
bool UsePaletteFile(clsPalette& reader, const std::string& file) {
    return Guarded("clsPalette.UsePaletteFile", [&] {
        ByteArray palette;
        if (!reader.LoadPaletteDataFromFile(file, palette))
            return false;
        SetCurrentPalette(palette);
        return true;
    });
}

void Refuse(const std::string& prompt, const std::string& title = {}) {
    CurrentUserInterface().MsgBox(prompt, mbOKOnly | mbExclamation, title, {}, 0);
}

}  // namespace

bool clsPalette::CreatePaletteFileData(enmSupportedPaletteTypes FileType, const ByteArray& PalBytes,
                                       ByteArray& OutBytes) {
    return Guarded("clsPalette.CreatePaletteFileData", [&] {
        OutBytes = WritePaletteFile(FileType, PalBytes);
        return true;
    });
}

bool clsPalette::LoadPaletteDataFromFile(const std::string& FileName, ByteArray& PalBytes,
                                         enmSupportedPaletteTypes* FileType) {
    return Guarded("clsPalette.LoadPaletteDataFromFile", [&] {
        const ByteArray file = ReadWholeFile(FileName);
        if (file.empty()) {
            Refuse("File is 0 bytes in length.", "Empty file");
            return false;
        }
        const enmSupportedPaletteTypes type = DetectPaletteType(FileName, file);
        if (type == ptUnknown) {
            Refuse("Unknown palette file format!");
            throw Failure(0, "Unknown file format");
        }
        auto palette = ReadPaletteFile(type, file);
        if (!palette) {
            Refuse("Error reading file.  Unexpected format");
            return false;
        }
        PalBytes = *std::move(palette);
        if (FileType)
            *FileType = type;
        return true;
    });
}

std::int32_t clsPalette::Color(std::int32_t ColorNum) const {
    return Guarded("clsPalette.Color", [&] { return std::int32_t{ColorAt(ColorNum)}; });
}

void clsPalette::Color(std::int32_t ColorNum, std::int32_t NewValue) {
    Guarded("clsPalette.Color", [&] { ColorAt(ColorNum) = NewValue & 0xFFFFFF; });
}

void clsPalette::LoadPalette(const std::string& NewPaletteFile) {
    Guarded("clsPalette.LoadPalette", [&] {
        if (NewPaletteFile.empty())
            SetCurrentPalette(BuiltInPalette(ConfiguredGame().extension));
        else if (!UsePaletteFile(*this, NewPaletteFile))
            return;
        SharedStore().paletteFile = NewPaletteFile;
    });
}

std::int32_t clsPalette::NumberOfColors() const {
    return static_cast<std::int32_t>(SharedStore().palette.size());
}

std::string clsPalette::JASCPalette() const {
    return Guarded("clsPalette.JASCPalette", [&] {
        const ByteArray text = WriteJascPalette(CurrentPalette());
        return std::string(text.begin(), text.end());
    });
}

void clsPalette::JASCPalette(const std::string& NewValue) {
    Guarded("clsPalette.JASCPalette", [&] {
        const auto palette = ReadJascPalette(NewValue);
        if (!palette)
            throw Failure(kInvalidProcedureCall);
        SetCurrentPalette(*palette);
    });
}

std::string clsPalette::PaletteFile() const {
    return Guarded("clsPalette.PaletteFile", [&] { return SharedStore().paletteFile; });
}

}  // namespace tessaro
