// Tessaro.clsVGAGraph
#include "tessaro/vga_graph.h"

#include "classes.h"
#include "component.h"
#include "property.h"

namespace tessaro::automation {
namespace {

class VGAGraphComponent final
    : public SavingComponent<IVGAGraph, ::clsVGAGraph, clsVGAGraph, ISaveEvents> {
public:
    STDMETHODIMP InitializeGraphics(VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::InitializeGraphics);
    }
    STDMETHODIMP CloseFile() override { return Forward(&clsVGAGraph::CloseFile); }
    STDMETHODIMP StopSave() override { return Forward(&clsVGAGraph::StopSave); }

    PROPERTY(clsVGAGraph, LONG, NumberOfChunks)
    PROPERTY(clsVGAGraph, LONG, StartFonts)
    PROPERTY(clsVGAGraph, LONG, StartPics)
    PROPERTY(clsVGAGraph, LONG, NumberOfPics)
    PROPERTY(clsVGAGraph, LONG, NumberOfFonts)
    READ_ITEM_PROPERTY(clsVGAGraph, LONG, NumberOfFontCharacters)
    PROPERTY(clsVGAGraph, VARIANT_BOOL, EGAGraphics)
    PROPERTY(clsVGAGraph, VARIANT_BOOL, J98Mode)
    READ_PROPERTY(clsVGAGraph, VARIANT_BOOL, CouldLoadNonPictureData)
    ITEM_PROPERTY(clsVGAGraph, ::enmVGRAGRAPHTypes, ChunkDataType)

    STDMETHODIMP DataTypeChunk(::enmVGRAGRAPHTypes vgaType, LONG pos, LONG* result) override {
        return Forward(result, &clsVGAGraph::DataTypeChunk, vgaType, pos);
    }
    STDMETHODIMP NumberDataTypeChunks(::enmVGRAGRAPHTypes vgaType, LONG* result) override {
        return Forward(result, &clsVGAGraph::NumberDataTypeChunks, vgaType);
    }
    STDMETHODIMP DemoLevel(LONG demoNum, LONG* result) override {
        return Forward(result, &clsVGAGraph::DemoLevel, demoNum);
    }
    STDMETHODIMP GetTile8Info(LONG* numberOfTiles, LONG* numTilesWide,
                              LONG* numTilesHigh) override {
        return Forward(&clsVGAGraph::GetTile8Info, numberOfTiles, numTilesWide, numTilesHigh);
    }
    STDMETHODIMP SetTile8Info(LONG numberOfTiles, LONG numTilesWide, LONG numTilesHigh) override {
        return Forward(&clsVGAGraph::SetTile8Info, numberOfTiles, numTilesWide, numTilesHigh);
    }

    STDMETHODIMP LoadTessaro(LONG chunk, VARIANT* data, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadTessaro, chunk, data);
    }
    STDMETHODIMP SetChunkData(LONG chunk, VARIANT data) override {
        return Forward(&clsVGAGraph::SetChunkData, chunk, data);
    }
    STDMETHODIMP SetMaskData(LONG chunk, VARIANT data) override {
        return Forward(&clsVGAGraph::SetMaskData, chunk, data);
    }

    STDMETHODIMP LoadWolfPalette(LONG chunk, VARIANT* colors, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadWolfPalette, chunk, colors);
    }
    STDMETHODIMP SetPaletteToChunk(LONG chunkNum) override {
        return Forward(&clsVGAGraph::SetPaletteToChunk, chunkNum);
    }
    STDMETHODIMP LoadWolfPicture(LONG chunk, VARIANT* data, LONG* height, LONG* width,
                                 VARIANT_BOOL forcePaletteLoad, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadWolfPicture, chunk, data, height, width,
                       forcePaletteLoad);
    }
    STDMETHODIMP LoadTile8(LONG tileNum, VARIANT* data, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadTile8, tileNum, data);
    }
    STDMETHODIMP LoadCompleteTile8(VARIANT* data, LONG* height, LONG* width,
                                   VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadCompleteTile8, data, height, width);
    }
    STDMETHODIMP LoadCompleteMaskTile8(VARIANT* data, VARIANT* mask, LONG* height, LONG* width,
                                       VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadCompleteMaskTile8, data, mask, height, width);
    }
    STDMETHODIMP LoadMaskPicture(LONG chunk, VARIANT* data, VARIANT* mask, LONG* height,
                                 LONG* width, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadMaskPicture, chunk, data, mask, height, width);
    }
    STDMETHODIMP LoadEGASprite(LONG chunk, VARIANT* data, VARIANT* mask, LONG* height, LONG* width,
                               VARIANT* spriteHead, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadEGASprite, chunk, data, mask, height, width,
                       spriteHead);
    }
    STDMETHODIMP GetPictureDimensions(LONG chunk, LONG* width, LONG* height) override {
        return Forward(&clsVGAGraph::GetPictureDimensions, chunk, width, height);
    }
    STDMETHODIMP LoadAreaNames(LONG chunk, VARIANT* areaNames, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadAreaNames, chunk, areaNames);
    }

    STDMETHODIMP ParseFontData(VARIANT fontData, VARIANT* font, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::ParseFontData, fontData, font);
    }
    STDMETHODIMP LoadWolfFont(LONG chunk, VARIANT* data, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::LoadWolfFont, chunk, data);
    }
    STDMETHODIMP GetFontCharacter(LONG fontNum, LONG fontCharNum, VARIANT* returnData,
                                  LONG backColor, LONG foreColor, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::GetFontCharacter, fontNum, fontCharNum, returnData,
                       backColor, foreColor);
    }
    STDMETHODIMP ConvertTextToFont(LONG font, BSTR text, VARIANT* returnData, LONG* returnWidth,
                                   LONG* returnHeight, LONG backColor, LONG foreColor,
                                   VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::ConvertTextToFont, font, text, returnData, returnWidth,
                       returnHeight, backColor, foreColor);
    }

    STDMETHODIMP GetByteHuffLength(BYTE value, LONG* result) override {
        return Forward(result, &clsVGAGraph::GetByteHuffLength, value);
    }
    STDMETHODIMP GetCompressedSize(VARIANT data, LONG* result) override {
        return Forward(result, &clsVGAGraph::GetCompressedSize, data);
    }
    STDMETHODIMP BuildVGADICT(VARIANT counts, VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::BuildVGADICT, counts);
    }
    STDMETHODIMP SaveVGAGraph(VARIANT_BOOL* result) override {
        return Forward(result, &clsVGAGraph::SaveVGAGraph);
    }
};

}  // namespace

IUnknown* NewVGAGraph() {
    return NewObject<VGAGraphComponent>();
}

}  // namespace tessaro::automation
