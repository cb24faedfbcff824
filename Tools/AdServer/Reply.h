#pragma once

#include <string>

#include "AdServer/Campaign.h"

namespace tavo::adserver {

// What a request is to be answered with, decided before anything is sent.
struct Reply {
  std::string body{};
  Delivery delivery{.contentType = "text/plain; charset=utf-8"};
  std::string problem{};  // what is wrong with the campaign, for people; the client gets it too
};

// Carries `Reply::problem` to the client, so that whoever shows the answer can show it.
inline constexpr const char* problemHeader = "X-AdServer-Problem";

}  // namespace tavo::adserver
