// Tessaro.clsAudioT
#include "tessaro/audio_t.h"

#include "classes.h"
#include "component.h"
#include "property.h"

namespace tessaro::automation {
namespace {

class AudioTComponent final : public SavingComponent<IAudioT, ::clsAudioT, clsAudioT, ISaveEvents> {
public:
    READ_PROPERTY(clsAudioT, LONG, NumberOfSongs)
    PROPERTY(clsAudioT, LONG, NumberOfChunks)
    READ_PROPERTY(clsAudioT, LONG, NumberOfSounds)
    READ_PROPERTY(clsAudioT, LONG, StartMusic)

    STDMETHODIMP LoadChunk(LONG chunk, VARIANT* data, LONG* size, VARIANT_BOOL* result) override {
        return Forward(result, &clsAudioT::LoadChunk, chunk, data, size);
    }
    STDMETHODIMP SetChunkData(LONG chunk, VARIANT data) override {
        return Forward(&clsAudioT::SetChunkData, chunk, data);
    }
    STDMETHODIMP SaveAudioT(VARIANT_BOOL* result) override {
        return Forward(result, &clsAudioT::SaveAudioT);
    }
    STDMETHODIMP InitializeMusic(VARIANT_BOOL* result) override {
        return Forward(result, &clsAudioT::InitializeMusic);
    }
    STDMETHODIMP CloseFile() override { return Forward(&clsAudioT::CloseFile); }
    STDMETHODIMP StopSave() override { return Forward(&clsAudioT::StopSave); }
};

}  // namespace

IUnknown* NewAudioT() {
    return NewObject<AudioTComponent>();
}

}  // namespace tessaro::automation
