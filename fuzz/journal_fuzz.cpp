// Whatever a journal says, a recovery touches nothing but the files of its own folder that it
// names, and brings none of them into a state that the journal does not state.
#include <cstdlib>

#include "foundation/names.h"
#include "saving/recovery.h"

using namespace tessaro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteSpan bytes(data, size);
    if (const auto journal = ReadJournal(bytes)) {
        const ByteArray again = WriteJournal(*journal);
        if (!std::equal(again.begin(), again.end(), bytes.begin(), bytes.end()))
            std::abort();
    }
    const ByteArray old{'o', 'l', 'd'};
    const std::string outside = JoinPath("D", "MAPHEAD.WL1");
    MemoryFiles files;
    files.Set(outside, old);
    files.Set(JoinPath(JoinPath("D", "game"), "MAPHEAD.WL1"), old);
    files.Set(JoinPath(JoinPath("D", "game"), TemporaryName("0123456789abcdef", 0)), {'n'});
    // Its last line is made right, so that what stands above is followed.
    std::string text(bytes.begin(), bytes.end());
    text = text.substr(0, text.rfind("checksum "));
    const ByteArray above(text.begin(), text.end());
    for (const bool repaired : {false, true}) {
        ByteArray all(bytes.begin(), bytes.end());
        if (repaired) {
            all = above;
            const std::string sum = JournalChecksumLine(above);
            all.insert(all.end(), sum.begin(), sum.end());
        }
        files.Set(JoinPath(JoinPath("D", "game"), kJournalName), all);
        const RecoveryReport report = Recover(files, JoinPath("D", "game"));
        if (files.Read(outside) != old)
            std::abort();
        if (report.state == RecoveryReport::Unreadable &&
            !files.Kind(JoinPath(JoinPath("D", "game"), kJournalName)))
            std::abort();
    }
    return 0;
}
