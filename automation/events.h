// The event side of a saving class: one connection point, to which hosts connect their sinks.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "type_library.h"

namespace tessaro::automation {

/// The event numbers, the same in every event interface of the type library.
inline constexpr DISPID kSaveStatus = 1;
inline constexpr DISPID kSaveError = 2;
inline constexpr DISPID kSaveComplete = 3;

/// An argument of an event. Texts belong to the raiser.
VARIANT EventArgument(std::int32_t number);
VARIANT EventArgument(bool flag);
VARIANT EventArgument(BSTR text);

/// The connection point of one object. It lives inside the object and shares its count.
class EventSource final : public IConnectionPoint {
public:
    EventSource(IUnknown& owner, IConnectionPointContainer& container, REFIID events)
        : owner_(owner), container_(container), events_(events) {}

    /// Calls every connected sink. What a sink answers is its own affair: a host that handles one
    /// event and not the others answers "no such member" to those.
    void Raise(DISPID event, std::initializer_list<VARIANT> arguments);

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }
    STDMETHODIMP GetConnectionInterface(IID* iid) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections** enumerator) override;

private:
    IUnknown& owner_;
    IConnectionPointContainer& container_;
    const IID events_;
    std::map<DWORD, Reference<IDispatch>> sinks_;
    DWORD lastCookie_ = 0;
};

/// The enumerator of a container's only connection point.
HRESULT EnumerateConnectionPoint(IConnectionPoint* point,
                                 IEnumConnectionPoints** enumerator) noexcept;

}  // namespace tessaro::automation
