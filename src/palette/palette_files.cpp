#include "palette/palette_files.h"

#include <string>

#include "palette/text_palettes.h"
#include "platform/file.h"

namespace tessaro {
namespace {

std::string_view AsText(ByteSpan bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool NameEndsIn(std::string_view name, std::string_view extension) {
    return name.size() >= extension.size() &&
           SameName(name.substr(name.size() - extension.size()), extension);
}

//  offset   width     field
//  0        4, 4      "RIFF", 1044
//  8        8         "PAL data"
//  16       4         1032: four more than the colours need, and so many are written; it is meant
//  20       2, 2      version 768, number of colours 256
//  24       4 each    red, green, blue, 0
//  1048     4         0
ByteArray WriteRiffPalette(ByteSpan palette) {
    ByteWriter out;
    out.Text("RIFF");
    out.U32(1044);
    out.Text("PAL data");
    out.U32(1032);
    out.U16(768);
    out.U16(256);
    for (std::size_t i = 0; i < kPaletteSize; i += 3) {
        out.Bytes(palette.subspan(i, 3));
        out.U8(0);
    }
    out.U32(0);
    return out.Release();
}

/// Palettes of fewer colours leave the others black.
std::optional<ByteArray> ReadRiffPalette(ByteSpan file) {
    ByteReader in(file);
    in.Seek(8);
    if (in.Text(8) != "PAL data")
        return {};
    in.Skip(6);
    const std::size_t count = in.U16();
    if (count == 0 || count > kPaletteSize / 3)
        return {};
    ByteArray palette;
    for (std::size_t i = 0; i < count; ++i) {
        const ByteSpan color = in.Take(3);
        palette.insert(palette.end(), color.begin(), color.end());
        in.Skip(1);
    }
    palette.resize(kPaletteSize);
    return palette;
}

// An object module of eight records: type, 16-bit length, contents, checksum. The checksums of the
// module header (0), the public definition (FF) and the data (E6, whatever the palette) are fixed,
// as the games' own file has them: linkers do not check them.
ByteArray WriteObjectPalette(ByteSpan palette) {
    using namespace std::string_view_literals;
    ByteWriter out;
    out.Text("\x80\x0E\0\x0CGAMEPAL.BIN \0"sv);          // module header
    out.Text("\x88\x0F\0\0\0MakeOBJ v1\x2E\x31\xEA"sv);  // comment
    out.Text("\x96\x28\0"sv);                            // names 1 to 7
    for (std::string_view name : {"DGROUP", "_DATA", "DATA", "", "_TEXT", "CODE", "FAR_DATA"}) {
        out.U8(static_cast<std::uint8_t>(name.size()));
        out.Text(name);
    }
    out.U8(0xAD);
    out.Text("\x98\x07\0\x48\0\x03\x02\x03\x04\x0D"sv);      // segment of 768 bytes
    out.Text("\x9A\x04\0\x01\xFF\x01\x61"sv);                // group
    out.Text("\x90\x0F\0\x01\x01\x08_gamepal\0\0\0\xFF"sv);  // public name
    out.Text("\xA0\x04\x03\x01\0\0"sv);                      // data: 772 bytes
    for (std::uint8_t value : palette)
        out.U8(static_cast<std::uint8_t>(value >> 2));
    out.U8(0xE6);
    out.Text("\x8A\x02\0\0\x74"sv);  // module end
    return out.Release();
}

}  // namespace

ByteArray WritePaletteFile(enmSupportedPaletteTypes type, ByteSpan palette) {
    if (palette.size() != kPaletteSize)
        throw Failure(kInvalidProcedureCall);
    switch (type) {
        case ptJASC3:
            return WriteJascPalette(palette);
        case ptJASC8:
            return WriteRiffPalette(palette);
        case ptXWE:
            return ByteArray(palette.begin(), palette.end());
        case ptGAMEPAL:
            return WriteObjectPalette(palette);
        case ptWolf4GW:
            return WriteSourceArray(palette);
        case ptWolf4SDL:
            return WriteRgbList(palette);
        case ptUnknown:
            break;
    }
    throw Failure(kInvalidProcedureCall);
}

enmSupportedPaletteTypes DetectPaletteType(std::string_view fileName, ByteSpan file) {
    if (NameEndsIn(fileName, ".CPP"))
        return ptWolf4GW;
    if (NameEndsIn(fileName, ".INC"))
        return ptWolf4SDL;
    if (AsText(file).starts_with("JASC"))
        return ptJASC3;
    if (AsText(file).starts_with("RIFF"))
        return ptJASC8;
    return ptUnknown;
}

std::optional<ByteArray> ReadPaletteFile(enmSupportedPaletteTypes type, ByteSpan file) {
    switch (type) {
        case ptJASC3:
            return ReadJascPalette(AsText(file));
        case ptJASC8:
            return ReadRiffPalette(file);
        case ptWolf4GW:
            return ReadSourceArray(AsText(file));
        case ptWolf4SDL:
            return ReadRgbList(AsText(file));
        default:
            return {};
    }
}

}  // namespace tessaro
