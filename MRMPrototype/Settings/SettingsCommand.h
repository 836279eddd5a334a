#pragma once

#include "Product/MRMBuildIdentity.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsTable.h"
#include "Storage/CommandStreams.h"

#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// "murmel settings": the settings on the command line, in their file under the lock of all writers. A
/// running instance takes them over from there.
class SettingsCommand {
 public:
  static constexpr std::string_view usage =
      "usage: murmel settings list [--json] | get NAME | set NAME VALUE | reset NAME\n";

  /// The store must outlive this.
  SettingsCommand(JsonDefaultsStore& store, MRMDistributionChannel channel, CommandStreams streams);

  /// Gives the exit status.
  int run(std::vector<std::string> arguments);

 private:
  int list(bool asJson);
  int finish();
  /// What is in force, also where the start of the application would first bring it up to date.
  [[nodiscard]] std::string valueOf(const SettingRow& row) const;

  JsonDefaultsStore& store_;
  MRMDistributionChannel channel_;
  CommandStreams streams_;
};

}  // namespace murmel
