#include "foundation/names.h"

#include <algorithm>
#include <utility>

namespace tessaro {
namespace {

char Upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string JoinPath(const std::string& folder, std::string_view name) {
    return (folder + kPathSeparator).append(name);
}

std::size_t LastSeparator(std::string_view path) {
#ifdef _WIN32
    return path.find_last_of("\\/");
#else
    return path.rfind('/');
#endif
}

std::string FolderOf(std::string_view path) {
    const std::size_t separator = LastSeparator(path);
    if (separator == std::string_view::npos)
        return ".";
    const bool isRoot = separator == 0 || path[separator - 1] == ':';
    return std::string(path.substr(0, isRoot ? separator + 1 : separator));
}

std::string NameOf(std::string_view path) {
    const std::size_t separator = LastSeparator(path);
    return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Upper(x) == Upper(y); });
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), Upper);
    return upper;
}

void SortNames(std::vector<std::string>& names) {
    std::vector<std::pair<std::string, std::string>> keyed;  // each upper case is made once
    keyed.reserve(names.size());
    for (std::string& name : names)
        keyed.emplace_back(UpperCase(name), std::move(name));
    std::ranges::sort(keyed);
    std::ranges::transform(keyed, names.begin(), [](auto& pair) { return std::move(pair.second); });
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
    std::size_t n = 0, p = 0, star = std::string_view::npos, resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || Upper(pattern[p]) == Upper(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

}  // namespace tessaro
