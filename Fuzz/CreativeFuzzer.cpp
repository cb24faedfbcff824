// What a creative says and what is said to it: commands with their parameters, statements around
// texts of its own, its calendar entries, and its markup. Each looks at the whole input.

#include <algorithm>
#include <string>

#include "AdController/AdGenerator/CreativeHtml.h"
#include "AdController/AdGenerator/MraidCommandText.h"
#include "AdController/AdGenerator/MraidStatement.h"
#include "AdController/AdGenerator/NavigationPolicy.h"
#include "ClickToAction/CalendarClick.h"
#include "Extensions/ScriptObject.h"
#include "Lines.h"
#include "Values/Text.h"

using namespace tavo;
using fuzz::require;

namespace {

void command(const std::string& text) {
  const Url url = Url::fromText("mraid://" + text);
  const MraidCommand command = mraidCommandFromUrl(url);
  for (const auto& [key, value] : command.parameters) {
    require(validUtf8(value) == value && value.find('\0') == std::string::npos);
    (void)urlWithEscapedSmsBody(value);
    (void)routeClick(Url::fromText(value));
  }
  (void)decideNavigation({.url = url, .mainDocumentUrl = Url::fromText(text)}, {});
}

// A safe statement is one literal: the quotes around the text are all that it has.
void statement(const std::string& text) {
  const auto made = MraidStatement::make("say('%@', '%@');", {text, "%@"});
  require(made.text == "say('" + text + "', '%@');");
  if (!made.isSafe) return;
  require(std::count(made.text.begin(), made.text.end(), '\'') == 4);
  require(made.text.find_first_of("\\\n\r") == std::string::npos);
}

void calendar(const std::string& text) {
  const Date now{};
  const auto parameters = calendarParameters(text, now);
  require(!parameters || dictionaryWithJavaScriptObject(text).has_value());
  if (!parameters) return;
  const CalendarEvent event = calendarEvent(*parameters, now);
  for (const auto* part : {&event.title, &event.notes, &event.location}) {
    require(validUtf8(*part) == *part);
  }
}

void markup(const std::string& text) {
  const std::string tag = "<script src=\"file:///bridge\"></script>";
  const std::string page = HTMLWithJavaScriptBridge(text, "file:///bridge");
  const auto head = page.find("<head>");
  require(head != std::string::npos && page.substr(head + 6).starts_with(tag));
  require(page.size() >= text.size() + tag.size());
  (void)hasMetaRefresh(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text{reinterpret_cast<const char*>(data), size};
  command(text);
  statement(text);
  calendar(text);
  markup(text);
  return 0;
}
