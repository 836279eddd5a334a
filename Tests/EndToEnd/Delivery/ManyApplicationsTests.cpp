// Programs of every toolkit, ten dictations each.

#include "RealApplications.h"

namespace murmel::test {

TEST(DeliveryToManyApplications, TenTextsArriveInEachAndTheClipboardIsAsBefore) {
  const std::string startTerminalServer =
      "(gdbus wait --session org.gnome.Terminal; gnome-terminal -- SCRIPT) & "
      "exec /usr/libexec/gnome-terminal-server";
  const RealApplication applications[] = {
      {"mousepad", "Mousepad", {"mousepad", "--disable-server", "FILE"}},
      {"featherpad", "FeatherPad", {"featherpad", "--standalone", "FILE"}},
      {"geany", "Geany", {"geany", "-i", "FILE"}},
      {"gedit", "Gedit", {"gedit", "--standalone", "FILE"}},
      {"pluma", "Pluma", {"pluma", "FILE"}},
      {"kate", "kate", {"kate", "--startanon", "FILE"}},
      {"kwrite", "kwrite", {"kwrite", "FILE"}},
      {"xterm", "XTerm", {"xterm", "-u8", "-e", "SCRIPT"}, true},
      {"urxvt", "URxvt", {"urxvt", "-e", "SCRIPT"}, true},
      {"pterm", "Pterm", {"pterm", "-e", "SCRIPT"}, true},
      {"xfce4-terminal", "Xfce4-terminal", {"xfce4-terminal", "--disable-server", "-x", "SCRIPT"}, true},
      {"gnome-terminal", "Gnome-terminal", {"sh", "-c", startTerminalServer}, true},
      {"lxterminal", "Lxterminal", {"lxterminal", "--no-remote", "-e", "SCRIPT"}, true},
      {"mate-terminal", "Mate-terminal", {"mate-terminal", "--disable-factory", "-x", "SCRIPT"}, true},
      {"qterminal", "qterminal", {"qterminal", "-e", "SCRIPT"}, true},
      {"sakura", "Sakura", {"sakura", "-e", "SCRIPT"}, true},
      {"kitty", "kitty", {"kitty", "SCRIPT"}, true},
      {"tilix", "Tilix", {"tilix", "--new-process", "-e", "SCRIPT"}, true},
      {"terminator", "Terminator", {"terminator", "-u", "-x", "SCRIPT"}, true},
      {"konsole", "konsole", {"konsole", "--separate", "-e", "SCRIPT"}, true},
  };
  int tried = 0;
  for (const auto& application : applications) {
    if (!RealApplicationRun::isInstalled(application.program)) continue;
    SCOPED_TRACE(application.program);
    ++tried;
    RealApplicationRun(application).deliver(10);
  }
  if (tried == 0) GTEST_SKIP() << "none of them is installed";
}

}  // namespace murmel::test
