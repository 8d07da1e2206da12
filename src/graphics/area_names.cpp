#include "graphics/area_names.h"

namespace tessaro {

bool ReadAreaNames(ByteSpan text, std::vector<std::string>& names) {
    names.assign(kAreaNames, {});
    std::size_t count = 0;
    std::size_t start = 2;
    for (std::size_t i = start; i + 1 < text.size(); ++i) {
        if (text[i] != '\r' || text[i + 1] != '\n' || i <= start)
            continue;
        if (count == kAreaNames)
            return false;
        const ByteSpan name = text.subspan(start, i - start);
        names[count++].assign(name.begin(), name.end());
        start = i + 2;
    }
    return true;
}

}  // namespace tessaro
