// Whatever the tables and lists of a page file and of an extra sound file hold, reading them ends
// in numbers or in a Failure, and what was read is written as it stood.
#include <algorithm>
#include <cstdlib>

#include "pagefile/extra_sounds.h"
#include "pagefile/page_file.h"

namespace {

using namespace tessaro;

template <class Body>
void OrFailure(Body&& body) {
    try {
        body();
    } catch (const Failure&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteSpan file(data, size);
    OrFailure([&] {
        ByteReader in(file);
        const PageTable table = PageTable::ReadFrom(in);
        ByteWriter out;
        table.WriteTo(out);
        if (!std::ranges::equal(out.View(), file.first(in.Position())))
            std::abort();
    });
    OrFailure([&] {
        ByteReader in(file);
        const ExtraTable table = ExtraTable::ReadFrom(in, 65536);
        if (table.lengths.size() != table.offsets.size())
            std::abort();
    });
    OrFailure([&] {
        const auto sounds = ReadSoundList(file, SoundListForm::Short);
        const ByteArray list = WriteSoundList(sounds, SoundListForm::Short);
        if (!std::ranges::equal(list, file.first(size / 4 * 4)))
            std::abort();
        (void)ReadSoundList(file, SoundListForm::Long);
    });
    return 0;
}
