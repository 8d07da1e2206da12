#include "files.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "report.h"

namespace tessaro::cli {

namespace fs = std::filesystem;

namespace {

std::ifstream OpenToRead(const std::string& path) {
    std::error_code error;
    if (fs::is_directory(path, error))
        throw CommandError(path + " is a folder");
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw CommandError("cannot read " + path +
                           (fs::exists(path, error) ? "" : ": there is no such file"));
    return in;
}

/// Why a file could not be written, in the system's words; empty when it was.
std::string WhyNotWritten(const fs::path& path, const ByteArray& bytes) {
    errno = 0;
    std::FILE* file = std::fopen(path.string().c_str(), "wb");
    bool done = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    int reason = errno;
    if (file && std::fclose(file) != 0 && done) {
        done = false;
        reason = errno;
    }
    return done     ? ""
           : reason ? std::generic_category().message(reason)
                    : "the system gives no reason";
}

/// A free name in the same folder.
fs::path NameBeside(const fs::path& path) {
    std::random_device random;
    fs::path name;
    do {
        name = path;
        name += ".new" + std::to_string(random());
    } while (fs::exists(name));
    return name;
}

}  // namespace

ByteArray ReadFile(const std::string& path) {
    std::ifstream in = OpenToRead(path);
    ByteArray bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (in.bad())
        throw CommandError("cannot read " + path);
    return bytes;
}

void CheckReadable(const std::string& path) {
    OpenToRead(path);
}

void WriteFile(const std::string& path, const ByteArray& bytes, const FileKind& kind) {
    CheckReplaceable(path, kind);
    std::error_code error;
    const fs::file_status there = fs::status(path, error);
    const bool replaces = fs::is_regular_file(there);
    if (fs::is_directory(there))
        throw CommandError("cannot write " + path + ": it is a folder");
    if (fs::exists(there) && !replaces) {  // a pipe or a device
        if (const std::string why = WhyNotWritten(path, bytes); !why.empty())
            throw CommandError("cannot write " + path + ": " + why);
        return;
    }
    const fs::path place = replaces ? fs::canonical(path) : fs::path(path);
    const fs::path beside = NameBeside(place);
    std::string why = WhyNotWritten(beside, bytes);
    if (why.empty()) {
        if (replaces)
            fs::permissions(beside, there.permissions(), error);
        fs::rename(beside, place, error);
        why = error ? error.message() : "";
    }
    if (!why.empty()) {
        fs::remove(beside, error);
        throw CommandError("cannot write " + path + ": " + why);
    }
}

void CreateFolders(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (!fs::is_directory(path))
        throw CommandError("cannot create the folder " + path +
                           (error ? ": " + error.message() : ""));
}

void RemoveFile(const std::string& path) {
    std::error_code error;
    fs::remove(path, error);
    if (error)
        throw CommandError("cannot replace " + path + ": " + error.message());
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
