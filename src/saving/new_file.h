// A file as a save wants it: complete, in memory.
#pragma once

#include <string>

#include "tessaro/types.h"

namespace tessaro {

struct NewFile {
    std::string path;
    ByteArray content;
};

}  // namespace tessaro
