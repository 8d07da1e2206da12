// Tessaro.clsVSwap
#include "tessaro/vswap.h"

#include "classes.h"
#include "component.h"
#include "property.h"

namespace tessaro::automation {
namespace {

class VSwapComponent final : public SavingComponent<IVSwap, ::clsVSwap, clsVSwap, IVSwapEvents> {
public:
    PROPERTY(clsVSwap, LONG, NumberOfWalls)
    PROPERTY(clsVSwap, LONG, NumberOfSounds)
    PROPERTY(clsVSwap, LONG, NumberOfSprites)
    READ_PROPERTY(clsVSwap, VARIANT_BOOL, HiResInput)
    READ_PROPERTY(clsVSwap, LONG, NumberOfChunks)

    STDMETHODIMP LoadChunk(LONG chunkNum, VARIANT* data) override {
        return Forward(&clsVSwap::LoadChunk, chunkNum, data);
    }
    STDMETHODIMP LoadWall(LONG wallNum, VARIANT* data, VARIANT_BOOL* result) override {
        return Forward(result, &clsVSwap::LoadWall, wallNum, data);
    }
    STDMETHODIMP LoadSound(LONG soundNum, VARIANT* data, LONG* length,
                           VARIANT_BOOL* result) override {
        return Forward(result, &clsVSwap::LoadSound, soundNum, data, length);
    }
    STDMETHODIMP LoadSprite(LONG spriteNum, VARIANT* data, VARIANT_BOOL* result) override {
        return Forward(result, &clsVSwap::LoadSprite, spriteNum, data);
    }
    STDMETHODIMP GetSpriteCompressedSize(VARIANT data, ::enmVSWAPCompression compression,
                                         LONG* result) override {
        return Forward(result, &clsVSwap::GetSpriteCompressedSize, data, compression);
    }
    STDMETHODIMP SetChunkData(LONG chunk, VARIANT data) override {
        return Forward(&clsVSwap::SetChunkData, chunk, data);
    }
    STDMETHODIMP SetSoundData(LONG soundNum, VARIANT data) override {
        return Forward(&clsVSwap::SetSoundData, soundNum, data);
    }
    STDMETHODIMP SaveVSwap(::enmVSWAPCompression compression, VARIANT_BOOL* result) override {
        return Forward(result, &clsVSwap::SaveVSwap, compression);
    }
    STDMETHODIMP Initialize(VARIANT_BOOL* result) override {
        return Forward(result, &clsVSwap::Initialize);
    }
    STDMETHODIMP CloseFile() override { return Forward(&clsVSwap::CloseFile); }
    STDMETHODIMP StopSave() override { return Forward(&clsVSwap::StopSave); }
};

}  // namespace

IUnknown* NewVSwap() {
    return NewObject<VSwapComponent>();
}

}  // namespace tessaro::automation
