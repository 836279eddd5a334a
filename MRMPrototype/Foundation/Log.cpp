#include "Foundation/Log.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace murmel {

std::string shortestDecimal(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  // Longest fixed form of a double: sign, 309 digits before or 1,074 after the point.
  std::array<char, 1'100> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed).ptr;
  std::string text(buffer.data(), end);
  if (text.find('.') == std::string::npos) text += ".0";
  return text;
}

void LogField::appendTo(std::string& line) const {
  line += key_.view();
  line += '=';
  struct Append {
    std::string& line;
    void operator()(PublicText value) const { line += value.view(); }
    void operator()(bool value) const { line += value ? "true" : "false"; }
    void operator()(std::int64_t value) const { line += std::to_string(value); }
    void operator()(std::uint64_t value) const { line += std::to_string(value); }
    void operator()(double value) const { line += shortestDecimal(value); }
  };
  std::visit(Append{line}, value_);
}

Logger::Logger(LogSink& sink, std::string subsystem, std::string category)
    : sink_(&sink), subsystem_(std::move(subsystem)), category_(std::move(category)) {}

void Logger::event(LogLevel level, PublicText name, std::initializer_list<LogField> fields) const {
  std::string line(name.view());
  for (const auto& field : fields) {
    line += ' ';
    field.appendTo(line);
  }
  sink_->write(level, subsystem_, category_, line);
}

void Logger::line(LogLevel level, PublicText text) const {
  sink_->write(level, subsystem_, category_, text.view());
}

}  // namespace murmel
