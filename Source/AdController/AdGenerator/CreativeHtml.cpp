#include "AdController/AdGenerator/CreativeHtml.h"

#include <re2/re2.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "ErrorHandler/OperationLog.h"
#include "Values/Text.h"

namespace tavo {

namespace {

constexpr std::string_view head = "<head>";

// Markup comes from ads: the engine must take linear time whatever it is.
bool matches(std::string_view markup, const RE2& pattern) {
  if (!pattern.ok()) {
    platformLog("Couldn't create regex with given string and options", LogLevel::warning);
    return false;
  }
  return RE2::PartialMatch({markup.data(), markup.size()}, pattern);
}

RE2::Options ignoringCase() {
  RE2::Options options;
  options.set_case_sensitive(false);
  // Markup need not be UTF-8; the patterns hold ASCII only.
  options.set_encoding(RE2::Options::EncodingLatin1);
  options.set_log_errors(false);
  return options;
}

}  // namespace

bool isMRAIDScriptWrappedInHTML(std::string_view html) {
  const OperationLog log{"-[XWebViewAgent isMRAIDScriptWrappedInHTML:]"};
  return !contains(html, "<html>") || !contains(html, head);
}

std::string HTMLFromMRAIDScript(std::string_view fragment) {
  const OperationLog log{"-[XWebViewAgent HTMLFromMRAIDScript:]"};
  std::string document =
      "<html><head><meta name='viewport' content='user-scalable=no; initial-scale=1.0'/></head>"
      "<body style='margin:0px; padding:0px;'>";
  document += fragment;
  document += "</body></html>";
  return document;
}

std::string HTMLWithJavaScriptBridge(std::string_view html, std::string_view scriptUrl) {
  const OperationLog log{"-[XWebViewAgent HTMLWithJavaScriptBridge:]"};
  std::string document =
      isMRAIDScriptWrappedInHTML(html) ? HTMLFromMRAIDScript(html) : std::string{html};
  const std::string tag = "<script src=\"" + std::string{scriptUrl} + "\"></script>";
  return document.insert(document.find(head) + head.size(), tag);
}

bool hasMetaRefresh(std::string_view markup) {
  static const RE2 equivFirst{
      R"re(<\s*?meta\s+?http-equiv\s*?=\s*?"refresh"\s*?content\s*?=\s*?"[0-9]\s*?;\s*?url\s*?=\s*?(.+?)"\s*?>)re",
      ignoringCase()};
  static const RE2 contentFirst{
      R"re(<\s*?meta\s+?content\s*?=\s*?"[0-9]\s*?;\s*?url\s*?=\s*?(.+?)"\s*?http-equiv\s*?=\s*?"refresh"\s*?>)re",
      ignoringCase()};
  return matches(markup, equivFirst) || matches(markup, contentFirst);
}

}  // namespace tavo
