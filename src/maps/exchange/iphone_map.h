// The iPhone map file.
//
//  offset   width   field
//  0        4       "!ID!"
//  4        2       RLEW tag
//  6        2, 2    width, height
//  10       4       floor colour
//  14       4       ceiling colour
//  18       3 x 2   packed lengths of planes 0, 1, 2
//  24       3 x 4   their offsets in the file
//  36       2       length of the map name (written below 256)
//  38       2       length of the music name (written below 256)
//  40       4       par time: 32-bit float, minutes
//  44       5       par time as "MM:SS"; "??:??" where there is none
//  49       n       map name, then the music name, without terminators
//  then             planes: RLEW with the file's tag, then Carmack, a 2-byte length before each
//                   layer whatever the container's own files have
#pragma once

#include "maps/carmack.h"
#include "tessaro/iphone_settings.h"

namespace tessaro {

inline constexpr std::size_t kIPhoneMinimumSize = 50;
inline constexpr std::size_t kIPhonePlanes = 3;

/// The bytes of a plane. Fails for a map whose planes the 2-byte lengths cannot hold.
std::size_t IPhonePlaneBytes(std::int32_t width, std::int32_t height);

/// Everything in a file, planes expanded. A plane of length 0 is an empty plane.
iPhoneMapSettings ReadIPhoneMap(ByteSpan file, CarmackTags tags);

/// The fields and names alone, for a file that is about to be written anew: its planes do not
/// matter, and a damaged one gives what it has.
iPhoneMapSettings ReadIPhoneSettings(ByteSpan file);

/// A whole file. Missing planes are zeros. A plane that cannot be packed is refused.
ByteArray WriteIPhoneMap(const iPhoneMapSettings& settings, CarmackTags tags);

/// What the form starts from where there is no earlier file.
iPhoneMapSettings DefaultIPhoneSettings(std::string_view mapName, std::uint16_t tag);

struct ParTime {
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;
};

/// Minutes and seconds of a par time in minutes: seconds to the nearest, 60 of them a further
/// minute, at most 99:59. What is no time at all is 0:00.
ParTime SplitParTime(float minutes);

}  // namespace tessaro
