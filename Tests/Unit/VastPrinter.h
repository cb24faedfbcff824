#pragma once

#include <any>

#include "Model/VASTDataModel/XVASTAd.h"
#include "Support/Testing.h"

namespace tavo::test {

// A record of the model and all below it as text: one field a line, by its place in the record,
// indented by depth. A field that is none is left out, an empty list is written as such, line ends
// inside texts as \n.
class VastPrinter {
 public:
  template <typename Record>
  static std::string print(const Record& record) {
    VastPrinter printer;
    printer.fields(record);
    return printer.lines_;
  }

 private:
  void add(int, const std::any&) {}
  void add(int, const DocumentText&) {}
  void add(int, const std::vector<DocumentText>&) {}
  void add(int place, const XCreativeExtension&) { line(place, ""); }
  void add(int place, const XExtension& extension) { add(place, extension.type); }
  void add(int place, bool flag) { line(place, flag ? " true" : " false"); }
  void add(int place, TrackingEventType type) {
    line(place, " " + std::to_string(static_cast<int>(type)));
  }
  void add(int place, std::string_view text) {
    std::string escaped;
    for (const char c : text) escaped += c == '\n' ? std::string{"\\n"} : std::string{c};
    line(place, " \"" + escaped + '"');
  }
  template <typename Item>
  void add(int place, const std::vector<Item>& list) {
    if (list.empty()) line(place, " empty");
    for (const Item& item : list) add(place, item);
  }
  template <typename Item>
  void add(int place, const std::optional<Item>& item) {
    if (item) add(place, *item);
  }
  template <typename Item>
  void add(int place, const std::shared_ptr<Item>& item) {
    if (item) add(place, *item);
  }
  template <typename Record>
  void add(int place, const Record& record) {
    line(place, "");
    depth_ += 2;
    fields(record);
    depth_ -= 2;
  }

  // A record may be taken apart into as many names as it takes values.
  template <typename R>
  void fields(const R& record) {
    const auto addAll = [this](const auto&... field) {
      int place = 0;
      (add(++place, field), ...);
    };
    if constexpr (requires { R{{}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o] = record;
      addAll(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o);
    } else if constexpr (requires { R{{}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n] = record;
      addAll(a, b, c, d, e, f, g, h, i, j, k, l, m, n);
    } else if constexpr (requires { R{{}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m] = record;
      addAll(a, b, c, d, e, f, g, h, i, j, k, l, m);
    } else if constexpr (requires { R{{}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f, g, h, i, j, k] = record;
      addAll(a, b, c, d, e, f, g, h, i, j, k);
    } else if constexpr (requires { R{{}, {}, {}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f, g, h] = record;
      addAll(a, b, c, d, e, f, g, h);
    } else if constexpr (requires { R{{}, {}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f, g] = record;
      addAll(a, b, c, d, e, f, g);
    } else if constexpr (requires { R{{}, {}, {}, {}, {}, {}}; }) {
      const auto& [a, b, c, d, e, f] = record;
      addAll(a, b, c, d, e, f);
    } else if constexpr (requires { R{{}, {}, {}, {}}; }) {
      const auto& [a, b, c, d] = record;
      addAll(a, b, c, d);
    } else if constexpr (requires { R{{}, {}, {}}; }) {
      const auto& [a, b, c] = record;
      addAll(a, b, c);
    } else {
      const auto& [a, b] = record;
      addAll(a, b);
    }
  }

  void line(int place, const std::string& content) {
    lines_.append(depth_, ' ').append(std::to_string(place) + content) += '\n';
  }

  std::string lines_;
  std::size_t depth_ = 0;
};

}  // namespace tavo::test
