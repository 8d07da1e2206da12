#include "known/known_game.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "files.h"
#include "known/digests.h"
#include "report.h"

namespace tessaro::cli {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> Fields(std::string_view line) {
    std::vector<std::string> fields;
    for (;;) {
        const std::size_t tab = line.find('\t');
        fields.emplace_back(line.substr(0, tab));
        if (tab == std::string_view::npos)
            return fields;
        line.remove_prefix(tab + 1);
    }
}

template <class Number>
std::optional<Number> NumberIn(const std::string& text) {
    Number number = 0;
    const char* end = text.data() + text.size();
    if (text.empty() || std::from_chars(text.data(), end, number).ptr != end)
        return {};
    return number;
}

/// Takes one line at a time; a line belongs to the version or to the names before it.
class Reader {
public:
    explicit Reader(KnownGame& game) : game_(game) {}

    /// @return false for a line that makes no sense
    bool Take(const std::vector<std::string>& fields) {
        const std::string& what = fields[0];
        const std::size_t count = fields.size();
        if (what == "title" && count == 2)
            game_.title = fields[1];
        else if (what == "extension" && count == 2)
            game_.extensions.push_back(fields[1]);
        else if (what == "version" && (count == 2 || count == 3))
            game_.versions.push_back({count == 3 ? fields[2] : game_.title, fields[1], {}, {}});
        else if (what == "file" && count == 4 && !game_.versions.empty())
            game_.versions.back().files.push_back(
                {fields[1], NumberIn<std::uint64_t>(fields[2]), fields[3] == "-" ? "" : fields[3]});
        else if (what == "item" && count == 4 && !game_.versions.empty() &&
                 NumberIn<int>(fields[2]))
            game_.versions.back().items[{fields[1], *NumberIn<int>(fields[2])}] =
                fields[3] == "-" ? "" : fields[3];
        else if (what == "names" && count <= 2)
            game_.names.push_back({count == 2 ? NumberIn<int>(fields[1]) : std::nullopt, {}});
        else if ((count == 3 || count == 4) && !game_.names.empty() && NumberIn<int>(fields[1]))
            game_.names.back().items[{what, *NumberIn<int>(fields[1])}] = {
                fields[2], count == 4 ? fields[3] : ""};
        else
            return false;
        return true;
    }

private:
    KnownGame& game_;
};

std::vector<fs::path> GameFilesIn(const std::string& folder) {
    std::error_code error;
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (entry.path().extension() == ".game" && entry.is_regular_file(error))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

/// A file that cannot be understood is noted and stands for nothing.
KnownGame Read(const fs::path& file) {
    try {
        return ReadKnownGame(file.string());
    } catch (const CommandError& failure) {
        Note(failure.what());
        return {};
    }
}

/// Whether a file is for games of an extension, from its first lines.
bool IsFor(const fs::path& path, const std::string& extension) {
    const ByteArray bytes = ReadFile(path.string());
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::string_view head = text.substr(0, text.find("\nversion"));
    const std::string line = "\nextension\t" + extension;
    const std::size_t at = head.find(line);
    return at != std::string_view::npos &&
           (at + line.size() == head.size() || head[at + line.size()] == '\n' ||
            head[at + line.size()] == '\r');
}

bool IsNamedFor(const fs::path& path, const std::string& extension) {
    std::string stem = path.stem().string();
    for (char& c : stem)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return stem == extension;
}

fs::path ProgramFolder() {
#ifdef _WIN32
    return _pgmptr ? fs::path(_pgmptr).parent_path() : fs::path();
#else
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
#endif
}

fs::path UserFolder() {
    const auto under = [](const char* variable, const char* rest) {
        const char* folder = std::getenv(variable);
        return folder && *folder ? fs::path(folder) / rest : fs::path();
    };
#ifdef _WIN32
    return under("APPDATA", "Tessaro/games");
#else
    const fs::path folder = under("XDG_DATA_HOME", "tessaro/games");
    return folder.empty() ? under("HOME", ".local/share/tessaro/games") : folder;
#endif
}

}  // namespace

KnownGame ReadKnownGame(const std::string& path) {
    const ByteArray bytes = ReadFile(path);
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    KnownGame game;
    Reader reader(game);
    for (int number = 1; !text.empty(); ++number) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const bool first = number == 1;
        if (first ? line != "tessaro game\t1"
                  : !line.empty() && line[0] != '#' && !reader.Take(Fields(line)))
            throw CommandError(path + ", line " + std::to_string(number) +
                               (first ? ": the first line has to be \"tessaro game\", a tab and 1"
                                      : ": this line makes no sense here"));
    }
    return game;
}

bool IsOfKnownGame(const ByteArray& content) {
    Digests digests(content);
    const auto is = [&](const KnownFile& row) {
        return (!row.size || *row.size == content.size()) && digests.Are(row.digest);
    };
    for (const std::string& folder : KnownGameFolders())
        for (const fs::path& file : GameFilesIn(folder))
            for (const KnownVersion& version : Read(file).versions)
                if (std::any_of(version.files.begin(), version.files.end(), is))
                    return true;
    return false;
}

std::vector<KnownGame> KnownGames(const std::string& extension) {
    std::vector<KnownGame> games;
    for (const std::string& folder : KnownGameFolders()) {
        std::vector<fs::path> files = GameFilesIn(folder);
        std::stable_partition(files.begin(), files.end(),
                              [&](const fs::path& file) { return IsNamedFor(file, extension); });
        for (const fs::path& file : files)
            if (IsFor(file, extension))
                games.push_back(Read(file));
    }
    return games;
}

std::vector<std::string> KnownGameFolders() {
    std::vector<std::string> folders;
    const fs::path program = ProgramFolder(), user = UserFolder();
    if (!program.empty())
        for (const char* beside : {"games", "../share/tessaro/games"})
            folders.push_back((program / beside).string());
    if (!user.empty())
        folders.push_back(user.string());
    return folders;
}

}  // namespace tessaro::cli
