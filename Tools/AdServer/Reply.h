#pragma once

#include <chrono>
#include <string>

#include "AdServer/Campaign.h"
#include "AdServer/Header.h"

namespace tavo::adserver {

// What a request is to be answered with, decided before anything is sent.
struct Reply {
  unsigned status = 200;
  std::string contentType = "text/plain; charset=utf-8";
  std::string body{};
  Headers headers{};
  std::chrono::milliseconds delay{0};
  Behaviour behaviour = Behaviour::Answer;
};

}  // namespace tavo::adserver
