// Saving a set, and the dictionaries that sets are compressed with.
#include <algorithm>

#include "foundation/guard.h"
#include "graphics/vga_graph_save.h"
#include "graphics/vga_graph_self.h"
#include "huffman/dictionary.h"
#include "huffman/mod_huffman.h"
#include "saving/save_set.h"
#include "saving/transaction.h"

namespace tessaro {

/// One save of one object.
class GraphicsSave final : public SetSave {
public:
    explicit GraphicsSave(clsVGAGraph& owner)
        : SetSave("clsVGAGraph.SaveVGAGraph",
                  owner.self_->game ? owner.self_->game : SharedStore().game, owner.self_->saving),
          owner_(owner),
          self_(*owner.self_) {}

    std::vector<NewFile> Write() override {
        Game& settings = Settings();
        if (!settings.canCompileVGAGraph || self_.set.catalog.j98)
            throw Failure(kInvalidProcedureCall, "The graphics of this game cannot be saved.");
        if (!self_.game)  // else the game's own files would make way for empty ones
            throw Failure(kInvalidProcedureCall, "No graphics are loaded.");
        settings.vgaHeaderFile = settings.OutputPath(settings.vgaHeaderFile);
        settings.vgaGraphFile = settings.OutputPath(settings.vgaGraphFile);
        settings.vgaDictFile = settings.OutputPath(settings.vgaDictFile);
        settings.egaGraphics = self_.set.catalog.ega;
        settings.graphicsHeaderEntrySize = 3;
        const GraphicsSet& set = self_.Opened();
        inPlace_ = IsInPlace(*settings.files, settings.vgaGraphFile, set.data);
        return set.Write(
            {settings.vgaHeaderFile, settings.vgaGraphFile, settings.vgaDictFile},
            settings.compileDictionaryLoaded ? settings.compileDictionary : set.dictionary,
            {[&](std::int32_t chunk) { chunk_ = chunk; },
             [&](std::int32_t chunk) {
                 Flag().Status([&] {
                     if (owner_.SaveStatus)
                         owner_.SaveStatus(chunk + 1, set.Count());
                 });
             }});
    }

    void Prove(const Files& files) override {
        reread_ = GraphicsSet::Open(AtStart(), files, {});
        self_.set.RequireSame(reread_);
    }

    std::vector<DataFile*> Read() override {
        const Files& files = *AtStart().files;
        GraphicsSet& set = self_.set;
        std::vector<DataFile*> read;
        if (IsInPlace(files, AtStart().vgaHeaderFile, set.header))
            read.push_back(&set.header);
        if (inPlace_)
            read.push_back(&set.data);
        if (IsInPlace(files, AtStart().vgaDictFile, set.dictionaryFile))
            read.push_back(&set.dictionaryFile);
        return read;
    }

    std::vector<std::string> Changed() const override {
        std::vector<std::string> items;
        for (std::size_t chunk = 0; chunk < self_.set.slots.size(); ++chunk)
            if (self_.set.slots[chunk].replaced)
                items.push_back("graphics " + std::to_string(chunk));
        return items;
    }

    void Adopt() override {
        if (!inPlace_)
            return;
        self_.set.Adopt(std::move(reread_));
        self_.found->dictionary = self_.set.dictionary;
        self_.game->expandDictionary = self_.set.dictionary;
    }

    void RaiseError(const Failure& failure) override {
        if (owner_.SaveError)
            owner_.SaveError(chunk_, failure.Description);
    }
    void RaiseComplete(bool success) override {
        if (owner_.SaveComplete)
            owner_.SaveComplete(success);
    }

private:
    clsVGAGraph& owner_;
    clsVGAGraph::Self& self_;
    GraphicsSet reread_;
    bool inPlace_ = false;
    std::int32_t chunk_ = 0;
};

bool clsVGAGraph::SaveVGAGraph() {
    GraphicsSave save(*this);
    return SaveSet(save);
}

std::unique_ptr<SetSave> MakeSave(clsVGAGraph& graphics) {
    return std::make_unique<GraphicsSave>(graphics);
}

void clsVGAGraph::StopSave() {
    Guarded("clsVGAGraph.StopSave", [&] { self_->saving.AskToStop(); });
}

std::int32_t clsVGAGraph::GetByteHuffLength(std::uint8_t Value) {
    return modHuffmanExpand::DetermineHuffLength(Value, self_->GameOf().compileDictionary);
}

std::int32_t clsVGAGraph::GetCompressedSize(const ByteArray& Data) {
    ByteArray compressed;
    if (!modHuffmanExpand::HuffCompress(Data, compressed, self_->GameOf().compileDictionary))
        return -1;
    return static_cast<std::int32_t>(compressed.size());
}

bool clsVGAGraph::BuildVGADICT(const std::vector<std::int32_t>& Counts) {
    return Guarded("clsVGAGraph.BuildVGADICT", [&] {
        self_->saving.RefuseChange();
        std::array<std::int32_t, 256> counts{};
        if (Counts.size() < counts.size())
            throw Failure(kSubscriptOutOfRange);
        std::copy_n(Counts.begin(), counts.size(), counts.begin());
        if (!modHuffmanize::Huffmanize(counts))
            return false;
        const Game& game = self_->GameOf();
        const std::string path = game.OutputPath(game.vgaDictFile);
        const ByteArray bytes = WriteDictionary(SharedStore().builtDictionary);
        DataFile& read = self_->set.dictionaryFile;
        const bool inPlace = IsInPlace(*game.files, path, read);
        SavePlan plan;
        plan.files = {{path, bytes}};
        plan.backupFolder = game.backupFolder;
        plan.changed = {"graphics dictionary"};
        const SaveOutcome outcome = Commit(*game.files, plan);
        if (inPlace)
            read.Assume(bytes);  // a save of this container may replace it
        ShowNotices(outcome.notices);
        return true;
    });
}

}  // namespace tessaro
