#pragma once

#include <string>

#include <tavo/Label.h>
#include <tavo/Url.h>

namespace tavo {

// What a person has to know of the page in front: whose it is, and whether others can read along.
struct PageSign {
  std::string text;
  bool isSecure = false;
  friend bool operator==(const PageSign&, const PageSign&) = default;
};

// The page's host, and behind it the title that the page gives itself: the host cannot be made up,
// so it comes first and is never cut for the title. Pages without a host have their title only.
[[nodiscard]] PageSign pageSign(const Url& page, const std::string& title);

// The line on the browser's toolbar that says so, with a lock where the connection is safe and in
// words where it is not. Main thread only.
class AddressLine : public View {
 public:
  static constexpr double height = 13;  // points

  explicit AddressLine(const Color& ink);

  void show(const PageSign& sign);

 protected:
  void layoutSubviews() override;

 private:
  std::shared_ptr<View> lock_;
  std::shared_ptr<Label> label_;
};

}  // namespace tavo
