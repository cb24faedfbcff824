#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <tavo/WebView.h>

namespace tavo::test {

// Turns the host's loop until `done`, or for far longer than anything here takes; returns whether
// it is done.
bool runUntil(const std::function<bool()>& done,
              std::chrono::seconds patience = std::chrono::seconds{60});

// Runs everything that has been posted to the runtime's loop.
void settleRuntime();

// The page's answer to a script, once it is there; "no page" for null.
std::string askPage(WebView* page, const std::string& script);

}  // namespace tavo::test
