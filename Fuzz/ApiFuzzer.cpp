// Plays a host, its person, its server, its creatives and its system in a random order, on the
// in-memory platform. Besides what the sanitizers find, no report may come from an object that is
// going, no impression may be sent twice, and nothing may be left behind.

#include <cstddef>
#include <cstdint>

#include "Api/FuzzedHost.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavo::fuzz::FuzzedHost host{tavo::fuzz::Bytes{data, size}};
  host.run();
  return 0;
}
