#include "Services/HttpClient.h"

#include <algorithm>

#include "Values/Text.h"

namespace tavo {

namespace {
const std::string* valueOf(const std::vector<HttpHeader>& headers, std::string_view name) {
  const auto found = std::find_if(headers.begin(), headers.end(), [&](const HttpHeader& header) {
    return equalsIgnoringCase(header.name, name);
  });
  return found == headers.end() ? nullptr : &found->value;
}
}  // namespace

const std::string* HttpRequest::header(std::string_view name) const {
  return valueOf(headers, name);
}

void HttpRequest::setHeader(std::string_view name, std::string value) {
  std::erase_if(headers,
                [&](const HttpHeader& header) { return equalsIgnoringCase(header.name, name); });
  headers.push_back({std::string{name}, std::move(value)});
}

const std::string* HttpResponse::header(std::string_view name) const {
  return valueOf(headers, name);
}

}  // namespace tavo
