#include "platform/system.h"
#include "platform/windows/text.h"
#include "platform/windows/wide.h"

#include <windows.h>

#include <array>
#include <cstdio>

#include "platform/file.h"

namespace tessaro {

std::string LibraryFolder() {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCSTR>(&LibraryFolder), &module);
    std::string file(32768, '\0');
    file.resize(GetModuleFileNameA(module, file.data(), static_cast<DWORD>(file.size())));
    const std::size_t separator = LastSeparator(file);
    return separator == std::string::npos ? "." : file.substr(0, separator);
}

std::string DefaultAppPath() {
    const std::string folder = LibraryFolder();
    const std::string probe = JoinPath(folder, ".tessaro-probe.tmp");
    const HANDLE file = CreateFileA(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
        return folder;
    }
    std::string local(GetEnvironmentVariableA("LOCALAPPDATA", nullptr, 0), '\0');
    local.resize(
        GetEnvironmentVariableA("LOCALAPPDATA", local.data(), static_cast<DWORD>(local.size())));
    if (local.empty())
        return folder;
    local = JoinPath(local, "Tessaro");
    CreateDirectoryA(local.c_str(),
                     nullptr);  // that it cannot be made shows when the log is written
    return local;
}

std::string PathFromHost(const std::string& path) {
    return Utf8(ToWide(path));
}
std::string PathToHost(const std::string& path) {
    const int length = static_cast<int>(path.size());
    std::wstring wide(path.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_UTF8, 0, path.data(), length, wide.data(), length)));
    return FromWide(wide);
}

std::uint32_t ActiveCodePage() {
    return GetACP();
}

std::string ConvertBetweenCodePages(const std::string& text, std::uint32_t source,
                                    std::uint32_t target) {
    const int length = static_cast<int>(text.size());
    const int wideLength = MultiByteToWideChar(source, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(wideLength), L'\0');
    MultiByteToWideChar(source, 0, text.data(), length, wide.data(), wideLength);
    const int needed =
        WideCharToMultiByte(target, 0, wide.data(), wideLength, nullptr, 0, nullptr, nullptr);
    std::string converted(static_cast<std::size_t>(needed), '\0');
    // At most as many bytes as the text had: only single-byte pairs are ever converted.
    const int written = WideCharToMultiByte(target, 0, wide.data(), wideLength, converted.data(),
                                            needed < length ? needed : length, nullptr, nullptr);
    converted.resize(static_cast<std::size_t>(written));
    return converted;
}

std::string LocalTimestamp() {
    SYSTEMTIME now{};
    GetLocalTime(&now);
    std::array<char, 16> designator{};
    GetLocaleInfoA(LOCALE_USER_DEFAULT, now.wHour < 12 ? LOCALE_S1159 : LOCALE_S2359,
                   designator.data(), static_cast<int>(designator.size()));
    const int hour = now.wHour % 12 == 0 ? 12 : now.wHour % 12;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d/%02d/%04d %02d:%02d %s", now.wMonth, now.wDay,
                  now.wYear, hour, now.wMinute, designator.data());
    return text.data();
}

}  // namespace tessaro
