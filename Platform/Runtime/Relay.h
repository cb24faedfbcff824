#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <variant>

namespace tavo {

// Makes the entries of an observer's table that lead back into an object. The object is held
// weakly, and for the length of each call; an entry whose object is gone does nothing.
//
//   const Relay relay{*this};
//   events_ = std::make_shared<XMoviePlayerDelegate>(XMoviePlayerDelegate{
//       .playerDidSkipVideo = relay.pass(&Told::vastVideoViewDidSkipVideo),  // to my own observer
//       .dismissVideo = relay.call(&XVASTVideoView::dismissVideo)});         // to my own operation
//
// A report begins with the reporting object. An operation that does not take it is called with what
// stands behind it.
template <typename Self>
class Relay {
 public:
  // What an entry answers when the object, or its observer, does not.
  template <typename Result>
  using Absent = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

  // Of an object that is shared; not in its constructor, where it is not shared yet.
  explicit Relay(Self& self) : self_{std::static_pointer_cast<Self>(self.shared_from_this())} {}
  // Of a part of a shared object: the pointer shares its owner.
  explicit Relay(std::weak_ptr<Self> self) : self_{std::move(self)} {}

  // An entry that calls the object's own operation.
  template <typename Owner, typename Result, typename... Parameters>
  [[nodiscard]] auto call(Result (Owner::*operation)(Parameters...),
                          Absent<Result> absent = {}) const {
    return entry<Result>(operation, std::move(absent));
  }
  template <typename Owner, typename Result, typename... Parameters>
  [[nodiscard]] auto call(Result (Owner::*operation)(Parameters...) const,
                          Absent<Result> absent = {}) const {
    return entry<Result>(operation, std::move(absent));
  }

  // An entry that tells the object's own `delegate`, in the object's name.
  template <typename Table, typename Result, typename... Parameters>
  [[nodiscard]] auto pass(std::function<Result(Parameters...)> Table::*operation,
                          Absent<Result> absent = {}) const {
    const auto tell = [ operation, absent ](
                   Self & self, auto&&... arguments) -> Result requires std::is_invocable_v <
                                                            std::function<Result(Parameters...)>,
    decltype(arguments)... > ||
        std::is_invocable_v<std::function<Result(Parameters...)>, Self&, decltype(arguments)...> {
      constexpr bool namesObject =
          std::is_invocable_v<std::function<Result(Parameters...)>, Self&, decltype(arguments)...>;
      const auto answer = [&](auto&&... all) -> Result {
        if constexpr (std::is_void_v<Result>) {
          static_cast<void>(absent);  // there is nothing to answer
          self.delegate.tell(operation, std::forward<decltype(all)>(all)...);
        } else {
          return self.delegate.ask(operation, std::forward<decltype(all)>(all)...).value_or(absent);
        }
      };
      if constexpr (namesObject) {
        return answer(self, std::forward<decltype(arguments)>(arguments)...);
      } else {
        return answer(std::forward<decltype(arguments)>(arguments)...);
      }
    };
    return entry<Result>(tell, std::move(absent));
  }

 private:
  template <typename Result, typename Operation>
  [[nodiscard]] auto entry(Operation operation, Absent<Result> absent) const {
    return [weak = self_, operation, absent = std::move(absent)](auto&&... arguments) -> Result {
      if (const auto self = weak.lock()) {
        return invoke<Result>(operation, *self, std::forward<decltype(arguments)>(arguments)...);
      }
      if constexpr (!std::is_void_v<Result>) return absent;
    };
  }

  template <typename Result, typename Operation, typename... Arguments>
  static Result invoke(const Operation& operation, Self& self, Arguments&&... arguments) {
    if constexpr (std::is_invocable_v<const Operation&, Self&, Arguments...>) {
      return std::invoke(operation, self, std::forward<Arguments>(arguments)...);
    } else {
      return invokeWithoutFirst<Result>(operation, self, std::forward<Arguments>(arguments)...);
    }
  }

  template <typename Result, typename Operation, typename First, typename... Rest>
  static Result invokeWithoutFirst(const Operation& operation, Self& self, First&& /*reporter*/,
                                   Rest&&... rest) {
    return invoke<Result>(operation, self, std::forward<Rest>(rest)...);
  }

  std::weak_ptr<Self> self_;
};

}  // namespace tavo
