// One save of a clsGameMaps.
#pragma once

#include <memory>

#include "maps/map_set.h"
#include "saving/save_set.h"
#include "tessaro/game_maps.h"

namespace tessaro {

class MapSave final : public SetSave {
public:
    explicit MapSave(clsGameMaps& host);

    std::vector<NewFile> Write() override;
    void Prove(const Files& files) override;
    std::vector<DataFile*> Read() override;
    std::vector<std::string> Changed() const override;
    void Adopt() override;
    std::string KeepAside(const std::vector<NewFile>& written) override;
    /// Every failure of this save goes under one name.
    std::string ReportName(const std::string&) const override {
        return "clsGameMaps.SaveMapFile: DoRestore";
    }
    void RaiseError(const Failure& failure) override;
    void RaiseComplete(bool success) override;

private:
    std::int32_t WriteMap(std::int32_t map, ByteWriter& out);
    const MapItem& Loaded(std::int32_t map);

    clsGameMaps& host_;
    clsGameMaps::Self& self_;
    MapWriting writing_;
    MapSet reread_;
    /// The plane or header slot last written: what SaveError passes, not a map, as meant.
    std::int32_t counter_ = 0;
};

std::unique_ptr<SetSave> MakeSave(clsGameMaps& maps);

}  // namespace tessaro
