#include "tessaro/failure.h"

#include <utility>

namespace tessaro {
namespace {

const char* ClassicDescription(std::int32_t number) {
    switch (number) {
        case kInvalidProcedureCall:
            return "Invalid procedure call or argument";
        case kOverflow:
            return "Overflow";
        case kOutOfMemory:
            return "Out of memory";
        case kSubscriptOutOfRange:
            return "Subscript out of range";
        case kBadFileNameOrNumber:
            return "Bad file name or number";
        case kFileNotFound:
            return "File not found";
        case kDeviceIOError:
            return "Device I/O error";
        case kDiskFull:
            return "Disk full";
        case kInputPastEnd:
            return "Input past end of file";
        case kPermissionDenied:
            return "Permission denied";
        case kPathFileAccess:
            return "Path/File access error";
        case kPathNotFound:
            return "Path not found";
        default:
            return "Application-defined or object-defined error";
    }
}

}  // namespace

Failure::Failure(std::int32_t number) : Failure(number, ClassicDescription(number)) {}

Failure::Failure(std::int32_t number, std::string description, std::int32_t line)
    : Number(number), Description(std::move(description)), Line(line) {}

Failure::Failure(const Failure&) = default;
Failure& Failure::operator=(const Failure&) = default;
Failure::~Failure() = default;

}  // namespace tessaro
