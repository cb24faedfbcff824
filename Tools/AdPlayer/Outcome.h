#pragma once

namespace tavo::adplayer {

// What a campaign came to.
enum class Outcome { loaded, failed, nothing };

}  // namespace tavo::adplayer
