#pragma once

#include <QString>
#include <filesystem>
#include <vector>

namespace murmel {

/// Something that others have made and that Murmel stands on.
struct Credit {
  enum class Kind { library, engine, model };

  Kind kind = Kind::library;
  QString name;
  QString license;  ///< SPDX expression
  QString holder;
  QString address;  ///< of its home page
  /// The text of the license, where it is on this machine.
  std::filesystem::path text;
  bool isTextGeneral = false;  ///< it names no holder
};

/// From the list that is installed with the application; empty when it cannot be read. The list names, for
/// each entry, the package whose copyright file has the full text; where there is none, the text of the
/// license lies beside the list.
std::vector<Credit> readCredits(const std::filesystem::path& resources);

/// What there is to read in a copyright file: where it is in the form that packagers use, without the fields
/// that say which file is under what and where it was fetched.
QString readableLicense(const QString& file);

}  // namespace murmel
