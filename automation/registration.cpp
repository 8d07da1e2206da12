#include "registration.h"

#include <windows.h>

#include <oleauto.h>

#include <string>

#include "classes.h"
#include "marshal.h"
#include "type_library.h"

// Exported by the system since Windows Vista; not every compiler's headers declare them.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD major, WORD minor, LCID locale,
                                        SYSKIND system);
}

namespace tessaro::automation {
namespace {

class Key {
public:
    Key(HKEY parent, const std::wstring& path) {
        Check(HRESULT_FROM_WIN32(static_cast<DWORD>(RegCreateKeyExW(
            parent, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key_, nullptr))));
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() { RegCloseKey(key_); }

    void Set(const wchar_t* name, const std::wstring& value) const {
        Check(HRESULT_FROM_WIN32(static_cast<DWORD>(
            RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                           static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))))));
    }

private:
    HKEY key_ = nullptr;
};

HKEY Root(RegistrationScope scope) {
    return scope == RegistrationScope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

const std::wstring kClassesKey = L"Software\\Classes\\";

std::wstring Braced(REFGUID id) {
    wchar_t text[39] = L"";
    StringFromGUID2(id, text, 39);
    return text;
}

// Under Software\Classes:
//  CLSID\{class}                description
//    InprocServer32             path of the DLL; ThreadingModel "Apartment"
//    ProgID                     Tessaro.clsX.1
//    VersionIndependentProgID   Tessaro.clsX
//    TypeLib, Version           of the type library
//    Programmable
//  Tessaro.clsX                 description; CLSID, CurVer
//  Tessaro.clsX.1               description; CLSID
std::wstring ClassKey(const CreatableClass& creatable) {
    return kClassesKey + L"CLSID\\" + Braced(creatable.id);
}
std::wstring ProgId(const CreatableClass& creatable) {
    return std::wstring(L"Tessaro.") + creatable.name;
}
std::wstring VersionedProgId(const CreatableClass& creatable) {
    return ProgId(creatable) + L".1";
}

/// The type library's identity, from the library itself.
TLIBATTR LibraryAttributes() {
    const Reference<ITypeLib> library = TypeLibrary();
    TLIBATTR* attributes = nullptr;
    Check(library->GetLibAttr(&attributes));
    const TLIBATTR copy = *attributes;
    library->ReleaseTLibAttr(attributes);
    return copy;
}

void RegisterClass(HKEY root, const CreatableClass& creatable, const std::wstring& libraryId) {
    const std::wstring classKey = ClassKey(creatable);
    const std::wstring classId = Braced(creatable.id);
    Key(root, classKey).Set(nullptr, creatable.description);
    const Key server(root, classKey + L"\\InprocServer32");
    server.Set(nullptr, ModulePath());
    server.Set(L"ThreadingModel", L"Apartment");
    Key(root, classKey + L"\\ProgID").Set(nullptr, VersionedProgId(creatable));
    Key(root, classKey + L"\\VersionIndependentProgID").Set(nullptr, ProgId(creatable));
    Key(root, classKey + L"\\TypeLib").Set(nullptr, libraryId);
    Key(root, classKey + L"\\Version").Set(nullptr, L"1.0");
    const Key programmable(root, classKey + L"\\Programmable");
    for (const std::wstring& progId : {ProgId(creatable), VersionedProgId(creatable)}) {
        Key(root, kClassesKey + progId).Set(nullptr, creatable.description);
        Key(root, kClassesKey + progId + L"\\CLSID").Set(nullptr, classId);
    }
    Key(root, kClassesKey + ProgId(creatable) + L"\\CurVer")
        .Set(nullptr, VersionedProgId(creatable));
}

/// 32-bit and 64-bit programs see classes of their own, but the same ProgIDs.
bool IsRegisteredForOtherArchitecture(HKEY root, const CreatableClass& creatable) {
    constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, ClassKey(creatable).c_str(), 0, KEY_READ | kOtherView, &key) !=
        ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

}  // namespace

void RegisterComponent(RegistrationScope scope) {
    try {
        const std::wstring libraryId = Braced(LibraryAttributes().guid);
        for (const CreatableClass& creatable : CreatableClasses())
            RegisterClass(Root(scope), creatable, libraryId);
        std::wstring path = ModulePath();
        Check(scope == RegistrationScope::Machine
                  ? RegisterTypeLib(TypeLibrary().Get(), path.data(), nullptr)
                  : RegisterTypeLibForUser(TypeLibrary().Get(), path.data(), nullptr));
    } catch (...) {
        UnregisterComponent(scope);
        throw;
    }
}

HRESULT UnregisterComponent(RegistrationScope scope) {
    const HKEY root = Root(scope);
    HRESULT outcome = S_OK;
    const auto remove = [&](const std::wstring& key) {
        const LSTATUS status = RegDeleteTreeW(root, key.c_str());
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND && SUCCEEDED(outcome))
            outcome = HRESULT_FROM_WIN32(static_cast<DWORD>(status));
    };
    for (const CreatableClass& creatable : CreatableClasses()) {
        remove(ClassKey(creatable));
        if (IsRegisteredForOtherArchitecture(root, creatable))
            continue;
        remove(kClassesKey + ProgId(creatable));
        remove(kClassesKey + VersionedProgId(creatable));
    }
    const TLIBATTR library = LibraryAttributes();
    const auto unregister =
        scope == RegistrationScope::Machine ? UnRegisterTypeLib : UnRegisterTypeLibForUser;
    // It fails where there was nothing to remove, too.
    unregister(library.guid, library.wMajorVerNum, library.wMinorVerNum, library.lcid,
               library.syskind);
    return outcome;
}

}  // namespace tessaro::automation
