#include "Services/CookieStore.h"

namespace tavo {

std::string cookieHeader(const std::vector<Cookie>& cookies) {
  std::string header;
  for (const auto& cookie : cookies) {
    if (!header.empty()) header += "; ";
    header += cookie.name + "=" + cookie.value;
  }
  return header;
}

}  // namespace tavo
