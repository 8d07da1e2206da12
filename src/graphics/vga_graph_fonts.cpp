// Fonts, and text drawn with them.
#include "foundation/guard.h"
#include "graphics/fonts.h"
#include "graphics/vga_graph_self.h"
#include "platform/system.h"

namespace tessaro {

const typFont& clsVGAGraph::Self::Font(std::int32_t number) const {
    if (number < 1 || number > std::ssize(fonts))
        throw Failure(kSubscriptOutOfRange);
    return fonts[static_cast<std::size_t>(number - 1)];
}

bool clsVGAGraph::Self::LoadWolfFonts() {
    return Guarded("clsVGAGraph.LoadWolfFonts", [&] {
        for (std::int32_t number = 1; number <= set.numberOfFonts; ++number) {
            const std::int32_t chunk = set.startFonts + number - 1;
            if (!Cache(chunk))
                throw Failure(1608, "Error loading font #" + std::to_string(number));
            const bool parsed = Guarded("clsVGAGraph.ParseFontData", [&] {
                fonts.push_back(ReadFont(Data(chunk), ConfiguredGame().egaGraphics));
                return true;
            });
            if (!parsed) {
                CurrentUserInterface().MsgBox("Error parsing font data", mbCritical | mbOKOnly, "",
                                              "", 0);
                break;
            }
        }
        return true;
    });
}

bool clsVGAGraph::ParseFontData(const ByteArray& FontData, typFont& Font) {
    return Guarded("clsVGAGraph.ParseFontData", [&] {
        Font = ReadFont(FontData, ConfiguredGame().egaGraphics);
        return true;
    });
}

bool clsVGAGraph::LoadWolfFont(std::int32_t Chunk, ByteArray& Data) {
    return Guarded("clsVGAGraph.LoadWolfFont", [&] {
        if (!self_->Cache(Chunk))
            return false;
        Data = self_->Data(Chunk);
        return true;
    });
}

std::int32_t clsVGAGraph::NumberOfFontCharacters(std::int32_t FontNum) const {
    return Guarded("clsVGAGraph.NumberOfFontCharacters",
                   [&] { return static_cast<std::int32_t>(self_->Font(FontNum).Chars.size()); });
}

bool clsVGAGraph::GetFontCharacter(std::int32_t FontNum, std::int32_t FontCharNum,
                                   ByteArray& ReturnData, std::int32_t BackColor,
                                   std::int32_t ForeColor) {
    return Guarded("clsVGAGraph.GetFontCharacter", [&] {
        ReturnData = RenderCharacter(self_->Font(FontNum), FontCharNum, BackColor, ForeColor);
        return true;
    });
}

bool clsVGAGraph::ConvertTextToFont(std::int32_t Font, const std::string& Text,
                                    ByteArray& ReturnData, std::int32_t& ReturnWidth,
                                    std::int32_t& ReturnHeight, std::int32_t BackColor,
                                    std::int32_t ForeColor) {
    return Guarded("clsVGAGraph.ConvertTextToFont", [&] {
        RenderedText text = RenderText(self_->Font(Font), Text, BackColor, ForeColor);
        ReturnData = std::move(text.pixels);
        ReturnWidth = text.width;
        ReturnHeight = text.height;
        return true;
    });
}

}  // namespace tessaro
