// The audio's part of a save of several sets.
#pragma once

#include <memory>

#include "saving/save_set.h"
#include "tessaro/audio_t.h"

namespace tessaro {

std::unique_ptr<SetSave> MakeSave(clsAudioT& audio);

}  // namespace tessaro
