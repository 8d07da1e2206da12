// The failure that the library's inner code throws and its error state holds.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "tessaro/export.h"

namespace tessaro {

/// The classic run-time failure numbers that the library uses, with their classic descriptions.
inline constexpr std::int32_t kInvalidProcedureCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kBadFileNameOrNumber = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kDeviceIOError = 57;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kInputPastEnd = 62;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathFileAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;

/// One failure: what the message box shows and the log records. Public operations never let it
/// out: they report it and return their failure value. (The one exception is a log that cannot be
/// written, because the routine that reports failures has nothing to report to.)
class TESSARO_API Failure : public std::exception {
public:
    /// A run-time failure with its classic description.
    explicit Failure(std::int32_t number);
    Failure(std::int32_t number, std::string description, std::int32_t line = 0);
    Failure(const Failure&);
    Failure& operator=(const Failure&);
    ~Failure() override;

    const char* what() const noexcept override { return Description.c_str(); }

    std::int32_t Number;
    std::string Description;
    std::int32_t Line;  ///< source line, 0 where none is tracked
};

}  // namespace tessaro
