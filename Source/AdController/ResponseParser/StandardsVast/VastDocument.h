#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Limits.h>
#include <tavo/Url.h>
#include <tavo/VastAd.h>

#include "AdController/ResponseParser/StandardsVast/VastErrorCode.h"

namespace tavo {

// One VAST document by the standards (2.0 to 4.2), as a value.
struct VastDocument {
  std::string version;
  std::vector<std::string> errors;  // of a document without an ad
  std::vector<std::shared_ptr<const VastAd>> ads;
  std::optional<VastErrorCode> failure;  // then there are no ads
};

// Reads a document; relative addresses in it belong to `base`. Elements that the standards do not
// know are passed over. Of one ad no more than Limits::vastAddresses addresses are kept. One that
// is no XML, beyond a limit, no VAST, or of a version before 2.0 has a failure.
[[nodiscard]] VastDocument readVastDocument(std::string_view text, const Url& base,
                                            const Limits& limits);

}  // namespace tavo
