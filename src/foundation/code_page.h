// modCodePage: text between the system's ANSI code page and the games' DOS code page. The only
// pair ever converted is 1251 and 866; on every other system text passes unchanged.
#pragma once

#include <cstdint>
#include <string>

#include "tessaro/types.h"

namespace tessaro::modCodePage {

std::string ConvertCodePage(const std::string& text, std::uint32_t source, std::uint32_t target);
std::string TextToDosCodePage(const std::string& text);
std::string TextFromDosCodePage(const std::string& text);
std::string BytesToText(const ByteArray& bytes);
ByteArray TextToBytes(const std::string& text);
ByteArray BytesToDosCodePage(const ByteArray& bytes);
ByteArray BytesFromDosCodePage(const ByteArray& bytes);

}  // namespace tessaro::modCodePage
