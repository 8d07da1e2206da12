// The pitch of a sound as it goes on.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace tessaro::sound {

inline constexpr std::uint32_t kPitchRate = 22050;

/// The pitch in hertz around each of the times 0, 1/140 s, 2/140 s ... of 24-bit samples of 22050 a
/// second; 0 where it is soft. Where nothing repeats it is half as many as it crosses zero.
///
/// Of all shifts of a stretch against itself the first is taken that differs little from it,
/// measured by the mean of the differences of all shorter ones.
std::vector<double> FollowPitch(std::span<const std::int32_t> samples);

}  // namespace tessaro::sound
