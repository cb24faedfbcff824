#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

#include "AdServer/Header.h"

namespace tavo::adserver {

// What the server does with the connection of a request.
enum class Behaviour {
  Answer,       // "answer": sends the answer
  CloseEarly,   // "close-early": closes the connection without one byte
  NeverAnswer,  // "never-answer": keeps the connection open in silence
  Cut,          // "cut": announces the whole body, sends half of it and hangs up
};

// How an answer or a file goes over the wire. The keys of `campaign.json` have the same names, save
// where a comment says otherwise; README.md describes them for people.
struct Delivery {
  static constexpr int endless = -1;

  unsigned status = 200;
  std::string contentType{};           // empty: by the file's ending
  Headers headers{};                   // values may use ${server} and ${campaign}
  std::chrono::milliseconds delay{0};  // "delayMilliseconds"
  Behaviour behaviour = Behaviour::Answer;
  bool gzip = false;
  int redirects = 0;                 // answers 302 before this one; a number or "endless"
  std::uint64_t padToBytes = 0;      // blanks behind the body until it is this long
  std::uint64_t bytesPerSecond = 0;  // 0: as fast as it goes
};

// The kind of slot that a campaign is for.
enum class Placement { banner, preroll, interstitial };

[[nodiscard]] const char* nameOf(Placement placement);  // as campaign.json writes it

// One campaign: what the optional `campaign.json` of its folder says, or the defaults.
struct Campaign {
  std::string name;         // of the folder or the file, which the page of an ad request asks for
  std::string title;        // the name where no title is given
  std::string description;  // one sentence
  Placement placement = Placement::banner;
  int width = 320;  // of the slot that shows it best, in points; "slot": [320, 50]
  int height = 50;
  bool standards = false;  // the slot asks for the public standards to the letter
  std::string answerFile = "answer.json";
  Delivery delivery{.contentType = "application/json"};
  std::map<std::string, Delivery, std::less<>> files;  // by name, for those that are odd
  std::string recordedPath;  // "path": path and query that are answered with this, when recorded
  bool isFile = false;       // a bare creative or answer instead of a folder
  std::string
      problem;  // why campaign.json could not be used, with its line; empty when all is well
};

}  // namespace tavo::adserver
