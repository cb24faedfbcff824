#pragma once

#include <exception>
#include <string>
#include <utility>

namespace tavo {

// A named failure of the VAST parser. It is thrown inside the library only: whoever starts a parse
// catches it and reports by reason and description.
class VastFailure : public std::exception {
 public:
  // The text is no XML document that can be used.
  [[nodiscard]] static VastFailure invalidXML() {
    return {"INVALIDXMLFOUND", "INVALIDXMLFORMAT", "The XML response has an invalid XML format"};
  }
  // What a URL or a file gave is no XML document at all, or it gave nothing.
  [[nodiscard]] static VastFailure invalidURL() {
    return {"INVALIDURL", "INVALIDURL", "Invalid URL. Unable to parse XML."};
  }

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const std::string& reason() const { return reason_; }
  [[nodiscard]] const std::string& localizedDescription() const { return localizedDescription_; }
  [[nodiscard]] const char* what() const noexcept override { return name_.c_str(); }

 private:
  VastFailure(std::string name, std::string reason, std::string localizedDescription)
      : name_{std::move(name)},
        reason_{std::move(reason)},
        localizedDescription_{std::move(localizedDescription)} {}

  std::string name_;
  std::string reason_;
  std::string localizedDescription_;
};

}  // namespace tavo
