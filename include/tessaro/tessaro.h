// The whole public interface.
#pragma once

#include "tessaro/audio_t.h"
#include "tessaro/failure.h"
#include "tessaro/files.h"
#include "tessaro/game_maps.h"
#include "tessaro/history.h"
#include "tessaro/iphone_settings.h"
#include "tessaro/palette.h"
#include "tessaro/save_together.h"
#include "tessaro/sound.h"
#include "tessaro/sound_files.h"
#include "tessaro/types.h"
#include "tessaro/user_interface.h"
#include "tessaro/version.h"
#include "tessaro/vga_graph.h"
#include "tessaro/vswap.h"
