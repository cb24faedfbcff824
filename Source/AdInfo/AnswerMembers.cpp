#include "AdInfo/AnswerMembers.h"

#include <simdjson.h>

#include "AdController/ResponseParser/JsonObject.h"
#include "AdController/ResponseParser/JsonText.h"
#include "AdInfo/XAdInfo.h"

namespace tavo {

AnswerMembers AnswerMembers::of(const std::string& body, int depth) {
  AnswerMembers members;
  const auto document = JsonObject::read(body, depth);
  if (!document) {
    members.problem = "the body is no JSON object in UTF-8";
    return members;
  }
  simdjson::dom::object top;
  if (document->root().get_object().get(top) != simdjson::SUCCESS) return members;
  for (const auto member : top) {
    if (member.key != "Ad") members.beside.emplace_back(member.key);
  }
  simdjson::dom::array ads;
  simdjson::dom::object ad;
  if (document->root()["Ad"].get_array().get(ads) != simdjson::SUCCESS) {
    members.problem = "there is no array \"Ad\" in it";
  } else if (ads.size() == 0) {
    members.problem = "the array \"Ad\" is empty";
  } else if (ads.at(0).get_object().get(ad) != simdjson::SUCCESS) {
    members.problem = "the first element of \"Ad\" is no object";
  } else {
    members.furtherAds = ads.size() - 1;
    for (const auto member : ad) {
      members.ad.push_back(
          {std::string{member.key}, jsonText(member.value), isAnswerKey(member.key)});
    }
  }
  return members;
}

}  // namespace tavo
