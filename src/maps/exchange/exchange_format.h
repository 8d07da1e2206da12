// The exchange files: what a format is, the table of them all, and telling them apart.
//
// A new format is one file that defines its ExchangeFormat (reader and writer side by side) and one
// row of the table in exchange_format.cpp. docs/exchange-files.md draws every layout.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "maps/carmack.h"
#include "maps/exchange/foreign_map.h"
#include "tessaro/user_interface.h"

namespace tessaro {

/// The failure number of an export that the format cannot hold.
inline constexpr std::int32_t kMapExportFailure = 1609;

/// A refusal that the user is told in the operation's own message box instead of the common one.
struct Refusal : Failure {
    Refusal(std::string text, std::int32_t boxStyle, std::string boxTitle = {})
        : Failure(0, text), prompt(std::move(text)), style(boxStyle), title(std::move(boxTitle)) {}
    /// After a failure of an inner procedure, which is reported under its own name first.
    Refusal(const Failure& cause, std::string failedProcedure, std::string text,
            std::int32_t boxStyle, std::string boxTitle)
        : Failure(cause),
          procedure(std::move(failedProcedure)),
          prompt(std::move(text)),
          style(boxStyle),
          title(std::move(boxTitle)) {}

    std::string procedure;  ///< empty where nothing failed before
    std::string prompt;
    std::int32_t style;
    std::string title;
};

/// What the formats take from the container.
struct ExchangeSettings {
    bool exportNames = true;
    std::int16_t planes = 3;     ///< planes per map in a KZR file
    std::int16_t nameSize = 16;  ///< bytes of the name field in a KZR file
    std::int32_t rlewTag = 0xABCD;
    CarmackTags readTags = {}, writeTags = {};
};

struct ExchangeFormat {
    enmMapFileType type;
    /// Whether a file is of this format, going by its bytes and its name without the folder.
    bool (*recognises)(ByteSpan file, std::string_view name);
    /// All maps of a file. Throws a Failure for damage, a Refusal for a version it does not know.
    std::vector<ForeignMap> (*read)(ByteSpan file, const ExchangeSettings& settings);
    /// A whole file; null for a format that is never written this way.
    ByteArray (*write)(std::span<const ForeignMap> maps, const ExchangeSettings& settings);
};

extern const ExchangeFormat kKzrFormat, kFloEditFormat, kIPhoneFormat, kRottRtcFormat,
    kRottRtlFormat, kMapEditFormat, kNitemareFormat;

/// The format of a file; null when it is none that the library knows.
const ExchangeFormat* DetectMapFileType(ByteSpan file, std::string_view name);

/// The format with this number; null for the unknown one and numbers that stand for none.
const ExchangeFormat* FormatOfType(enmMapFileType type);

/// All maps of a file of any known format. An unknown one is refused.
std::vector<ForeignMap> ReadForeignMaps(ByteSpan file, std::string_view name,
                                        const ExchangeSettings& settings);

/// The refusal of a file in an unknown format, which shows its first five characters.
Refusal UnknownFormat(ByteSpan file);

bool StartsWith(ByteSpan file, std::string_view signature);

}  // namespace tessaro
