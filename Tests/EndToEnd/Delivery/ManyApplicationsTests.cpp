// Programs of every toolkit; ten dictations each with MURMEL_MANY_DELIVERIES=1.

#include "RealApplications.h"

#include <cctype>
#include <cstdio>

/// It hands its windows to a server of its own.
constexpr const char* terminalServer =
    "(gdbus wait --session org.gnome.Terminal; gnome-terminal -- SCRIPT) & "
    "exec /usr/libexec/gnome-terminal-server";

/// What a run before has left in its profile is another first page.
constexpr const char* firefox = "exec firefox-esr --no-remote --profile $(mktemp -dp $HOME) $0";

/// It asks for the size of its letters when it is new, and takes keys where the pointer has clicked.
constexpr const char* firstRun =
    "eval $(xdotool getactivewindow getwindowgeometry --shell); for y in 22 -58; do"
    " xdotool mousemove --window $WINDOW $((WIDTH / 2)) $((HEIGHT / 2 + y)) click 1; done";

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
    {"scite", "Scite", {"sh", "-c", "echo code.page=65001 >~/.SciTEUser.properties; exec scite FILE"}},
    {"terminology", "terminology", {"terminology", "-e", "SCRIPT"}, true, true, firstRun},
    {"cool-retro-term", "cool-retro-term", {"cool-retro-term", "-e", "SCRIPT"}, true},
    {"l3afpad", "L3afpad", {"l3afpad", "FILE"}, false, true, "", PasteSettlement::clipboardChanged},
    {"gvim", "Gvim", {"gvim", "-f", "-n", "-c", "inoremap <C-S> <C-O>:w<CR>|startinsert", "FILE"}},
    {"firefox-esr", "firefox-esr", {"sh", "-c", firefox, "PAGE"}},
    {"chromium",
     "Chromium",
     {"chromium", "--no-sandbox", "--no-first-run", "--hide-crash-restore-bubble", "PAGE"}},
    {"emacs", "Emacs", {"emacs", "-Q", "--eval", "(global-set-key (kbd \"C-s\") 'save-buffer)", "FILE"}},
    {"zutty",
     "Zutty",
     {"zutty", "-fontpath", "/usr/share/fonts", "-font", "DejaVuSansMono", "-e", "SCRIPT"},
     true},
};

class DeliveryToManyApplications : public ::testing::TestWithParam<RealApplication> {};

TEST_P(DeliveryToManyApplications, TenTextsArriveAndTheClipboardIsAsBefore) {
  // One of each kind is tried each time.
  const std::set<std::string> always{"geany", "kate", "gnome-terminal", "urxvt"};
  if (!triesEverything() && !always.contains(GetParam().program))
    GTEST_SKIP() << "MURMEL_MANY_DELIVERIES=1 tries it";
  if (!RealApplicationRun::isInstalled(GetParam().program)) {
    ASSERT_EQ(std::getenv("MURMEL_DESKTOPS_REQUIRED"), nullptr) << "it is not installed";
    GTEST_SKIP() << "it is not installed";
  }
  RealApplicationRun(GetParam()).deliver(triesEverything() ? 10 : 2);
}

TEST(DeliveryWithTwoLayouts, TheTextArrivesWhileTheOneWithoutLatinLettersIsActive) {
  constexpr std::uint8_t menu = 135;
  ASSERT_EQ(std::system("setxkbmap us,ru -option grp:menu_toggle"), 0);
  UsersKeyboard().strike({menu});
  for (const auto& application : applications) {
    const std::set<std::string> tried{"kitty", "xterm", "urxvt", "xfce4-terminal", "mousepad", "featherpad"};
    if (!tried.contains(application.program) || !RealApplicationRun::isInstalled(application.program))
      continue;
    SCOPED_TRACE(application.program);
    RealApplicationRun run(application);
    run.deliver(2);
    EXPECT_TRUE(run.contents().starts_with("ч")) << "the delivery before has left another layout";
  }
  succeeds("setxkbmap us -option");
}

struct PreviousOwner {
  const char* program;
  std::vector<std::string> command;
  const char* copies = "true";  ///< done until it has copied
};

constexpr const char* copiesAll = "xdotool key ctrl+a ctrl+c";
constexpr const char* gimpScript =
    "(let* ((image (car (gimp-image-new 3840 2160 RGB)))"
    " (layer (car (gimp-layer-new image 3840 2160 RGBA-IMAGE \"l\" 100 LAYER-MODE-NORMAL))))"
    " (gimp-image-insert-layer image layer 0 0) (gimp-drawable-fill layer FILL-PATTERN)"
    " (gimp-edit-copy-visible image))";

/// DOCUMENT stands for a file with some words.
const std::vector<PreviousOwner> owners{
    {"flameshot",
     {"sh", "-c", "flameshot & gdbus wait --session org.flameshot.Flameshot; flameshot full -c; wait"}},
    {"gimp", {"gimp", "-n", "-s", "-b", gimpScript}},
    {"/usr/bin/python3", {"/usr/bin/python3", sourceFolder() + "/Tests/EndToEnd/Delivery/picture.py"}},
    {"xclip",
     {"sh", "-c", "head -c 5000000 /dev/urandom | exec xclip -selection clipboard -t image/png -quiet -i"}},
    {"copyq", {"sh", "-c", "copyq & until copyq copy words 2>/dev/null; do sleep 0.1; done; wait"}},
    {"mousepad", {"mousepad", "--disable-server", "DOCUMENT"}, copiesAll},
    {"gedit", {"gedit", "--standalone", "DOCUMENT"}, copiesAll},
    {"featherpad", {"featherpad", "--standalone", "DOCUMENT"}, copiesAll},
    {"kwrite", {"kwrite", "DOCUMENT"}, copiesAll},
    {"gvim", {"gvim", "-f", "-n", "-c", "normal ggVG\"+y", "DOCUMENT"}},
    {"firefox-esr", {"sh", "-c", firefox, "file://DOCUMENT"}, copiesAll},
    {"chromium",
     {"chromium", "--no-sandbox", "--no-first-run", "--hide-crash-restore-bubble", "file://DOCUMENT"},
     copiesAll},
};

class DeliveryBesideAnOwner : public ::testing::TestWithParam<std::size_t> {};

TEST_P(DeliveryBesideAnOwner, WhatItHadCopiedComesBack) {
  if (!triesEverything()) GTEST_SKIP() << "MURMEL_MANY_DELIVERIES=1 tries it";
  const auto& owner = owners[GetParam()];
  if (!RealApplicationRun::isInstalled(owner.program)) GTEST_SKIP() << "it is not installed";
  const auto document = std::string(std::getenv("MURMEL_SESSION_DIRECTORY")) + "/document.html";
  std::ofstream(document) << "<h1>copied</h1> before, <b>with</b> <a href='https://example.org'>a link</a>";
  auto command = owner.command;
  for (auto& argument : command) {
    if (const auto at = argument.find("DOCUMENT"); at != std::string::npos) argument.replace(at, 8, document);
  }
  // Each owner has some of the programs, and each program one of the owners.
  for (std::size_t number = GetParam(); number < applications.size(); number += owners.size()) {
    const auto& application = applications[number];
    if (application.program == owner.program || !RealApplicationRun::isInstalled(application.program))
      continue;
    SCOPED_TRACE(std::string(owner.program) + " and " + application.program);
    std::optional<ApplicationProcess> process;
    RealApplicationRun(application).deliver(2, [&](DeliveryDesk& desk) {
      process.emplace(command);
      ASSERT_TRUE(desk.waitUntil([&] {
        succeeds(owner.copies);
        return desk.loop.waitUntil([&] { return desk.usersClipboard->hasLost(); }, std::chrono::seconds(1));
      }));
    });
    std::printf("%s and %s\n", owner.program, application.program.c_str());
  }
}

INSTANTIATE_TEST_SUITE_P(Owners, DeliveryBesideAnOwner, ::testing::Range<std::size_t>(0, owners.size()));

INSTANTIATE_TEST_SUITE_P(Programs, DeliveryToManyApplications, ::testing::ValuesIn(applications),
                         [](const auto& tested) {
                           std::string name;
                           std::ranges::copy_if(
                               tested.param.program, std::back_inserter(name), [](char letter) {
                                 return std::isalnum(static_cast<unsigned char>(letter)) != 0;
                               });
                           return name;
                         });
