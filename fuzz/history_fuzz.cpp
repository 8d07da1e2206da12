// Whatever a history says, it is read, listed and gone back in or refused, and its own lines are
// written again as they were read.
#include <cstdlib>

#include "foundation/names.h"
#include "saving/undo.h"

using namespace tessaro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteSpan bytes(data, size);
    const HistoryContent history = ReadHistory(bytes, "base");
    for (const SaveRecord& record : history.records) {
        const std::string line = BeginLine(record, "base");
        const auto again = ReadHistory(ByteArray(line.begin(), line.end()), "base");
        if (again.records.size() != 1 || again.records[0].files != record.files ||
            again.records[0].items != record.items)
            std::abort();
    }
    MemoryFiles files;
    const std::string folder = JoinPath("game", "Backup");
    files.Set(JoinPath("game", "VSWAP.WL1"), {'n'});
    files.Set(JoinPath(folder, "VSWAP.WL1.001"), {'o'});
    files.Set(JoinPath(folder, kHistoryName), ByteArray(bytes.begin(), bytes.end()));
    files.Set(JoinPath("outside", "file"), {'n'});
    try {
        std::vector<std::string> notices;
        SettleHistory(files, folder, {}, notices);
        const SaveList list(files, folder, {});
        std::vector<DataFile> read;
        if (list.Earlier())
            Commit(files, list.PlanFor(*list.Earlier(), read));
        PruneHistory(files, folder, {}, 1);
    } catch (const Failure&) {
    }
    if (files.Read(JoinPath("outside", "file")) != ByteArray{'n'})
        std::abort();
    return 0;
}
