#pragma once

#include <cstdint>

#include <tavo/CVAd.h>

namespace tavo {

// The version of these headers, of the scene's and of the values'. It changes with every change
// that a library built before would not survive, so a library is taken only if its version is the
// same. Build it with the compiler and the settings that this library was built with.
inline constexpr std::uint32_t adNetworkVersion = 1;

// A class that a network library offers: its name ("CVBannerAdView", "CVInterstitialAd") and a
// function that makes one object, which the caller owns and destroys with `delete`. The object is
// of the class that the name says. Null or an exception: there is none.
struct AdNetworkClass {
  const char* name;
  CVAd* (*make)();
};

// What a network library says of itself. Everything in it lives as long as the process: a library
// stays loaded. The version comes first in every version there will be.
struct AdNetworkExports {
  std::uint32_t version;
  std::uint32_t classCount;
  const AdNetworkClass* classes;
};

// The one function that a network library exports, with C linkage, under this name. Called once, on
// the main thread. Null: the library offers nothing.
using AdNetworkEntry = const AdNetworkExports* (*)();
inline constexpr const char* adNetworkEntryName = "tavo_ad_network";

}  // namespace tavo
