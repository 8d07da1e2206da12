// The fields of the text files that saving keeps: journal and history.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/data_file.h"

namespace tessaro {

/// Sixteen hexadecimal digits in lower case.
std::string Hex16(std::uint64_t value);
std::optional<std::uint64_t> ReadHex16(std::string_view text);
std::optional<std::uint64_t> ReadDecimal(std::string_view text);

/// A text without blanks, control characters and line ends: those bytes and the percent sign are
/// written as %XX.
std::string Escaped(std::string_view text);
std::optional<std::string> ReadEscaped(std::string_view text);

/// `<size>:<checksum>`, or `absent`.
std::string StateText(const std::optional<FilePrint>& state);
/// False where the text is no state.
bool ReadState(std::string_view text, std::optional<FilePrint>& state);

/// The parts between single blanks.
std::vector<std::string_view> Fields(std::string_view line);
/// The lines of a text, without their line feeds; a last line without one is left out.
std::vector<std::string_view> Lines(std::string_view text);

}  // namespace tessaro
