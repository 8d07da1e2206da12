#include "platform/windows/wide.h"

#include <windows.h>

#include "foundation/names.h"

namespace tessaro {
namespace {

std::wstring Wide(const std::string& text) {
    if (text.empty() || text.find('\0') != std::string::npos)
        throw Failure(kBadFileNameOrNumber);
    const int length = static_cast<int>(text.size());
    const int size =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, nullptr, 0);
    if (size == 0)
        throw Failure(kBadFileNameOrNumber);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
    return wide;
}

}  // namespace

std::wstring WidePath(const std::string& path) {
    constexpr std::size_t kSafe = 240;  // a folder's limit is lower than a file's
    const std::wstring wide = Wide(path);
    std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(
        GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (full.size() < kSafe || full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\"))
        return wide;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

std::string Utf8(const wchar_t* text, std::size_t size) {
    if (size == 0)
        return {};
    const int length = static_cast<int>(size);
    const int count = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(count), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, length, bytes.data(), count, nullptr, nullptr);
    return bytes;
}

std::string Utf8(const std::wstring& text) {
    return Utf8(text.data(), text.size());
}

Failure FailureFromSystem(std::uint32_t error, const std::string& path) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
            return Failure(kFileNotFound);
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return Failure(kPathNotFound);
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return Failure(kPermissionDenied, "The file is in use by another program: " + path);
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_ALREADY_EXISTS:
        case ERROR_FILE_EXISTS:
            return Failure(kPermissionDenied);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return Failure(kDiskFull);
        case ERROR_INVALID_NAME:
        case ERROR_FILENAME_EXCED_RANGE:
            return Failure(kBadFileNameOrNumber);
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            return Failure(kOutOfMemory);
        case ERROR_CRC:
        case ERROR_NOT_READY:
        case ERROR_IO_DEVICE:
        case ERROR_GEN_FAILURE:
            return Failure(kDeviceIOError);
        default:
            return Failure(kPathFileAccess);
    }
}

}  // namespace tessaro
