#pragma once

#include <string>

namespace tavo::gtk {

// Whether the media framework, which must be set up, has what a film of this MIME type takes: a
// demuxer for its container, and a decoder for one of the codecs that ads have in it.
[[nodiscard]] bool isPlayable(const std::string& type);

}  // namespace tavo::gtk
