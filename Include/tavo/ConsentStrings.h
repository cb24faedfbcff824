#pragma once

#include <string>

namespace tavo {

// What the host knows of its user's consent. The texts take the place of the macros of the same
// names in the addresses of VAST documents, unchanged but for the percent-encoding that URLs need;
// the library neither reads nor checks them. An empty text leaves its macro as it stands. Read in
// the standards mode only.
struct ConsentStrings {
  std::string gdprConsent;      // [GDPRCONSENT], a TC string
  std::string gppString;        // [GPPSTRING]
  std::string gppSectionId;     // [GPPSECTIONID], as "7" or "2,6"
  std::string regulations;      // [REGULATIONS], as "gdpr"
  std::string limitAdTracking;  // [LIMITADTRACKING], "1" or "0"
};

}  // namespace tavo
