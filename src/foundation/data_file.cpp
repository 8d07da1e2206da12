#include "foundation/data_file.h"

#include <algorithm>

namespace tessaro {

FilePrint PrintOf(ByteSpan bytes) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * 0x100000001B3;
    return {bytes.size(), hash};
}

DataFile DataFile::Read(const Files& files, const std::string& path) {
    DataFile file;
    file.bytes_ = files.Read(path);
    file.path_ = path;
    file.open_ = true;
    return file;
}

ByteSpan DataFile::Bytes() const {
    if (!open_)
        throw Failure(kBadFileNameOrNumber);
    return bytes_;
}

ByteSpan DataFile::At(std::int64_t offset, std::int64_t size) const {
    if (offset < 0 || size < 0)
        throw Failure(kInvalidProcedureCall);
    const ByteSpan bytes = Bytes();
    if (std::cmp_greater(offset, bytes.size()) ||
        std::cmp_greater(size, bytes.size() - static_cast<std::size_t>(offset)))
        throw Failure(kInputPastEnd);
    return bytes.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

void DataFile::Close() {
    if (!open_)
        return;
    if (!assumed_)
        print_ = PrintOf(bytes_);
    bytes_ = {};
    open_ = false;
}

void DataFile::Reopen(const Files& files) {
    if (open_)
        return;
    ByteArray bytes = files.Read(path_);
    if (PrintOf(bytes) != print_)
        throw Failure(kPermissionDenied,
                      "The file was changed since it was read; open the set again: " + path_);
    bytes_ = std::move(bytes);
    open_ = true;
    assumed_ = false;
}

bool DataFile::Is(ByteSpan bytes) const {
    if (open_ && !assumed_ && std::ranges::equal(bytes, bytes_))
        return true;
    if (open_ && !assumed_ && !alsoExpected_)
        return false;
    const FilePrint print = PrintOf(bytes);
    return ((!open_ || assumed_) && print == print_) || print == alsoExpected_;
}

void DataFile::Assume(ByteSpan bytes) {
    print_ = PrintOf(bytes);
    assumed_ = true;
    alsoExpected_.reset();
}

}  // namespace tessaro
