// The sample game as a fixture: whole game folders of known content.
#pragma once

#include <vector>

#include "sample/sample.h"
#include "support/support.h"

namespace tessaro::test {

inline void WriteFiles(const TempFolder& folder, const std::vector<sample::SampleFile>& files) {
    for (const sample::SampleFile& file : files)
        folder.Write(file.name, file.content);
}

}  // namespace tessaro::test
