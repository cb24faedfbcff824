#pragma once

#include <string>

namespace tavo {

// The five strings with which a host names the ad that it wants. They travel together from the
// host's load to the request, and are kept for the next one.
struct AdAddress {
  std::string domainName;   // the ad server's host with its delivery path
  std::string pageName;     // the host's site and page
  std::string adPosition;   // for example "Bottom1"
  std::string keywords;     // pairs joined by "&"; may be empty
  std::string queryString;  // the same
};

}  // namespace tavo
