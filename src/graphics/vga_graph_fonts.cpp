// Fonts, and text drawn with them.
#include "foundation/guard.h"
#include "graphics/fonts.h"
#include "graphics/vga_graph_self.h"

namespace tessaro {

bool clsVGAGraph::ParseFontData(const ByteArray& FontData, typFont& Font) {
    return Guarded("clsVGAGraph.ParseFontData", [&] {
        Font = ReadFont(FontData, self_->Ega());
        return true;
    });
}

bool clsVGAGraph::LoadWolfFont(std::int32_t Chunk, ByteArray& Data) {
    return Guarded("clsVGAGraph.LoadWolfFont", [&] {
        Data = self_->Load(Chunk);
        return true;
    });
}

std::int32_t clsVGAGraph::NumberOfFontCharacters(std::int32_t FontNum) const {
    return Guarded("clsVGAGraph.NumberOfFontCharacters", [&] {
        return static_cast<std::int32_t>(self_->set.Font(FontNum).Chars.size());
    });
}

bool clsVGAGraph::GetFontCharacter(std::int32_t FontNum, std::int32_t FontCharNum,
                                   ByteArray& ReturnData, std::int32_t BackColor,
                                   std::int32_t ForeColor) {
    return Guarded("clsVGAGraph.GetFontCharacter", [&] {
        ReturnData = RenderCharacter(self_->set.Font(FontNum), FontCharNum, BackColor, ForeColor);
        return true;
    });
}

bool clsVGAGraph::ConvertTextToFont(std::int32_t Font, const std::string& Text,
                                    ByteArray& ReturnData, std::int32_t& ReturnWidth,
                                    std::int32_t& ReturnHeight, std::int32_t BackColor,
                                    std::int32_t ForeColor) {
    return Guarded("clsVGAGraph.ConvertTextToFont", [&] {
        RenderedText text = RenderText(self_->set.Font(Font), Text, BackColor, ForeColor);
        ReturnData = std::move(text.pixels);
        ReturnWidth = text.width;
        ReturnHeight = text.height;
        return true;
    });
}

}  // namespace tessaro
