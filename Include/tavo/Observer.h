#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include <tavo/Export.h>

namespace tavo {

// Writes down that an operation of a table ended in an exception: the one that is being handled.
// The library's side; not for hosts.
TAVO_EXPORT void noteObserverException() noexcept;

// Holds an observer without owning it. A protocol is a `Table`: an aggregate of std::function
// members, of which the observer fills those that interest it. A table never changes once it is
// handed over; to change it, set another one. Main thread only.
//
// A host fills a table, keeps it as a member and sets it:
//
//   const std::shared_ptr<const XAdViewDelegate> events_ = std::make_shared<XAdViewDelegate>(
//       XAdViewDelegate{.xAdViewDidLoad = [this](XAdView&) { showBanner(); }});
//   ...
//   banner->delegate.set(events_);
//
// Its last member, so that the first to go is what leads back into it. A host never needs the other
// operations; they are the library's.
//
// An exception that leaves an operation ends there: the log names it, and the library goes on as if
// the operation had returned, or were not there when it was to answer something.
template <typename Table>
class Observer {
 public:
  // Sets the table to call from now on. The holder of `table` decides how long: once it is gone,
  // calls go nowhere.
  template <typename Pointee>
  requires std::is_convertible_v<Pointee*, const Table*>
  void set(const std::shared_ptr<Pointee>& table) { table_ = table; }
  // A temporary would be gone before the first call.
  template <typename Pointee>
  void set(std::shared_ptr<Pointee>&&) = delete;
  void set(std::nullptr_t) { table_.reset(); }

  // Calls the operation when the observer has it. The observer may do anything in return, also end
  // the life of the caller: make this the last statement of a turn, or hold yourself.
  template <typename Result, typename... Parameters, typename... Arguments>
  void tell(std::function<Result(Parameters...)> Table::*operation,
            Arguments&&... arguments) const {
    if (const auto table = table_.lock(); table && (*table).*operation) {
      try {
        ((*table).*operation)(std::forward<Arguments>(arguments)...);
      } catch (...) {
        noteObserverException();
      }
    }
  }

  // Calls the operation and returns its answer, or nothing when the observer does not have it.
  template <typename Result, typename... Parameters, typename... Arguments>
  std::optional<Result> ask(std::function<Result(Parameters...)> Table::*operation,
                            Arguments&&... arguments) const {
    if (const auto table = table_.lock(); table && (*table).*operation) {
      try {
        return ((*table).*operation)(std::forward<Arguments>(arguments)...);
      } catch (...) {
        noteObserverException();
      }
    }
    return std::nullopt;
  }

  template <typename Result, typename... Parameters>
  [[nodiscard]] bool implements(std::function<Result(Parameters...)> Table::*operation) const {
    const auto table = table_.lock();
    return table && (*table).*operation;
  }

  [[nodiscard]] bool isSet() const { return !table_.expired(); }

 private:
  std::weak_ptr<const Table> table_;
};

}  // namespace tavo
