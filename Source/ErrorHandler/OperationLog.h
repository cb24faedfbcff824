#pragma once

#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "ErrorHandler/ExtendNSLog.h"

namespace tavo {

// The debug log's entry and exit lines of one operation. Make it the first statement, so that the
// exit line is written last, on every return. While the debug log is off nothing is formatted.
class OperationLog {
 public:
  // `operation` is the operation's full name and must outlive the log, as a literal does.
  [[nodiscard]] explicit OperationLog(std::string_view operation,
                                      const char* file = __builtin_FILE(),
                                      int line = __builtin_LINE())
      : operation_{operation}, file_{file}, line_{line} {
    if (isDebugLogEnabled()) writeStart();
  }
  ~OperationLog() {
    if (isDebugLogEnabled()) writeEnd();
  }
  OperationLog(const OperationLog&) = delete;
  OperationLog& operator=(const OperationLog&) = delete;

  // Writes a message of the operation's own, made of texts and numbers:
  // log.debug("\n\nURL: ", url.text()).
  template <typename... Parts>
  void debug(const Parts&... parts) const {
    if (!isDebugLogEnabled()) return;
    std::string message = (... + toText(parts));
    // A message that does not end in a newline gets one. What counts is its own words: the newline
    // of a value that happens to stand at the end is not the message's.
    using Last = std::tuple_element_t<sizeof...(Parts) - 1, std::tuple<Parts...>>;
    if (!std::is_array_v<Last> && message.ends_with('\n')) message += '\n';
    write(std::move(message));
  }

 private:
  static std::string toText(std::string_view text) { return std::string{text}; }
  static std::string toText(const std::string& text) { return text; }
  static std::string toText(const char* text) { return text; }
  template <typename Number>
  requires std::is_arithmetic_v<Number>
  static std::string toText(Number number) { return std::to_string(number); }

  void writeStart() const;
  void writeEnd() const;
  void write(std::string message) const;

  std::string_view operation_;
  const char* file_;
  int line_;
};

}  // namespace tavo
