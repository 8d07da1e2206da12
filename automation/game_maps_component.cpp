// Tessaro.clsGameMaps
#include "tessaro/game_maps.h"

#include "classes.h"
#include "component.h"
#include "property.h"

namespace tessaro::automation {
namespace {

class GameMapsComponent final
    : public SavingComponent<IGameMaps, ::clsGameMaps, clsGameMaps, ISaveEvents> {
public:
    STDMETHODIMP Initialize(VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::Initialize);
    }
    STDMETHODIMP CloseFile() override { return Forward(&clsGameMaps::CloseFile); }
    STDMETHODIMP StopSave() override { return Forward(&clsGameMaps::StopSave); }
    STDMETHODIMP LoadMap(LONG mapNum, VARIANT* mapDataPlanes, LONG* width, LONG* height,
                         VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::LoadMap, mapNum, mapDataPlanes, width, height);
    }
    STDMETHODIMP SetMapCode(LONG mapNum, LONG plane, LONG x, LONG y, LONG value,
                            VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::SetMapCode, mapNum, plane, x, y, value);
    }

    READ_PROPERTY(clsGameMaps, LONG, NumberOfMaps)
    ITEM_PROPERTY(clsGameMaps, BSTR, MapName)
    READ_ITEM_PROPERTY(clsGameMaps, ::enmCorruptLevel, CorruptMap)
    READ_PROPERTY(clsGameMaps, SHORT, InputMapPlanes)
    READ_PROPERTY(clsGameMaps, SHORT, InputMapNameSize)
    PROPERTY(clsGameMaps, SHORT, OutputMapPlanes)
    PROPERTY(clsGameMaps, SHORT, OutputMapNameSize)
    READ_PROPERTY(clsGameMaps, VARIANT_BOOL, LoadLengthsAsLong)
    PROPERTY(clsGameMaps, VARIANT_BOOL, SaveLengthsAsLong)
    PROPERTY(clsGameMaps, LONG, LongRLEWTag)
    PROPERTY(clsGameMaps, LONG, CompileRLEWTAG)
    PROPERTY(clsGameMaps, BYTE, NEARTAG)
    PROPERTY(clsGameMaps, BYTE, FARTAG)
    PROPERTY(clsGameMaps, BYTE, CompileNEARTAG)
    PROPERTY(clsGameMaps, BYTE, CompileFARTAG)

    STDMETHODIMP SaveMapFile(VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::SaveMapFile);
    }
    STDMETHODIMP ResizeMap(LONG mapNum, LONG newWidth, LONG newHeight, LONG mapFill,
                           VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::ResizeMap, mapNum, newWidth, newHeight, mapFill);
    }
    STDMETHODIMP AddMap(LONG mapNum) override { return Forward(&clsGameMaps::AddMap, mapNum); }
    STDMETHODIMP RemoveMap(LONG mapNum) override {
        return Forward(&clsGameMaps::RemoveMap, mapNum);
    }
    STDMETHODIMP ExportMap(LONG mapNum, BSTR fileName, VARIANT_BOOL exportNames,
                           ::enmMapFileType* fileType, VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::ExportMap, mapNum, fileName, exportNames, fileType);
    }
    STDMETHODIMP ExportMultiMap(VARIANT mapArray, BSTR fileName, VARIANT_BOOL exportNames,
                                VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::ExportMultiMap, mapArray, fileName, exportNames);
    }
    STDMETHODIMP ImportMap(LONG mapNum, BSTR fileName, VARIANT_BOOL* result) override {
        return Forward(result, &clsGameMaps::ImportMap, mapNum, fileName);
    }
    STDMETHODIMP ImportMapsForClipboard(BSTR fileName, LONG* result) override {
        return Forward(result, &clsGameMaps::ImportMapsForClipboard, fileName);
    }
    STDMETHODIMP GetClipboardMap(LONG mapNum, VARIANT* planeData, LONG* width, LONG* height,
                                 BSTR* name) override {
        return Forward(&clsGameMaps::GetClipboardMap, mapNum, planeData, width, height, name);
    }
};

}  // namespace

IUnknown* NewGameMaps() {
    return NewObject<GameMapsComponent>();
}

}  // namespace tessaro::automation
