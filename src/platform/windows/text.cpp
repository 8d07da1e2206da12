#include "platform/windows/text.h"

#include <windows.h>

namespace tessaro {

std::wstring ToWide(const std::string& text) {
    const int length = static_cast<int>(text.size());
    if (length == 0)
        return {};
    const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), size);
    return wide;
}

std::string FromWide(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    if (length == 0)
        return {};
    const int size =
        WideCharToMultiByte(CP_ACP, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

}  // namespace tessaro
