// The component's own type library, read from the DLL itself: nothing has to be registered for it.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>
#include <utility>

namespace tessaro::automation {

/// A counted reference.
template <class Interface>
class Reference {
public:
    Reference() = default;
    explicit Reference(Interface* adopted) : pointer_(adopted) {}
    Reference(const Reference& other) : pointer_(other.pointer_) {
        if (pointer_)
            pointer_->AddRef();
    }
    Reference(Reference&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    Reference& operator=(Reference other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~Reference() {
        if (pointer_)
            pointer_->Release();
    }

    Interface* operator->() const { return pointer_; }
    Interface* Get() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    /// Gives the reference up to the caller.
    Interface* Release() { return std::exchange(pointer_, nullptr); }
    /// Where a function that hands out a reference puts it.
    Interface** Out() { return &pointer_; }

private:
    Interface* pointer_ = nullptr;
};

/// The DLL, and its path.
HINSTANCE Module();
std::wstring ModulePath();

Reference<ITypeLib> TypeLibrary();
/// The description of an interface or a class.
Reference<ITypeInfo> TypeInfo(REFGUID guid);
/// What makes and copies the records of that name.
Reference<IRecordInfo> RecordInfo(const wchar_t* name);

}  // namespace tessaro::automation
