#pragma once

#include "Foundation/RawValue.h"

#include <optional>

namespace murmel {

/// How long history entries are kept.
enum class HistoryRetention { forever, fiveMinutes, oneDay, oneWeek, oneMonth, threeMonths };

template <>
inline constexpr auto rawValueTable<HistoryRetention> = std::to_array<RawValueRow<HistoryRetention>>({
    {HistoryRetention::forever, "forever"},
    {HistoryRetention::fiveMinutes, "fiveMinutes"},
    {HistoryRetention::oneDay, "oneDay"},
    {HistoryRetention::oneWeek, "oneWeek"},
    {HistoryRetention::oneMonth, "oneMonth"},
    {HistoryRetention::threeMonths, "threeMonths"},
});

/// Seconds; nothing for `forever`. A month is 30 days.
constexpr std::optional<double> maximumAge(HistoryRetention retention) {
  switch (retention) {
    case HistoryRetention::forever:
      return std::nullopt;
    case HistoryRetention::fiveMinutes:
      return 300;
    case HistoryRetention::oneDay:
      return 86'400;
    case HistoryRetention::oneWeek:
      return 604'800;
    case HistoryRetention::oneMonth:
      return 2'592'000;
    case HistoryRetention::threeMonths:
      return 7'776'000;
  }
  return std::nullopt;
}

}  // namespace murmel
