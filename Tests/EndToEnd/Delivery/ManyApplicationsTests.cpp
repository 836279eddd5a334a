// Programs of every toolkit, ten dictations each.

#include "RealApplications.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace murmel::test {

/// It hands its windows to a server of its own.
constexpr const char* terminalServer =
    "(gdbus wait --session org.gnome.Terminal; gnome-terminal -- SCRIPT) & "
    "exec /usr/libexec/gnome-terminal-server";

const std::vector<RealApplication> applications{
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
    {"gnome-terminal", "Gnome-terminal", {"sh", "-c", terminalServer}, true},
    {"lxterminal", "Lxterminal", {"lxterminal", "--no-remote", "-e", "SCRIPT"}, true},
    {"mate-terminal", "Mate-terminal", {"mate-terminal", "--disable-factory", "-x", "SCRIPT"}, true},
    {"qterminal", "qterminal", {"qterminal", "-e", "SCRIPT"}, true},
    {"sakura", "Sakura", {"sakura", "-e", "SCRIPT"}, true},
    {"kitty", "kitty", {"kitty", "SCRIPT"}, true},
    {"tilix", "Tilix", {"tilix", "--new-process", "-e", "SCRIPT"}, true},
    {"terminator", "Terminator", {"terminator", "-u", "-x", "SCRIPT"}, true},
    {"konsole", "konsole", {"konsole", "--separate", "-e", "SCRIPT"}, true},
    {"gvim", "Gvim", {"gvim", "-f", "-c", "inoremap <C-S> <C-O>:w<CR>|startinsert", "FILE"}},
    {"zutty",
     "Zutty",
     {"zutty", "-fontpath", "/usr/share/fonts", "-font", "DejaVuSansMono", "-e", "SCRIPT"},
     true},
};

class DeliveryToManyApplications : public ::testing::TestWithParam<RealApplication> {};

TEST_P(DeliveryToManyApplications, TenTextsArriveAndTheClipboardIsAsBefore) {
  if (!RealApplicationRun::isInstalled(GetParam().program)) {
    ASSERT_EQ(std::getenv("MURMEL_DESKTOPS_REQUIRED"), nullptr) << "it is not installed";
    GTEST_SKIP() << "it is not installed";
  }
  RealApplicationRun(GetParam()).deliver(10);
}

INSTANTIATE_TEST_SUITE_P(Programs, DeliveryToManyApplications, ::testing::ValuesIn(applications),
                         [](const auto& tested) {
                           std::string name;
                           std::ranges::copy_if(
                               tested.param.program, std::back_inserter(name), [](char letter) {
                                 return std::isalnum(static_cast<unsigned char>(letter)) != 0;
                               });
                           return name;
                         });

}  // namespace murmel::test
