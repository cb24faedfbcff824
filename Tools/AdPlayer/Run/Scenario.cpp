#include "AdPlayer/Run/Scenario.h"

#include <array>
#include <charconv>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace tavo::adplayer {

namespace {

// Found inside the reader only.
struct Mistake : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Word {
  std::string text;
  bool isQuoted = false;
};

std::vector<Word> wordsOf(std::string_view line) {
  std::vector<Word> words;
  std::size_t at = 0;
  while (at < line.size()) {
    if (line[at] == ' ' || line[at] == '\t' || line[at] == '\r') {
      ++at;
    } else if (line[at] == '#') {
      break;
    } else if (line[at] == '"') {
      Word word{{}, true};
      for (++at; at < line.size() && line[at] != '"'; ++at) {
        if (line[at] == '\\' && at + 1 < line.size()) ++at;
        word.text += line[at];
      }
      if (at == line.size()) throw Mistake{"a text without its closing \""};
      ++at;
      words.push_back(std::move(word));
    } else {
      const auto end = line.find_first_of(" \t\r", at);
      words.push_back(
          {std::string{line.substr(at, end == std::string_view::npos ? end : end - at)}});
      at = end == std::string_view::npos ? line.size() : end;
    }
  }
  return words;
}

// The words of one line, taken one after the other.
class Reader {
 public:
  explicit Reader(std::vector<Word> words) : words_{std::move(words)} {}

  [[nodiscard]] bool atEnd() const { return next_ == words_.size(); }
  [[nodiscard]] bool isNext(std::string_view word) const {
    return !atEnd() && !words_[next_].isQuoted && words_[next_].text == word;
  }
  bool take(std::string_view word) {
    if (!isNext(word)) return false;
    ++next_;
    return true;
  }
  std::string word(const std::string& what) {
    if (atEnd()) throw Mistake{"expected " + what + ", and the line ends"};
    return words_[next_++].text;
  }
  double number(const std::string& what) {
    const std::string text = word(what);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < 0 || value > 100'000) {
      throw Mistake{"expected " + what + ", not \"" + text + "\""};
    }
    return value;
  }
  void end() const {
    if (!atEnd()) throw Mistake{"expected the end of the line, not \"" + words_[next_].text + "\""};
  }
  // The rest of the line, up to `within`.
  [[nodiscard]] std::string wording() const {
    std::string text;
    for (std::size_t at = next_; at < words_.size() && words_[at].text != "within"; ++at) {
      const auto& [word, isQuoted] = words_[at];
      text += (text.empty() ? "" : " ") + (isQuoted ? "\"" + word + "\"" : word);
    }
    return text;
  }

 private:
  std::vector<Word> words_;
  std::size_t next_ = 0;
};

Condition readCondition(Reader& reader) {
  Condition condition;
  condition.wording = reader.wording();
  constexpr std::array<std::pair<std::string_view, Condition::Kind>, 5> plain{
      {{"outcome", Condition::Kind::outcome},
       {"drawn", Condition::Kind::drawn},
       {"loaded", Condition::Kind::loaded},
       {"failed", Condition::Kind::failed},
       {"finished", Condition::Kind::finished}}};
  for (const auto& [word, kind] : plain) {
    if (!reader.take(word)) continue;
    condition.kind = kind;
    return condition;
  }
  const bool isNegative = reader.take("no");
  if (reader.take("event")) {
    condition.kind = isNegative ? Condition::Kind::noEvent : Condition::Kind::event;
    condition.event = reader.word("a kind of event, such as console or ping");
    if (!reader.atEnd() && !reader.isNext("within")) condition.text = reader.word("a text");
  } else if (isNegative) {
    throw Mistake{"expected \"event\" behind \"no\""};
  } else if (reader.take("taken")) {
    if (!reader.take("for")) throw Mistake{"expected \"for\" behind \"taken\""};
    condition.kind = Condition::Kind::takenFor;
    condition.text = reader.word("what the ad is taken for, such as \"image\"");
  } else if (reader.take("state")) {
    condition.kind = Condition::Kind::state;
    condition.text = reader.word("a state: loading, default, expanded, resized or hidden");
  } else if (reader.take("pings")) {
    condition.kind = Condition::Kind::pings;
    condition.count = static_cast<int>(reader.number("a number of pings"));
  } else if (reader.take("text")) {
    condition.kind = Condition::Kind::text;
    condition.text = reader.word("the text that the page shows");
  } else {
    const std::string found = reader.atEnd() ? "nothing" : "\"" + reader.word("") + "\"";
    throw Mistake{
        "expected outcome, loaded, failed, taken for \"TEXT\", drawn, finished, state NAME, event "
        "KIND [\"TEXT\"], no event KIND [\"TEXT\"], pings N or text \"TEXT\", not " +
        found};
  }
  return condition;
}

StepAction readTap(Reader& reader) {
  if (reader.take("on")) return TapOn{reader.word("a selector in quotes, such as \"#button\"")};
  reader.take("at");
  const double x = reader.number("on \"SELECTOR\" or two numbers, x and y in points");
  return TapAt{{x, reader.number("y in points")}};
}

StepAction readWait(Reader& reader) {
  Wait wait{readCondition(reader)};
  if (wait.condition.kind == Condition::Kind::noEvent) {
    throw Mistake{"nobody can wait for what does not happen: use advance and expect no event"};
  }
  if (reader.take("within")) wait.patience = Seconds{reader.number("a number of seconds")};
  return wait;
}

StepAction readRotate(Reader& reader) {
  if (reader.take("landscape")) return ScreenStep::landscape;
  return reader.take("portrait") ? ScreenStep::portrait : ScreenStep::rotate;
}

std::string readPictureName(Reader& reader) {
  std::string name = reader.word("a name for the picture");
  if (name.find_first_of("/\\") != std::string::npos || name.starts_with('.')) {
    throw Mistake{"expected a name for the picture, not a path"};
  }
  return name;
}

std::optional<StepAction> plainStep(const std::string& verb) {
  constexpr std::array<std::pair<std::string_view, DeviceEvent>, 7> device{
      {{"lock", DeviceEvent::lock},
       {"unlock", DeviceEvent::unlock},
       {"background", DeviceEvent::background},
       {"foreground", DeviceEvent::foreground},
       {"memory", DeviceEvent::memoryWarning},
       {"offline", DeviceEvent::offline},
       {"online", DeviceEvent::online}}};
  constexpr std::array<std::pair<std::string_view, ScreenStep>, 7> screen{
      {{"hide", ScreenStep::hide},
       {"show", ScreenStep::show},
       {"cover", ScreenStep::cover},
       {"uncover", ScreenStep::uncover},
       {"scroll", ScreenStep::scroll},
       {"unscroll", ScreenStep::unscroll},
       {"close", ScreenStep::close}}};
  for (const auto& [word, event] : device) {
    if (verb == word) return event;
  }
  for (const auto& [word, step] : screen) {
    if (verb == word) return step;
  }
  return std::nullopt;
}

StepAction readStep(Reader& reader) {
  const std::string verb = reader.word("a step");
  if (verb == "tap") return readTap(reader);
  if (verb == "wait") return readWait(reader);
  if (verb == "expect") return Expect{readCondition(reader)};
  if (verb == "advance") return Advance{Seconds{reader.number("a number of seconds")}};
  if (verb == "picture") return Picture{readPictureName(reader)};
  if (verb == "rotate") return readRotate(reader);
  if (auto step = plainStep(verb)) return *std::move(step);
  throw Mistake{
      "\"" + verb +
      "\" is no step; expected tap, wait, expect, advance, picture, rotate, lock, unlock, "
      "background, foreground, memory, offline, online, hide, show, cover, uncover, "
      "scroll, unscroll or close"};
}

}  // namespace

std::variant<std::vector<Step>, ScenarioMistake> readScenario(std::string_view text,
                                                              const std::string& file) {
  std::vector<Step> steps;
  std::istringstream lines{std::string{text}};
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    try {
      Reader reader{wordsOf(line)};
      if (reader.atEnd()) continue;
      std::string wording = Reader{wordsOf(line)}.wording();
      StepAction action = readStep(reader);
      reader.end();
      steps.push_back({number, std::move(wording), std::move(action)});
    } catch (const Mistake& mistake) {
      return ScenarioMistake{file + ":" + std::to_string(number) + ": " + mistake.what() + "."};
    }
  }
  if (steps.empty()) return ScenarioMistake{file + ":1: expected a step, and there is none."};
  return steps;
}

std::vector<Step> defaultScenario(const std::string& expectation) {
  const auto steps = readScenario(
      "wait outcome within 45\nwait drawn within 60\npicture shown\n"
      "wait finished within 120\nexpect " +
          expectation + "\n",
      "expectation");
  const auto* const read = std::get_if<std::vector<Step>>(&steps);
  return read == nullptr ? std::vector<Step>{} : *read;
}

}  // namespace tavo::adplayer
