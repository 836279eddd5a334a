#include "DictationDesk.h"

namespace murmel::test {

TEST_F(DictationDesk, TheDoctorNamesWhatIsWrongInOneLine) {
  const auto copy = file("copy").string();
  const auto blocked = file("a-file").string();
  writeFile(blocked, "");
  outputOf("mkdir -p " + copy + "/bin && cp " + MURMEL_EXECUTABLE + " " + copy + "/bin/ && cp -r " +
           MURMEL_RESOURCES_DIR + " " + copy + "/lib-murmel && mkdir " + copy + "/lib && mv " + copy +
           "/lib-murmel " + copy + "/lib/murmel");
  const auto worker = copy + "/lib/murmel/Workers/mrm-fluidaudio-worker";
  const auto onServer = [this](const std::string& options) {
    const auto number = file("display").string();
    return "rm -f " + number + "; Xvfb -displayfd 3 " + options + " 3>" + number +
           " 2>/dev/null & until [ -s " + number + " ]; do sleep 0.05; done; export DISPLAY=:$(cat " +
           number + "); $DOCTOR; s=$?; kill $!; exit $s";
  };
  struct Row {
    std::string script;  // with $DOCTOR
    int status;
    std::string line;
  };
  for (const auto& row : std::vector<Row>{
           {"$DOCTOR", 0, "works   Speech recognition: The worker has recognised"},
           {"$DOCTOR", 0, "works   Key ring: "},
           {"paplay -d mic /usr/share/pocketsphinx/test/data/cards/005.wav & $DOCTOR", 0,
            "works   Microphone: "},
           {"$DOCTOR", 0, "limited Microphone: The microphone delivers digital silence."},
           {"PULSE_SERVER=unix:/nowhere $DOCTOR", 1, "broken  Microphone: No sound server answers."},
           {"cp /bin/false " + worker + "; " + copy + "/bin/murmel doctor", 1,
            "broken  Speech recognition: Local transcription failed: "},
           {"rm " + worker + "; " + copy + "/bin/murmel doctor", 1,
            "broken  Speech recognition: The worker is missing: "},
           {"XDG_DATA_HOME=" + blocked + " $DOCTOR", 0, "limited Files: History and models cannot be kept: "},
           {"XDG_CONFIG_HOME=" + blocked + " $DOCTOR", 0, "limited Files: Settings cannot be kept: "},
           {"XDG_RUNTIME_DIR=" + blocked + " PULSE_SERVER=unix:$XDG_RUNTIME_DIR/pulse/native $DOCTOR", 1,
            "broken  Files: Murmel cannot start: "},
           {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere $DOCTOR", 0, "limited Session bus: "},
           {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere $DOCTOR", 0,
            "limited Key ring: No secret service answers."},
           {"env -u DISPLAY $DOCTOR", 1, "broken  Desktop: There is no display."},
           {"DISPLAY=:4711 $DOCTOR", 1,
            "broken  Desktop: The X server that DISPLAY names cannot be reached."},
           {"XDG_SESSION_TYPE=wayland $DOCTOR", 0, "limited Global shortcut: Wayland lets no application"},
           {onServer("-extension XTEST"), 0, "limited Automatic paste: This desktop lets no program"},
           {onServer(""), 0, "limited Automatic paste: No window manager"},
           {"gdbus call --session -d org.freedesktop.secrets -o /org/freedesktop/secrets -m "
            "org.freedesktop.Secret.Service.Lock \"['/org/freedesktop/secrets/collection/login']\" "
            ">/dev/null; $DOCTOR",
            0, "limited Key ring: It is locked."},
       }) {
    writeFile(file("script"), row.script);
    const auto output = outputOf("DOCTOR='" + std::string(MURMEL_EXECUTABLE) + " doctor' sh " +
                                 file("script").string() + " 2>&1; echo status $?");
    EXPECT_NE(output.find("\n" + row.line), std::string::npos) << row.script << "\n" << output;
    EXPECT_TRUE(output.ends_with("status " + std::to_string(row.status))) << row.script << "\n" << output;
  }
  const auto json = outputOf(std::string(MURMEL_EXECUTABLE) + " doctor --json");
  EXPECT_EQ(json.find(R"({"checks":[{"identifier":"edition")"), 0U) << json;
  EXPECT_EQ(namesIn(configuration()), std::set<std::string>{"defaults.json"})
      << "it looks, and leaves no trace";
  EXPECT_FALSE(std::filesystem::exists(data()));
}

}  // namespace murmel::test
