#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tavo::test {

// What a HostileServer does with one request. Each connection carries one request; the server
// closes it when the behaviour has ended, and a behaviour without end stops when the client hangs
// up or the server goes.

// An honest answer with an honest length. A HEAD request gets no body.
struct PlainAnswer {
  int status = 200;
  std::string body{};
  std::string contentType{"application/json"};
  std::vector<std::pair<std::string, std::string>> headers{};
};

// Hangs up after the request, before the first byte.
struct CloseBeforeAnswer {};

// Promises more body than it sends, then hangs up.
struct CloseInBody {
  std::string body = R"({"Ad":[{"AdType":"text/html","Text":"cut)";
  std::uint64_t promisedBytes = 4096;
};

// Promises more body than it sends, then stays silent.
struct StallInBody {
  std::string body;
  std::uint64_t promisedBytes = 0;
};

// Reads the request and stays silent.
struct NeverAnswer {};

// One byte after each pause, without end: of the body, or of a header that never ends.
struct Drip {
  enum class Place { Body, Header };
  Place place = Place::Body;
  std::chrono::milliseconds pause{1000};
};

// A body made while it is sent: the prefix, then filler, then the suffix, `bytes` in all. With the
// default texts it is one valid JSON answer.
struct HugeBody {
  enum class Length { Declared, Undeclared };
  std::uint64_t bytes = 100'000'000;
  Length length = Length::Declared;
  std::string prefix = R"({"Ad":[{"AdType":"text/html","Text":")";
  std::string suffix = R"("}]})";
};

// A gzip body a thousand times smaller than what it becomes. Blanks; without end by default.
struct GzipBomb {
  std::uint64_t expandedBytes = std::numeric_limits<std::uint64_t>::max();
};

// Sends the client elsewhere: to another path, host or port.
struct Redirect {
  std::string location;
  int status = 302;
};

// Sends the client in circles through addresses that are new each time ("?hop=1", "?hop=2" ...).
struct RedirectLoop {};

// Documents that name the next one: "${next}" in each becomes an address that is new each time.
struct EndlessChain {
  std::string document;
};

// A good answer behind one header line of this size.
struct HugeHeader {
  std::size_t bytes = 1'000'000;
};

// These bytes instead of an answer.
struct Garbage {
  std::string bytes = "\x16\x03\x01 this has never been a status line\r\n\r\n";
};

using Behaviour =
    std::variant<PlainAnswer, CloseBeforeAnswer, CloseInBody, StallInBody, NeverAnswer, Drip,
                 HugeBody, GzipBomb, Redirect, RedirectLoop, EndlessChain, HugeHeader, Garbage>;

}  // namespace tavo::test
