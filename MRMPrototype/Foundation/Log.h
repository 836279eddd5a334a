#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace murmel {

enum class LogLevel { debug, info, notice, error };

/// Text that somebody has looked at and declared free of speech, clipboard contents and keys: only this goes
/// into a log. A literal is public by itself, anything computed must be declared.
class PublicText {
 public:
  template <std::size_t size>
  consteval PublicText(const char (&literal)[size]) : view_(literal, size - 1) {}

  /// Keeps a reference: the text must live until the call that takes the PublicText returns.
  static PublicText declared(std::string_view text) { return PublicText(text); }

  [[nodiscard]] std::string_view view() const { return view_; }

 private:
  explicit PublicText(std::string_view view) : view_(view) {}
  std::string_view view_;
};

/// One `key=value` pair of a log line.
class LogField {
 public:
  LogField(PublicText key, PublicText value) : key_(key), value_(value) {}
  LogField(PublicText key, std::same_as<bool> auto value) : key_(key), value_(value) {}
  LogField(PublicText key, std::signed_integral auto value)
      : key_(key), value_(static_cast<std::int64_t>(value)) {}
  template <std::unsigned_integral Number>
  requires(!std::same_as<Number, bool>) LogField(PublicText key, Number value)
      : key_(key), value_(static_cast<std::uint64_t>(value)) {}
  LogField(PublicText key, double value) : key_(key), value_(value) {}

  void appendTo(std::string& line) const;

 private:
  PublicText key_;
  std::variant<PublicText, bool, std::int64_t, std::uint64_t, double> value_;
};

/// Where log lines go. Thread-safe.
class LogSink {
 public:
  virtual ~LogSink() = default;
  virtual void write(LogLevel level, std::string_view subsystem, std::string_view category,
                     std::string_view line) = 0;
};

/// The log of one component: an event name, then `key=value` pairs. Thread-safe; the sink must outlive it.
class Logger {
 public:
  /// `subsystem` is the application identifier, `category` the component.
  Logger(LogSink& sink, std::string subsystem, std::string category);

  void event(LogLevel level, PublicText name, std::initializer_list<LogField> fields = {}) const;
  void line(LogLevel level, PublicText text) const;

 private:
  LogSink* sink_;
  std::string subsystem_;
  std::string category_;
};

/// The shortest decimal form that reads back as the same value, with at least one digit after the point:
/// 12 is "12.0", infinity "inf".
std::string shortestDecimal(double value);

}  // namespace murmel
