#pragma once

#include <gio/gio.h>

#include <memory>
#include <utility>

namespace tavo::gobject {

// The library has twins of these below its door. This binding is built on the installed headers
// alone, like any host, and pointers of the toolkit are no part of what they promise.

// Owns one reference of a GObject.
template <typename Object>
class Ref {
 public:
  Ref() = default;
  Ref(const Ref& other) : Ref{share(other.object_)} {}
  Ref(Ref&& other) noexcept : object_{std::exchange(other.object_, nullptr)} {}
  ~Ref() { g_clear_object(&object_); }
  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  // Takes over the caller's reference, as after a "transfer full" call.
  [[nodiscard]] static Ref adopt(Object* object) {
    Ref reference;
    reference.object_ = object;
    return reference;
  }
  // Takes a reference of its own.
  [[nodiscard]] static Ref share(Object* object) {
    if (object != nullptr) g_object_ref(object);
    return adopt(object);
  }

  [[nodiscard]] Object* get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Object* object_ = nullptr;
};

template <auto Give>
struct GiveBack {
  template <typename Value>
  void operator()(Value* value) const {
    Give(value);
  }
};
using ErrorPtr = std::unique_ptr<GError, GiveBack<&g_error_free>>;
using VariantPtr = std::unique_ptr<GVariant, GiveBack<&g_variant_unref>>;

}  // namespace tavo::gobject
