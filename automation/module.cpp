// The functions through which the system uses the component: class factories, unloading, and
// registration.
#include <windows.h>

#include <olectl.h>

#include <algorithm>

#include "classes.h"
#include "component.h"
#include "registration.h"
#include "tessaro_com.h"

namespace tessaro::automation {
namespace {

class Factory final : public IClassFactory, private LiveObject {
public:
    explicit Factory(const CreatableClass& creatable) : class_(creatable) {}
    virtual ~Factory() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IClassFactory);
        *object = known ? this : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override {
        return static_cast<ULONG>(InterlockedIncrement(&references_));
    }
    STDMETHODIMP_(ULONG) Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0)
            delete this;
        return static_cast<ULONG>(left);
    }

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        return Boundary([&] {
            *Required(object) = nullptr;
            if (outer)
                throw Refusal{CLASS_E_NOAGGREGATION};
            const Reference<IUnknown> created(class_.create());
            Check(created->QueryInterface(iid, object));
        });
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        LiveObject::Lock(lock);
        return S_OK;
    }

private:
    const CreatableClass& class_;
    LONG references_ = 1;
};

constexpr CreatableClass kClasses[] = {
    {__uuidof(::clsVersion), L"clsVersion", L"Tessaro configuration", NewVersion},
    {__uuidof(::clsGameMaps), L"clsGameMaps", L"Tessaro maps", NewGameMaps},
    {__uuidof(::clsVGAGraph), L"clsVGAGraph", L"Tessaro graphics", NewVGAGraph},
    {__uuidof(::clsVSwap), L"clsVSwap", L"Tessaro page file", NewVSwap},
    {__uuidof(::clsAudioT), L"clsAudioT", L"Tessaro audio", NewAudioT},
    {__uuidof(::clsPalette), L"clsPalette", L"Tessaro palettes", NewPalette},
};

}  // namespace

std::span<const CreatableClass> CreatableClasses() {
    return kClasses;
}

}  // namespace tessaro::automation

using namespace tessaro::automation;

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** object) {
    return Boundary([&] {
        *Required(object) = nullptr;
        const auto classes = CreatableClasses();
        const auto found = std::ranges::find_if(
            classes, [&](const CreatableClass& creatable) { return creatable.id == id; });
        if (found == classes.end())
            throw Refusal{CLASS_E_CLASSNOTAVAILABLE};
        const Reference<Factory> factory(new Factory(*found));
        Check(factory->QueryInterface(iid, object));
        // What the library keeps for each thread is let go when the thread ends, by code of this
        // DLL; so it stays once it was used, even where every host has let go of it.
        HMODULE self = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<LPCWSTR>(&DllGetClassObject), &self);
    });
}

STDAPI DllCanUnloadNow() {
    return LiveObject::Count() == 0 ? S_OK : S_FALSE;
}

/// Registers for the machine, or, where that is not allowed, for the user.
STDAPI DllRegisterServer() {
    return Boundary([] {
        try {
            RegisterComponent(RegistrationScope::Machine);
        } catch (const Refusal& refusal) {
            if (refusal.code != E_ACCESSDENIED && refusal.code != TYPE_E_REGISTRYACCESS)
                throw;
            RegisterComponent(RegistrationScope::User);
        }
    });
}

/// Removes whatever registration there is, the user's and the machine's.
STDAPI DllUnregisterServer() {
    return Boundary([] {
        const HRESULT user = UnregisterComponent(RegistrationScope::User);
        Check(UnregisterComponent(RegistrationScope::Machine));
        Check(user);
    });
}

/// "regsvr32 /n /i:user tessaro.dll" registers for the user alone; with /u it unregisters.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
    return Boundary([&] {
        const bool user =
            commandLine && CompareStringOrdinal(commandLine, -1, L"user", -1, TRUE) == CSTR_EQUAL;
        const auto scope = user ? RegistrationScope::User : RegistrationScope::Machine;
        if (install)
            RegisterComponent(scope);
        else
            Check(UnregisterComponent(scope));
    });
}
