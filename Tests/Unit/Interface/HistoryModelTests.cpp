#include "Interface/History/HistoryModel.h"
#include "Support/Testing.h"

namespace {

using namespace std::chrono;

constexpr WallTime noon{sys_days(year(2025) / 3 / 4) + 12h};

HistoryEntry entry(duration<double> age, const char* text) {
  return {Uuid::random(), historyDate(noon) - age.count(), SpokenText(text), "base", "", std::nullopt};
}

TEST(HistoryModel, groups_by_day_and_finds_all_words_whatever_their_case) {
  qputenv("TZ", "UTC");
  HistoryModel model;
  const std::vector<HistoryEntry> entries{entry(1h, "Alpha  beta"), entry(2h, "Straße\ngamma"),
                                          entry(26h, "BETA alpha"), entry(24h * 40, "delta")};
  const auto lines = [&] {
    QStringList shown;
    for (int row = 0; row < model.rowCount({}); ++row) {
      const auto index = model.index(row);
      shown += (model.entry(index) != nullptr ? "- " : "") + index.data().toString();
    }
    return shown.join("|");
  };
  model.show(entries, "", noon);
  EXPECT_TRUE(lines().startsWith("Today|- Alpha beta|- Straße gamma|Yesterday|- BETA alpha|"))
      << lines().toStdString();
  EXPECT_EQ(model.shownWords(), 7);
  EXPECT_FALSE(model.flags(model.index(0)).testFlag(Qt::ItemIsSelectable));
  model.show(entries, " beta ALPHA", noon);
  EXPECT_EQ(lines(), "Today|- Alpha beta|Yesterday|- BETA alpha");
  EXPECT_TRUE(model.indexOf(entries[2].id).isValid());
  EXPECT_FALSE(model.indexOf(entries[3].id).isValid());
  model.show(entries, "STRASSE", noon);
  EXPECT_EQ(model.shownEntries(), 0);
}

}  // namespace
