#include "Foundation/Crypto/SecretBytes.h"
#include "Foundation/Log.h"
#include "Foundation/SpokenText.h"
#include "Support/Testing.h"

#include <ostream>
#include <type_traits>

namespace {

template <class T>
concept Printable = requires(std::ostream& stream, const T& value) {
  stream << value;
};

template <class T>
constexpr bool canBeLogged =
    std::is_constructible_v<PublicText, T> || std::is_constructible_v<LogField, PublicText, T> ||
    std::is_constructible_v<LogField, T, PublicText>;

// Whatever may hold speech or keys reaches a log only through an explicit declaration.
static_assert(!canBeLogged<std::string> && !canBeLogged<const std::string&>);
static_assert(!canBeLogged<std::string_view>);
static_assert(!canBeLogged<SpokenText> && !canBeLogged<const SpokenText&>);
static_assert(!canBeLogged<SecretBytes> && !canBeLogged<const SecretBytes&>);
static_assert(!canBeLogged<const char*> && !canBeLogged<char*> && !canBeLogged<const void*>);
static_assert(!Printable<SpokenText> && !Printable<SecretBytes>);
static_assert(!std::is_convertible_v<SpokenText, std::string> &&
              !std::is_convertible_v<std::string, SpokenText>);
static_assert(canBeLogged<bool> && canBeLogged<int> && canBeLogged<std::uint64_t> && canBeLogged<double>);

struct RecordingSink final : LogSink {
  struct Line {
    LogLevel level;
    std::string subsystem, category, text;
  };
  void write(LogLevel level, std::string_view subsystem, std::string_view category,
             std::string_view line) override {
    lines.push_back({level, std::string(subsystem), std::string(category), std::string(line)});
  }
  std::vector<Line> lines;
};

}  // namespace

TEST(Log, WritesAnEventNameAndItsFields) {
  RecordingSink sink;
  const Logger log(sink, "app.example", "summary");
  const std::string computed = "fluid";
  log.event(LogLevel::notice, "finished",
            {{"ok", true},
             {"after_stop", false},
             {"count", 3U},
             {"least", std::numeric_limits<std::int64_t>::min()},
             {"most", std::numeric_limits<std::uint64_t>::max()},
             {"seconds", 12.0},
             {"why", "none"},
             {"provider", PublicText::declared(computed)}});
  log.event(LogLevel::error, "plain");
  log.line(LogLevel::debug, "a whole line");
  ASSERT_EQ(sink.lines.size(), 3U);
  EXPECT_EQ(sink.lines[0].text,
            "finished ok=true after_stop=false count=3 least=-9223372036854775808 "
            "most=18446744073709551615 seconds=12.0 why=none provider=fluid");
  EXPECT_EQ(sink.lines[0].level, LogLevel::notice);
  EXPECT_EQ(sink.lines[0].subsystem, "app.example");
  EXPECT_EQ(sink.lines[0].category, "summary");
  EXPECT_EQ(sink.lines[1].text, "plain");
  EXPECT_EQ(sink.lines[2].text, "a whole line");
}

TEST(Log, WritesTheShortestDecimalForm) {
  struct Row {
    double value;
    std::string_view text;
  };
  using Limits = std::numeric_limits<double>;
  for (const auto& row : std::vector<Row>{
           {0.0, "0.0"},
           {-0.0, "-0.0"},
           {12.0, "12.0"},
           {0.1, "0.1"},
           {0.1 + 0.2, "0.30000000000000004"},
           {1.0 / 3.0, "0.3333333333333333"},
           {-1234.5, "-1234.5"},
           {1e21, "1000000000000000000000.0"},
           {1e-7, "0.0000001"},
           {Limits::infinity(), "inf"},
           {-Limits::infinity(), "-inf"},
           {Limits::quiet_NaN(), "nan"},
       }) {
    EXPECT_EQ(shortestDecimal(row.value), row.text);
  }
  for (const double value : {Limits::max(), Limits::min(), Limits::denorm_min(), -Limits::max()})
    EXPECT_EQ(std::strtod(shortestDecimal(value).c_str(), nullptr), value);
}
