#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>
#include <utility>

#include "Gtk/ForeignText.h"

namespace tavo::gtk {

// Owns one reference of a GObject (or of an interface that a GObject has). Copying takes another
// reference. C interfaces differ in what they hand out, so the two ways in have names.
template <typename Object>
class GPtr {
 public:
  GPtr() = default;
  GPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor): null stands for no object
  GPtr(const GPtr& other) : GPtr{share(other.object_)} {}
  GPtr(GPtr&& other) noexcept : object_{std::exchange(other.object_, nullptr)} {}
  ~GPtr() { g_clear_object(&object_); }

  GPtr& operator=(GPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  // Takes over the caller's reference, as after a "transfer full" call.
  [[nodiscard]] static GPtr adopt(Object* object) {
    GPtr pointer;
    pointer.object_ = object;
    return pointer;
  }

  // Takes a reference of its own, as after a "transfer none" call.
  [[nodiscard]] static GPtr share(Object* object) {
    if (object != nullptr) g_object_ref(object);
    return adopt(object);
  }

  // Takes over a floating reference, as after making a widget.
  [[nodiscard]] static GPtr sink(Object* object) {
    if (object != nullptr) g_object_ref_sink(object);
    return adopt(object);
  }

  [[nodiscard]] Object* get() const { return object_; }
  [[nodiscard]] Object* release() { return std::exchange(object_, nullptr); }
  void reset() { g_clear_object(&object_); }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Object* object_ = nullptr;
};

// Gives a value back by the function that its library has for it.
template <auto Give>
struct GiveBack {
  template <typename Value>
  void operator()(Value* value) const {
    Give(value);
  }
};

// Values that are no GObjects; `GText` is text that GLib allocated.
template <typename Value, auto Give>
using GOwned = std::unique_ptr<Value, GiveBack<Give>>;
using GText = GOwned<char, &g_free>;
using GBytesPtr = GOwned<GBytes, &g_bytes_unref>;
using GDateTimePtr = GOwned<GDateTime, &g_date_time_unref>;
using GSourcePtr = GOwned<GSource, &g_source_unref>;
using GUriPtr = GOwned<GUri, &g_uri_unref>;

// Where a C call leaves its error: `call(..., failure.out())`.
class GFailure {
 public:
  GFailure() = default;
  ~GFailure() { g_clear_error(&error_); }
  GFailure(const GFailure&) = delete;
  GFailure& operator=(const GFailure&) = delete;

  // For one call; what an earlier call left is freed.
  [[nodiscard]] GError** out() {
    g_clear_error(&error_);
    return &error_;
  }
  [[nodiscard]] const GError* get() const { return error_; }
  [[nodiscard]] bool is(GQuark domain, int code) const {
    return g_error_matches(error_, domain, code) != FALSE;
  }
  [[nodiscard]] std::string message() const {
    return textOf(error_ == nullptr ? nullptr : error_->message);
  }
  explicit operator bool() const { return error_ != nullptr; }

 private:
  GError* error_ = nullptr;
};

}  // namespace tavo::gtk
