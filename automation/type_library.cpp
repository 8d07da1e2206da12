#include "type_library.h"

#include <oleauto.h>

#include "marshal.h"

namespace tessaro::automation {

HINSTANCE Module() {
    static const char anchor = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&anchor), &module);
    return module;
}

std::wstring ModulePath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(Module(), path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

Reference<ITypeLib> TypeLibrary() {
    Reference<ITypeLib> library;
    Check(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, library.Out()));
    return library;
}

Reference<ITypeInfo> TypeInfo(REFGUID guid) {
    Reference<ITypeInfo> info;
    Check(TypeLibrary()->GetTypeInfoOfGuid(guid, info.Out()));
    return info;
}

Reference<IRecordInfo> RecordInfo(const wchar_t* name) {
    std::wstring wanted = name;
    Reference<ITypeInfo> description;
    MEMBERID member = 0;
    USHORT found = 1;
    Check(TypeLibrary()->FindName(wanted.data(), 0, description.Out(), &member, &found));
    if (found == 0)
        throw Refusal{TYPE_E_ELEMENTNOTFOUND};
    Reference<IRecordInfo> info;
    Check(GetRecordInfoFromTypeInfo(description.Get(), info.Out()));
    return info;
}

}  // namespace tessaro::automation
