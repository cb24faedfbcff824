#pragma once

#include <string>
#include <string_view>

namespace tavo {

// Times of video ads as documents write them and as a countdown shows them. Text that is no number
// counts as zero; nothing here fails.

// Seconds of "hours:minutes:seconds", with an optional fraction after a point. Quirk: the digits
// of the fraction are divided by 100, however many there are, so "00:00:05.500" is 10 seconds;
// campaigns have been set up with times that come out right this way.
[[nodiscard]] double secondsWithString(std::string_view text);

// The part `percent` ("25%") of `duration` (seconds, as text).
[[nodiscard]] double skipOffset(std::string_view percent, std::string_view duration);

// "minutes:seconds" with two digits each; nothing for zero and below. Quirk: whole hours are
// dropped, so an hour shows nothing at all and an hour and a minute reads "01:00".
[[nodiscard]] std::string convertIntToHHSS(int seconds);

}  // namespace tavo
