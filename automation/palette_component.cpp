// Tessaro.clsPalette
#include "tessaro/palette.h"

#include "classes.h"
#include "component.h"
#include "property.h"

namespace tessaro::automation {
namespace {

class PaletteComponent final : public Component<IPalette, ::clsPalette, clsPalette> {
public:
    STDMETHODIMP CreatePaletteFileData(::enmSupportedPaletteTypes fileType, VARIANT palBytes,
                                       VARIANT* outBytes, VARIANT_BOOL* result) override {
        return Forward(result, &clsPalette::CreatePaletteFileData, fileType, palBytes, outBytes);
    }
    STDMETHODIMP LoadPaletteDataFromFile(BSTR fileName, VARIANT* palBytes, VARIANT* fileType,
                                         VARIANT_BOOL* result) override {
        return Forward(result, &clsPalette::LoadPaletteDataFromFile, fileName, palBytes, fileType);
    }
    STDMETHODIMP LoadPalette(VARIANT newPaletteFile) override {
        return Forward(&clsPalette::LoadPalette, newPaletteFile);
    }
    ITEM_PROPERTY(clsPalette, LONG, Color)
    READ_PROPERTY(clsPalette, LONG, NumberOfColors)
    PROPERTY(clsPalette, BSTR, JASCPalette)
    READ_PROPERTY(clsPalette, BSTR, PaletteFile)
};

}  // namespace

IUnknown* NewPalette() {
    return NewObject<PaletteComponent>();
}

}  // namespace tessaro::automation
