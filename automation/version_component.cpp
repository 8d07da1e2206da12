// Tessaro.clsVersion
#include "tessaro/version.h"

#include <memory>

#include "classes.h"
#include "component.h"
#include "property.h"
#include "tessaro/user_interface.h"

namespace tessaro::automation {
namespace {

/// The thread's own boxes, while nobody is to see any.
std::unique_ptr<QuietUserInterface>& QuietBoxes() {
    thread_local std::unique_ptr<QuietUserInterface> boxes;
    return boxes;
}

class VersionComponent final : public Component<IVersion, ::clsVersion, clsVersion> {
public:
    STDMETHODIMP LoadDataPath(BSTR path, VARIANT_BOOL* result) override {
        return Forward(result, &clsVersion::LoadDataPath, path);
    }
    STDMETHODIMP LoadCompileVGADictFile(BSTR file) override {
        return Forward(&clsVersion::LoadCompileVGADictFile, file);
    }

    READ_PROPERTY(clsVersion, VARIANT_BOOL, CanCompileVGAGraph)
    READ_PROPERTY(clsVersion, VARIANT_BOOL, EGAGraphics)
    READ_PROPERTY(clsVersion, VARIANT_BOOL, CanChangeMapSize)
    READ_PROPERTY(clsVersion, VARIANT_BOOL, IsBlakeStone)
    READ_PROPERTY(clsVersion, VARIANT_BOOL, CanAddOrRemoveChunks)
    PROPERTY(clsVersion, BSTR, AudioHeaderFile)
    PROPERTY(clsVersion, BSTR, AudioDictFile)
    PROPERTY(clsVersion, BSTR, AudioDataFile)
    READ_PROPERTY(clsVersion, BSTR, ConfigFile)
    PROPERTY(clsVersion, BSTR, GameMapsFile)
    PROPERTY(clsVersion, BSTR, MapHeaderFile)
    PROPERTY(clsVersion, BSTR, VGADictFile)
    PROPERTY(clsVersion, BSTR, VGAGraphFile)
    PROPERTY(clsVersion, BSTR, VGAHeaderFile)
    PROPERTY(clsVersion, BSTR, VSwapFile)
    PROPERTY(clsVersion, BSTR, AudioMusFile)
    READ_PROPERTY(clsVersion, VARIANT_BOOL, MapsAreVersion10)
    READ_PROPERTY(clsVersion, VARIANT_BOOL, ReadSoundLengthsAsLong)
    WRITE_PROPERTY(clsVersion, BSTR, CompileExtension)
    PROPERTY(clsVersion, VARIANT_BOOL, HiResOutput)
    PROPERTY(clsVersion, BSTR, AppPath)
    READ_PROPERTY(clsVersion, BSTR, Extension)
    PROPERTY(clsVersion, BSTR, BackupFolder)
    PROPERTY(clsVersion, BSTR, OutputFolder)

    // Settings of the component itself.
    STDMETHODIMP get_VariantArrays(VARIANT_BOOL* value) override {
        return Boundary([&] { StoreResult(VariantArrays(), value); });
    }
    STDMETHODIMP put_VariantArrays(VARIANT_BOOL value) override {
        VariantArrays(value != VARIANT_FALSE);
        return S_OK;
    }
    STDMETHODIMP get_Quiet(VARIANT_BOOL* value) override {
        return Boundary([&] { StoreResult(QuietBoxes() != nullptr, value); });
    }
    STDMETHODIMP put_Quiet(VARIANT_BOOL value) override {
        return Boundary([&] {
            SetUserInterface(nullptr);
            QuietBoxes() = nullptr;
            if (value == VARIANT_FALSE)
                return;
            QuietBoxes() = std::make_unique<QuietUserInterface>();
            SetUserInterface(QuietBoxes().get());
        });
    }
    STDMETHODIMP get_Messages(BSTR* value) override {
        return Boundary([&] {
            std::string text;
            if (QuietBoxes() != nullptr) {
                for (const typMessage& message : QuietBoxes()->Messages())
                    text += message.Prompt + "\r\n";
            }
            StoreResult(text, value);
        });
    }
    // A window handle fits 32 bits on every system; hosts hold it in 32 or 64.
    STDMETHODIMP get_OwnerWindow(VARIANT* value) override {
        return Boundary([&] {
            VariantInit(Required(value));
            value->vt = VT_I4;
            value->lVal = static_cast<LONG>(reinterpret_cast<LONG_PTR>(OwnerWindow()));
        });
    }
    STDMETHODIMP put_OwnerWindow(VARIANT value) override {
        return Boundary([&] {
            Variant handle;
            Check(VariantChangeType(&*handle, &value, 0, VT_I8));
            OwnerWindow(reinterpret_cast<void*>(static_cast<LONG_PTR>(handle->llVal)));
        });
    }
};

}  // namespace

IUnknown* NewVersion() {
    return NewObject<VersionComponent>();
}

}  // namespace tessaro::automation
