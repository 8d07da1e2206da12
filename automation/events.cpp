#include "events.h"

#include <olectl.h>

#include <algorithm>
#include <memory>

#include "component.h"

namespace tessaro::automation {
namespace {

// What an enumerator does with its items: it holds a reference to each and hands out another.
CONNECTDATA HandedOut(const CONNECTDATA& item) {
    item.pUnk->AddRef();
    return item;
}
IConnectionPoint* HandedOut(IConnectionPoint* item) {
    item->AddRef();
    return item;
}
void Drop(const CONNECTDATA& item) {
    item.pUnk->Release();
}
void Drop(IConnectionPoint* item) {
    item->Release();
}

/// A standard enumerator over a copy of a list. The items are adopted.
template <class Interface, class Item>
class Enumerator final : public Interface, private LiveObject {
public:
    explicit Enumerator(std::vector<Item> items, std::size_t next = 0)
        : items_(std::move(items)), next_(next) {}
    virtual ~Enumerator() {
        for (const Item& item : items_)
            Drop(item);
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(Interface);
        *object = known ? this : nullptr;
        if (!known)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0)
            delete this;
        return left;
    }

    STDMETHODIMP Next(ULONG count, Item* items, ULONG* fetched) override {
        if (!items || (!fetched && count != 1))
            return E_POINTER;
        ULONG given = 0;
        for (; given < count && next_ < items_.size(); ++given)
            items[given] = HandedOut(items_[next_++]);
        if (fetched)
            *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG count) override {
        const std::size_t left = items_.size() - next_;
        next_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        next_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(Interface** copy) override {
        return Boundary([&] {
            *Required(copy) = nullptr;
            std::vector<Item> items = items_;
            for (const Item& item : items)
                HandedOut(item);
            *copy = new Enumerator(std::move(items), next_);
        });
    }

private:
    std::vector<Item> items_;
    std::size_t next_;
    ULONG references_ = 1;
};

}  // namespace

VARIANT EventArgument(std::int32_t number) {
    VARIANT argument;
    argument.vt = VT_I4;
    argument.lVal = number;
    return argument;
}

VARIANT EventArgument(bool flag) {
    VARIANT argument;
    argument.vt = VT_BOOL;
    argument.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    return argument;
}

VARIANT EventArgument(BSTR text) {
    VARIANT argument;
    argument.vt = VT_BSTR;
    argument.bstrVal = text;
    return argument;
}

void EventSource::Raise(DISPID event, std::initializer_list<VARIANT> arguments) {
    std::vector<VARIANT> reversed(arguments);
    std::reverse(reversed.begin(), reversed.end());  // IDispatch takes the last argument first
    const auto sinks = sinks_;                       // a sink may disconnect while it is called
    for (const auto& [cookie, sink] : sinks) {
        DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        Variant answer;
        sink->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &*answer,
                     nullptr, nullptr);
    }
}

STDMETHODIMP EventSource::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IConnectionPoint);
    *object = known ? this : nullptr;
    if (!known)
        return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP EventSource::GetConnectionInterface(IID* iid) {
    return Boundary([&] { *Required(iid) = events_; });
}

STDMETHODIMP EventSource::GetConnectionPointContainer(IConnectionPointContainer** container) {
    return Boundary([&] {
        *Required(container) = &container_;
        container_.AddRef();
    });
}

STDMETHODIMP EventSource::Advise(IUnknown* sink, DWORD* cookie) {
    return Boundary([&] {
        *Required(cookie) = 0;
        Reference<IDispatch> dispatch;
        if (FAILED(Required(sink)->QueryInterface(events_,
                                                  reinterpret_cast<void**>(dispatch.Out()))) &&
            FAILED(sink->QueryInterface(__uuidof(IDispatch),
                                        reinterpret_cast<void**>(dispatch.Out()))))
            throw Refusal{CONNECT_E_CANNOTCONNECT};
        sinks_[lastCookie_ + 1] = std::move(dispatch);
        *cookie = ++lastCookie_;
    });
}

STDMETHODIMP EventSource::Unadvise(DWORD cookie) {
    return sinks_.erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
}

STDMETHODIMP EventSource::EnumConnections(IEnumConnections** enumerator) {
    return Boundary([&] {
        *Required(enumerator) = nullptr;
        std::vector<CONNECTDATA> connections;
        for (const auto& [cookie, sink] : sinks_)
            connections.push_back({sink.Get(), cookie});
        for (const CONNECTDATA& connection : connections)
            connection.pUnk->AddRef();
        *enumerator = new Enumerator<IEnumConnections, CONNECTDATA>(std::move(connections));
    });
}

HRESULT EnumerateConnectionPoint(IConnectionPoint* point,
                                 IEnumConnectionPoints** enumerator) noexcept {
    return Boundary([&] {
        *Required(enumerator) = nullptr;
        point->AddRef();
        std::vector<IConnectionPoint*> points = {point};
        *enumerator = new Enumerator<IEnumConnectionPoints, IConnectionPoint*>(std::move(points));
    });
}

}  // namespace tessaro::automation
