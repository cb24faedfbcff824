#include "AdServer/CampaignReader.h"

#include <simdjson.h>

#include <optional>
#include <utility>

namespace tavo::adserver {

namespace {

using simdjson::dom::element;

// Each of these reads one value and answers whether it could be used.

bool readText(const element& value, std::string& text) {
  std::string_view view;
  const bool isText = value.get(view) == simdjson::SUCCESS;
  if (isText) {
    text = view;
  }
  return isText;
}

bool readNumber(const element& value, std::uint64_t least, std::uint64_t most,
                std::uint64_t& number) {
  return value.get(number) == simdjson::SUCCESS && number >= least && number <= most;
}

bool readStatus(const element& value, unsigned& status) {
  std::uint64_t number = 0;
  const bool usable = readNumber(value, 200, 599, number);
  status = usable ? static_cast<unsigned>(number) : status;
  return usable;
}

bool readDelay(const element& value, std::chrono::milliseconds& delay) {
  constexpr std::uint64_t tenMinutes = 600'000;
  std::uint64_t number = 0;
  const bool usable = readNumber(value, 0, tenMinutes, number);
  delay = std::chrono::milliseconds{usable ? number : 0};
  return usable;
}

bool readBehaviour(const element& value, Behaviour& behaviour) {
  constexpr std::pair<std::string_view, Behaviour> known[] = {
      {"answer", Behaviour::Answer},
      {"close-early", Behaviour::CloseEarly},
      {"never-answer", Behaviour::NeverAnswer},
  };
  std::string name;
  if (!readText(value, name)) {
    return false;
  }
  for (const auto& [knownName, knownBehaviour] : known) {
    if (name == knownName) {
      behaviour = knownBehaviour;
      return true;
    }
  }
  return false;
}

// A line break in a value would let a campaign write headers that it does not name.
bool addHeader(std::string_view name, const element& value, Headers& headers) {
  Header header{std::string{name}, {}};
  const bool usable = !name.empty() && readText(value, header.value) &&
                      (header.name + header.value).find_first_of("\r\n") == std::string::npos;
  if (usable) {
    headers.push_back(std::move(header));
  }
  return usable;
}

bool addHeaderLines(std::string_view name, const element& value, Headers& headers) {
  simdjson::dom::array lines;
  if (value.get(lines) != simdjson::SUCCESS) {
    return addHeader(name, value, headers);
  }
  bool usable = true;
  for (const element line : lines) {
    usable = addHeader(name, line, headers) && usable;
  }
  return usable;
}

bool readHeaders(const element& value, Headers& headers) {
  simdjson::dom::object lines;
  bool usable = value.get(lines) == simdjson::SUCCESS;
  if (usable) {
    for (const auto line : lines) {
      usable = addHeaderLines(line.key, line.value, headers) && usable;
    }
  }
  return usable;
}

bool readKey(std::string_view key, const element& value, Campaign& campaign) {
  if (key == "title") return readText(value, campaign.title);
  if (key == "description") return readText(value, campaign.description);
  if (key == "status") return readStatus(value, campaign.status);
  if (key == "delayMilliseconds") return readDelay(value, campaign.delay);
  if (key == "contentType") return readText(value, campaign.contentType);
  if (key == "answerFile") return readText(value, campaign.answerFile);
  if (key == "headers") return readHeaders(value, campaign.headers);
  if (key == "behaviour") return readBehaviour(value, campaign.behaviour);
  return false;
}

}  // namespace

Campaign readCampaign(std::string name, std::string_view json) {
  Campaign campaign;
  campaign.title = name;
  campaign.name = std::move(name);
  if (json.empty()) {
    return campaign;
  }
  simdjson::dom::parser parser;
  simdjson::dom::object keys;
  if (const auto error = parser.parse(json.data(), json.size()).get(keys)) {
    campaign.problem = std::string{"campaign.json: "} + simdjson::error_message(error);
    return campaign;
  }
  for (const auto entry : keys) {
    if (!readKey(entry.key, entry.value, campaign)) {
      campaign.problem = "campaign.json: \"" + std::string{entry.key} +
                         "\" is not a key of a campaign, or its value cannot be used.";
    }
  }
  return campaign;
}

}  // namespace tavo::adserver
