// What the six classes have in common: identity, IDispatch, error information, and calls that
// forward to the library. A class of the component adds one line per member.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <olectl.h>

#include <string>
#include <tuple>
#include <utility>

#include "dispatch.h"
#include "events.h"
#include "marshal.h"
#include "tessaro_com.h"
#include "type_library.h"

namespace tessaro::automation {

/// Counts what keeps the DLL loaded: objects, enumerators, and locks of the class factories.
class LiveObject {
public:
    LiveObject() { InterlockedIncrement(&count_); }
    LiveObject(const LiveObject&) = delete;
    LiveObject& operator=(const LiveObject&) = delete;
    ~LiveObject() { InterlockedDecrement(&count_); }

    static void Lock(bool lock) {
        lock ? InterlockedIncrement(&count_) : InterlockedDecrement(&count_);
    }
    static LONG Count() { return count_; }

private:
    static inline LONG count_ = 0;
};

/// The HRESULT of the exception being handled; a failure of the library leaves its description in
/// the thread's error information.
HRESULT CurrentResult() noexcept;

/// Runs the body of one member: nothing thrown leaves the DLL.
template <class Body>
HRESULT Boundary(Body&& body) noexcept {
    try {
        body();
        return S_OK;
    } catch (...) {
        return CurrentResult();
    }
}

/// An object of class `Coclass` with the dual interface `Interface`, around one `Library` object.
template <class Interface, class Coclass, class Library>
class Component : public Interface,
                  public ISupportErrorInfo,
                  public IProvideClassInfo2,
                  private LiveObject {
public:
    virtual ~Component() = default;

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = Find(iid);
        if (!*object)
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

    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        return Boundary([&] { *Required(count) = 1; });
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return Boundary([&] {
            *Required(info) = nullptr;
            if (index != 0)
                throw Refusal{DISP_E_BADINDEX};
            *info = Members();
            (*info)->AddRef();
        });
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return Boundary([&] { Check(Members()->GetIDsOfNames(names, count, ids)); });
    }
    STDMETHODIMP Invoke(DISPID member, REFIID reserved, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override {
        return Boundary([&] {
            if (reserved != IID_NULL)
                throw Refusal{DISP_E_UNKNOWNINTERFACE};
            const Reference<Interface> alive = Alive();
            Check(InvokeMember(Members(), alive.Get(), member, flags, parameters, result, exception,
                               badArgument));
        });
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == __uuidof(Interface) ? S_OK : S_FALSE;
    }
    STDMETHODIMP GetClassInfo(ITypeInfo** info) override {
        return Boundary([&] {
            *Required(info) = nullptr;
            *info = TypeInfo(__uuidof(Coclass)).Release();
        });
    }
    STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override {
        return Boundary([&] {
            *Required(guid) = GUID{};
            if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || EventsId() == GUID{})
                throw Refusal{E_INVALIDARG};
            *guid = EventsId();
        });
    }

protected:
    virtual void* Find(REFIID iid) {
        if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(Interface))
            return static_cast<Interface*>(this);
        if (iid == __uuidof(ISupportErrorInfo))
            return static_cast<ISupportErrorInfo*>(this);
        if (iid == __uuidof(IProvideClassInfo) || iid == __uuidof(IProvideClassInfo2))
            return static_cast<IProvideClassInfo2*>(this);
        return nullptr;
    }
    /// The class's event interface, where it has one.
    virtual GUID EventsId() const { return GUID{}; }

    // Forwarding: the member `operation` of the library's object with the host's arguments, its
    // result, if any, into `result`. A property's pair of overloads is told apart by its form:
    // reading is const and returns something, writing does neither.
    template <class Result, class R, class... Inner, class... Outer>
    HRESULT Forward(Result* result, R (Library::*operation)(Inner...) const, Outer... outer) {
        return Run<Inner...>(operation, result, outer...);
    }
    template <class Result, class R, class... Inner, class... Outer>
    requires(!std::is_void_v<R>) HRESULT
        Forward(Result* result, R (Library::*operation)(Inner...), Outer... outer) {
        return Run<Inner...>(operation, result, outer...);
    }
    template <class... Inner, class... Outer>
    HRESULT Forward(void (Library::*operation)(Inner...), Outer... outer) {
        return Run<Inner...>(operation, static_cast<void*>(nullptr), outer...);
    }
    template <class... Inner, class... Outer>
    HRESULT Forward(void (Library::*operation)(Inner...) const, Outer... outer) {
        return Run<Inner...>(operation, static_cast<void*>(nullptr), outer...);
    }

    Library library_;

private:
    template <class... Inner, class Operation, class Result, class... Outer>
    HRESULT Run(Operation operation, Result* result, Outer... outer) noexcept {
        return Boundary([&] {
            const Reference<Interface> alive = Alive();
            if constexpr (!std::is_void_v<Result>)
                Required(result);
            std::tuple<Crossing<Inner, Outer>...> arguments(outer...);
            std::apply(
                [&](auto&... argument) {
                    if constexpr (std::is_void_v<Result>) {
                        (library_.*operation)(argument.Inner()...);
                        (argument.HandBack(false), ...);
                    } else {
                        const auto value = (library_.*operation)(argument.Inner()...);
                        bool succeeded = false;
                        if constexpr (std::same_as<decltype(value), const bool>)
                            succeeded = value;
                        (argument.HandBack(succeeded), ...);
                        StoreResult(value, result);
                    }
                },
                arguments);
        });
    }

    /// Held while a member runs: a host may drop its last reference in an event or under a box.
    Reference<Interface> Alive() {
        AddRef();
        return Reference<Interface>(this);
    }

    ITypeInfo* Members() {
        if (!members_)
            members_ = TypeInfo(__uuidof(Interface));
        return members_.Get();
    }

    LONG references_ = 1;
    Reference<ITypeInfo> members_;
};

/// A component whose library class saves and raises the three events of saving.
template <class Interface, class Coclass, class Library, class Events>
class SavingComponent : public Component<Interface, Coclass, Library>,
                        public IConnectionPointContainer {
public:
    SavingComponent() : events_(*static_cast<Interface*>(this), *this, __uuidof(Events)) {
        this->library_.SaveStatus = [this](std::int32_t chunk, std::int32_t total) {
            events_.Raise(kSaveStatus, {EventArgument(chunk), EventArgument(total)});
        };
        this->library_.SaveError = [this](std::int32_t chunk, const auto& what) {
            this->RaiseError(chunk, what);
        };
        this->library_.SaveComplete = [this](bool success) {
            events_.Raise(kSaveComplete, {EventArgument(success)});
        };
    }

    using Base = Component<Interface, Coclass, Library>;
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        return Base::QueryInterface(iid, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return Base::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return Base::Release(); }

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** enumerator) override {
        return EnumerateConnectionPoint(&events_, enumerator);
    }
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override {
        return Boundary([&] {
            *Required(point) = nullptr;
            if (iid != __uuidof(Events))
                throw Refusal{CONNECT_E_NOCONNECTION};
            *point = &events_;
            events_.AddRef();
        });
    }

protected:
    void* Find(REFIID iid) override {
        if (iid == __uuidof(IConnectionPointContainer))
            return static_cast<IConnectionPointContainer*>(this);
        return Base::Find(iid);
    }
    GUID EventsId() const override { return __uuidof(Events); }

private:
    void RaiseError(std::int32_t chunk, const std::string& description) {
        Variant text;
        text->bstrVal = TextToBSTR(description);
        text->vt = VT_BSTR;
        events_.Raise(kSaveError, {EventArgument(chunk), EventArgument(text->bstrVal)});
    }
    void RaiseError(std::int32_t chunk, std::int32_t kind) {
        events_.Raise(kSaveError, {EventArgument(chunk), EventArgument(kind)});
    }

    EventSource events_;
};

/// The class factory's way to a new object, its count 1.
template <class Object>
IUnknown* NewObject() {
    return static_cast<IDispatch*>(new Object);
}

}  // namespace tessaro::automation
