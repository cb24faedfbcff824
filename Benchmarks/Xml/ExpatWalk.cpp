#include <expat.h>

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include "Readers.h"

namespace tavo::benchmarks {
namespace {

// Expat keeps no tree: the same facts are picked up while it reads.
class Collector {
 public:
  void open(std::string_view name, const char** attributes) {
    const bool inLinear = path_.size() > 2 && path_[path_.size() - 2] == "Linear";
    const bool isTracking = inLinear && name == "Tracking" && path_.back() == "TrackingEvents";
    const bool isFile = inLinear && name == "MediaFile" && path_.back() == "MediaFiles";
    facts_.ads += path_.size() == 1 && name == "Ad" ? 1 : 0;
    if (isTracking) {
      facts_.addValue(valueOf(attributes, "event"));
    } else if (isFile) {
      facts_.addValue(valueOf(attributes, "type"));
      facts_.addValue(valueOf(attributes, "width"));
    }
    wanted_ = isTracking || isFile || (path_.size() == 3 && name == "Impression");
    length_ = 0;
    path_.emplace_back(name);
  }
  void close() {
    if (wanted_) {
      facts_.addText(length_);
    }
    wanted_ = false;
    path_.pop_back();
  }
  void addCharacters(std::size_t length) { length_ += length; }
  [[nodiscard]] const Facts& facts() const { return facts_; }

 private:
  static std::size_t valueOf(const char** attributes, std::string_view name) {
    for (; *attributes != nullptr; attributes += 2) {
      if (*attributes == name) {
        return std::strlen(attributes[1]);
      }
    }
    return 0;
  }

  Facts facts_;
  std::vector<std::string> path_;
  bool wanted_ = false;
  std::size_t length_ = 0;
};

void open(void* collector, const char* name, const char** attributes) {
  static_cast<Collector*>(collector)->open(name, attributes);
}
void close(void* collector, const char*) { static_cast<Collector*>(collector)->close(); }
void addCharacters(void* collector, const char*, int length) {
  static_cast<Collector*>(collector)->addCharacters(static_cast<std::size_t>(length));
}

}  // namespace

Facts readWithExpat(const std::string& text) {
  const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser{XML_ParserCreate("UTF-8"),
                                                                       XML_ParserFree};
  Collector collector;
  XML_SetUserData(parser.get(), &collector);
  XML_SetElementHandler(parser.get(), open, close);
  XML_SetCharacterDataHandler(parser.get(), addCharacters);
  XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE);
  return collector.facts();
}

}  // namespace tavo::benchmarks
