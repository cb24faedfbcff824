#pragma once

namespace tavo {

// An extension of a creative. Documents that have one are refused by the parser, so there is
// nothing to keep in it.
struct XCreativeExtension {};

}  // namespace tavo
