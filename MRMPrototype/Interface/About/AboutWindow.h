#pragma once

#include "Interface/Common/Window.h"
#include "Product/MRMBuildIdentity.h"

#include <QCoreApplication>
#include <functional>
#include <string>

namespace murmel {

/// What the about window shows and offers.
struct AboutServices {
  MRMBuildIdentity build;
  std::string edition;  ///< what the edition brings, in a line
  /// Facts for a report of a problem; no words, no names of files of the user.
  /// It tries what they tell of first, and hands them over when it knows.
  std::function<void(std::function<void(const std::string&)>)> diagnostics;
  std::function<void(const std::string&, std::function<void(bool copied)> told)> copy;
  std::function<void()> openCredits;
  /// Where a tip can be left; empty: nobody asks for one.
  std::string tipJar{};
  std::function<void(const std::string& address)> openAddress{};
};

/// Which Murmel this is. Deletes itself when it is closed.
class AboutWindow final : public Window {
  Q_DECLARE_TR_FUNCTIONS(AboutWindow)
 public:
  explicit AboutWindow(AboutServices services);

 private:
  AboutServices services_;
};

}  // namespace murmel
