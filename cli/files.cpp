#include "files.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "error.h"

namespace tessaro::cli {

namespace fs = std::filesystem;

ByteArray ReadFile(const std::string& path) {
    std::error_code error;
    if (fs::is_directory(path, error))
        throw CommandError(path + " is a folder");
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw CommandError("cannot read " + path);
    ByteArray bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad())
        throw CommandError("cannot read " + path);
    return bytes;
}

void WriteFile(const std::string& path, const ByteArray& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        throw CommandError("cannot write " + path);
}

void CreateFolders(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (!fs::is_directory(path, error))
        throw CommandError("cannot create the folder " + path);
}

void RemoveFile(const std::string& path) {
    std::error_code error;
    fs::remove(path, error);
    if (error)
        throw CommandError("cannot replace " + path);
}

std::string PathIn(const std::string& folder, const std::string& name) {
    return (fs::path(folder) / name).string();
}

std::string SafeName(std::string_view name) {
    std::string safe;
    for (const char c : name.substr(0, 40)) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = byte < 128 && (std::isalnum(byte) || c == '-' || c == '_');
        safe += plain ? c : c == ' ' ? '-' : '_';
    }
    return safe;
}

std::string ExtensionOf(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    if (!extension.empty())
        extension.erase(0, 1);
    for (char& c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

std::string Padded(int number, int digits) {
    std::string text = std::to_string(number);
    if (text.size() < static_cast<std::size_t>(digits))
        text.insert(0, static_cast<std::size_t>(digits) - text.size(), '0');
    return text;
}

}  // namespace tessaro::cli
