#include "tessaro/save_together.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "audio/audio_save.h"
#include "foundation/guard.h"
#include "graphics/vga_graph_save.h"
#include "maps/game_maps_save.h"
#include "pagefile/vswap_save.h"

namespace tessaro {

bool SaveTogether(const typContainers& Containers) {
    return Guarded("SaveTogether", [&] {
        std::vector<std::unique_ptr<SetSave>> saves;
        if (Containers.Maps != nullptr)
            saves.push_back(MakeSave(*Containers.Maps));
        if (Containers.Graphics != nullptr)
            saves.push_back(MakeSave(*Containers.Graphics));
        if (Containers.Pages != nullptr)
            saves.push_back(MakeSave(*Containers.Pages, Containers.Compression));
        if (Containers.Audio != nullptr)
            saves.push_back(MakeSave(*Containers.Audio));
        if (saves.empty())
            return true;
        std::vector<SetSave*> sets;
        for (const auto& save : saves) {
            if (&save->GameOf() != &saves.front()->GameOf())
                throw Failure(kInvalidProcedureCall,
                              "The containers belong to different games; save those of each game "
                              "together.");
            sets.push_back(save.get());
        }
        return SaveSets(sets);
    });
}

}  // namespace tessaro
