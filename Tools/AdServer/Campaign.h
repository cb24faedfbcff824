#pragma once

#include <chrono>
#include <string>

#include "AdServer/Header.h"

namespace tavo::adserver {

// What the server does with the connection of an ad request.
enum class Behaviour {
  Answer,       // "answer": sends the answer
  CloseEarly,   // "close-early": closes the connection without one byte
  NeverAnswer,  // "never-answer": keeps the connection open in silence
};

// What a campaign's folder says about its answers, read from the optional `campaign.json`:
//
//   {"title": "...", "description": "...", "status": 200, "delayMilliseconds": 0,
//    "contentType": "application/json", "answerFile": "answer.json",
//    "headers": {"Set-Cookie": ["a=1", "b=2"], "X-Other": "one"}, "behaviour": "answer"}
//
// Every key is optional. The values of headers may use ${server} and ${campaign}.
struct Campaign {
  std::string name;         // the folder's name, which the page of an ad request asks for
  std::string title;        // the name where no title is given
  std::string description;  // one sentence
  unsigned status = 200;
  std::chrono::milliseconds delay{0};
  std::string contentType = "application/json";
  std::string answerFile = "answer.json";
  Headers headers;
  Behaviour behaviour = Behaviour::Answer;
  std::string problem;  // why campaign.json could not be used; empty when all is well
};

}  // namespace tavo::adserver
