#pragma once

#include <memory>

#include <libsecret/secret.h>

namespace murmel {

struct GlibUnref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class Object>
using GlibPointer = std::unique_ptr<Object, GlibUnref>;

/// An error that a GLib function fills in.
class GlibError {
 public:
  GlibError() = default;
  ~GlibError() { g_clear_error(&error_); }
  GlibError(const GlibError&) = delete;
  GlibError& operator=(const GlibError&) = delete;

  GError** fill() {
    g_clear_error(&error_);
    return &error_;
  }
  [[nodiscard]] bool matches(GQuark domain, int code) const { return g_error_matches(error_, domain, code); }
  [[nodiscard]] bool isIn(GQuark domain) const { return error_ != nullptr && error_->domain == domain; }
  explicit operator bool() const { return error_ != nullptr; }

 private:
  GError* error_ = nullptr;
};

}  // namespace murmel
