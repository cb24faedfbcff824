#include "AdServer/CampaignReader.h"

#include <simdjson.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "AdServer/NearestNames.h"

namespace tavo::adserver {

namespace {

namespace json = simdjson::ondemand;

// Each of these reads one value and answers whether it could be used.

bool readText(json::value value, std::string& text) {
  std::string_view view;
  const bool isText = value.get(view) == simdjson::SUCCESS;
  if (isText) text = view;
  return isText;
}

template <typename Number>
bool readNumber(json::value value, std::uint64_t least, std::uint64_t most, Number& into) {
  std::uint64_t number = 0;
  if (value.get(number) != simdjson::SUCCESS || number < least || number > most) return false;
  into = static_cast<Number>(number);
  return true;
}

bool readDelay(json::value value, std::chrono::milliseconds& delay) {
  constexpr std::uint64_t tenMinutes = 600'000;
  std::uint64_t number = 0;
  const bool usable = readNumber(value, 0, tenMinutes, number);
  delay = std::chrono::milliseconds{number};
  return usable;
}

template <typename Word, std::size_t count>
bool readWord(json::value value, const std::pair<std::string_view, Word> (&known)[count],
              Word& word) {
  std::string text;
  if (!readText(value, text)) return false;
  const auto found =
      std::find_if(std::begin(known), std::end(known),
                   [&text](const auto& candidate) { return candidate.first == text; });
  if (found == std::end(known)) return false;
  word = found->second;
  return true;
}

bool readBehaviour(json::value value, Behaviour& behaviour) {
  constexpr std::pair<std::string_view, Behaviour> known[] = {
      {"answer", Behaviour::Answer},
      {"close-early", Behaviour::CloseEarly},
      {"never-answer", Behaviour::NeverAnswer},
      {"cut", Behaviour::Cut},
  };
  return readWord(value, known, behaviour);
}

constexpr std::pair<std::string_view, Placement> placements[] = {
    {"banner", Placement::banner},
    {"preroll", Placement::preroll},
    {"interstitial", Placement::interstitial},
};

bool readPlacement(json::value value, Placement& placement) {
  return readWord(value, placements, placement);
}

bool readRedirects(json::value value, int& redirects) {
  std::string word;
  if (readText(value, word)) {
    redirects = Delivery::endless;
    return word == "endless";
  }
  return readNumber(value, 0, 1'000, redirects);
}

bool readSlot(json::value value, Campaign& campaign) {
  json::array sides;
  std::vector<int> lengths;
  if (value.get(sides) != simdjson::SUCCESS) return false;
  for (auto side : sides) {
    json::value one;
    if (side.get(one) != simdjson::SUCCESS || !readNumber(one, 1, 8'192, lengths.emplace_back())) {
      return false;
    }
  }
  if (lengths.size() != 2) return false;
  campaign.width = lengths[0];
  campaign.height = lengths[1];
  return true;
}

// A line break in a value would let a campaign write headers that it does not name.
bool addHeader(const std::string& name, json::value value, Headers& headers) {
  Header header{name, {}};
  const bool usable = !name.empty() && readText(value, header.value) &&
                      (header.name + header.value).find_first_of("\r\n") == std::string::npos;
  if (usable) headers.push_back(std::move(header));
  return usable;
}

bool addHeaderLines(const std::string& name, json::value value, Headers& headers) {
  json::json_type type{};
  if (value.type().get(type) != simdjson::SUCCESS) return false;
  if (type != json::json_type::array) return addHeader(name, value, headers);
  bool usable = true;
  json::array lines;
  if (value.get(lines) != simdjson::SUCCESS) return false;
  for (auto line : lines) {
    json::value one;
    if (line.get(one) != simdjson::SUCCESS) return false;
    usable = addHeader(name, one, headers) && usable;
  }
  return usable;
}

// What a key wants, and how it is read into its place.
template <typename Into>
struct Key {
  std::string_view name;
  const char* expected;
  bool (*read)(json::value, Into&);
};

bool readHeaders(json::value value, Delivery& delivery) {
  json::object lines;
  if (value.get(lines) != simdjson::SUCCESS) return false;
  bool usable = true;
  for (auto line : lines) {
    json::field field;
    std::string_view name;
    if (std::move(line).get(field) || field.unescaped_key().get(name)) return false;
    usable = addHeaderLines(std::string{name}, field.value(), delivery.headers) && usable;
  }
  return usable;
}

constexpr std::uint64_t gigabyte = 1'000'000'000;

constexpr Key<Delivery> deliveryKeys[] = {
    {"status", "a whole number from 200 to 599",
     [](json::value value, Delivery& into) { return readNumber(value, 200, 599, into.status); }},
    {"contentType", "a text",
     [](json::value value, Delivery& into) { return readText(value, into.contentType); }},
    {"headers", "an object of texts, or of lists of texts, without line breaks", &readHeaders},
    {"delayMilliseconds", "a whole number from 0 to 600000",
     [](json::value value, Delivery& into) { return readDelay(value, into.delay); }},
    {"behaviour", R"("answer", "close-early", "never-answer" or "cut")",
     [](json::value value, Delivery& into) { return readBehaviour(value, into.behaviour); }},
    {"gzip", "true or false",
     [](json::value value, Delivery& into) { return value.get(into.gzip) == simdjson::SUCCESS; }},
    {"redirects", "a whole number from 0 to 1000, or \"endless\"",
     [](json::value value, Delivery& into) { return readRedirects(value, into.redirects); }},
    {"padToBytes", "a whole number from 0 to 1000000000",
     [](json::value value, Delivery& into) {
       return readNumber(value, 0, gigabyte, into.padToBytes);
     }},
    {"bytesPerSecond", "a whole number from 1 to 1000000000",
     [](json::value value, Delivery& into) {
       return readNumber(value, 1, gigabyte, into.bytesPerSecond);
     }},
};

constexpr Key<Campaign> campaignKeys[] = {
    {"title", "a text",
     [](json::value value, Campaign& into) { return readText(value, into.title); }},
    {"description", "a text",
     [](json::value value, Campaign& into) { return readText(value, into.description); }},
    {"placement", R"("banner", "preroll" or "interstitial")",
     [](json::value value, Campaign& into) { return readPlacement(value, into.placement); }},
    {"slot", "a list of width and height, each from 1 to 8192", &readSlot},
    {"standards", "true or false",
     [](json::value value, Campaign& into) {
       return value.get(into.standards) == simdjson::SUCCESS;
     }},
    {"answerFile", "a text",
     [](json::value value, Campaign& into) { return readText(value, into.answerFile); }},
    {"path", "a text that begins with \"/\"",
     [](json::value value, Campaign& into) {
       return readText(value, into.recordedPath) && into.recordedPath.starts_with('/');
     }},
};

// Reads one document and remembers the first thing that is wrong with it.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_{text} {}

  void readInto(Campaign& campaign) {
    json::parser parser;
    json::document document;
    json::object keys;
    if (const auto error = parser.iterate(text_).get(document)) return complain(error, document);
    if (document.get_object().get(keys)) {
      problem_ = "campaign.json:1: expected one object in braces and nothing behind it";
    } else {
      readCampaignKeys(keys, campaign, document);
    }
    const char* rest = nullptr;
    if (problem_.empty() && document.current_location().get(rest) == simdjson::SUCCESS) {
      note(static_cast<std::size_t>(rest - text_.data()), "text after the end");
    }
    campaign.problem = problem_;
  }

 private:
  void readCampaignKeys(json::object& keys, Campaign& campaign, json::document& document) {
    eachField(keys, document, [&](const std::string& key, json::value value, std::size_t at) {
      if (key == "files") return readFiles(value, campaign, document, at);
      if (tryKeys(campaignKeys, key, value, campaign, at)) return;
      if (tryKeys(deliveryKeys, key, value, campaign.delivery, at)) return;
      complainOfKey(key, at);
    });
  }

  void readFiles(json::value value, Campaign& campaign, json::document& document, std::size_t at) {
    json::object files;
    if (value.get(files)) return complain(at, "files", "an object of file names");
    eachField(files, document, [&](const std::string& file, json::value keys, std::size_t where) {
      json::object delivery;
      if (keys.get(delivery)) return complain(where, file, "an object");
      eachField(delivery, document, [&](const std::string& key, json::value one, std::size_t line) {
        if (!tryKeys(deliveryKeys, key, one, campaign.files[file], line)) {
          complainOfKey(key, line);
        }
      });
    });
  }

  template <typename Read>
  void eachField(json::object& object, json::document& document, const Read& read) {
    for (auto entry : object) {
      json::field field;
      if (const auto error = std::move(entry).get(field)) return complain(error, document);
      const auto at = static_cast<std::size_t>(field.key().raw() - text_.data());
      std::string_view name;
      if (const auto error = field.unescaped_key().get(name)) return complain(error, document);
      read(std::string{name}, field.value(), at);
    }
  }

  // Whether the key is one of these.
  template <typename Into, std::size_t count>
  bool tryKeys(const Key<Into> (&keys)[count], const std::string& name, json::value value,
               Into& into, std::size_t at) {
    for (const auto& key : keys) {
      if (key.name != name) continue;
      if (!key.read(value, into)) complain(at, name, key.expected);
      return true;
    }
    return false;
  }

  void complainOfKey(const std::string& key, std::size_t at) {
    std::vector<std::string> known{"files"};
    for (const auto& one : campaignKeys) known.emplace_back(one.name);
    for (const auto& one : deliveryKeys) known.emplace_back(one.name);
    const auto nearest = nearestName(key, known);
    note(at, "\"" + key + "\" is not a key" +
                 (nearest.empty() ? std::string{} : "; did you mean \"" + nearest + "\"?"));
  }

  void complain(std::size_t at, const std::string& key, const std::string& expected) {
    note(at, "\"" + key + "\": expected " + expected);
  }

  void complain(simdjson::error_code error, json::document& document) {
    const char* place = nullptr;
    const bool known = document.current_location().get(place) == simdjson::SUCCESS;
    note(known ? static_cast<std::size_t>(place - text_.data()) : text_.size(),
         simdjson::error_message(error));
  }

  void note(std::size_t at, const std::string& what) {
    if (!problem_.empty()) return;
    const auto end = text_.data() + std::min(at, text_.size());
    const auto line = std::count(text_.data(), end, '\n') + 1;
    problem_ = "campaign.json:" + std::to_string(line) + ": " + what;
  }

  simdjson::padded_string text_;
  std::string problem_;
};

}  // namespace

const char* nameOf(Placement placement) {
  for (const auto& [name, known] : placements) {
    if (known == placement) return name.data();
  }
  return "banner";
}

Campaign readCampaign(std::string name, std::string_view json) {
  Campaign campaign;
  campaign.title = name;
  campaign.name = std::move(name);
  if (!json.empty()) Reader{json}.readInto(campaign);
  return campaign;
}

}  // namespace tavo::adserver
