#pragma once

#include <string>

namespace tavo::gtk {

// Gathers small statements that need no answer, to be evaluated in one go: each evaluation is an
// exchange with another process. Their order and their texts stay, and one that fails does not keep
// the next from running.
class StatementBatch {
 public:
  // True for one call of a function by its path, such as `mraid.setViewable(true);`: a statement
  // that can stand beside others without changing what they mean.
  [[nodiscard]] static bool takes(const std::string& statement);

  void add(const std::string& statement);
  [[nodiscard]] bool empty() const { return text_.empty(); }
  // True when there is so much that no more should be added before it is evaluated.
  [[nodiscard]] bool isFull() const { return text_.size() > std::size_t{64} * 1024; }
  // What was added, as one script; the batch is empty then.
  [[nodiscard]] std::string take();

 private:
  std::string text_;
};

}  // namespace tavo::gtk
