#pragma once

#if !defined(__cplusplus) || __cplusplus < 202002L
#error "The headers of tavo need C++20: compile with -std=c++20."
#endif

// What the shared library shows of itself: classes and functions of these headers, and nothing else
// of it. A host needs neither mark.
#define TAVO_EXPORT __attribute__((visibility("default")))
// An inner part of a class that is shown, which stays hidden.
#define TAVO_HIDDEN __attribute__((visibility("hidden")))
