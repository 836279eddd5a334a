#include "DictationDesk.h"
#include "Foundation/Registration.h"
#include "Support/KeyringControl.h"

#include <future>
#include <semaphore>

TEST_F(DictationDesk, TheDoctorNamesWhatIsWrongInOneLine) {
  std::filesystem::remove_all(data());
  const auto copy = installCopy();
  const auto blocked = file("a-file").string();
  writeFile(blocked, "");
  const auto worker = copy + "/lib/murmel/Workers/mrm-fluidaudio-worker";
  // A server of its own: a file that no other row uses says which.
  const auto onServer = [this](const std::string& options, const std::string& name) {
    const auto number = file(name).string();
    return "Xvfb -noreset -displayfd 3 " + options + " 3>" + number + " 2>/dev/null & until [ -s " + number +
           " ]; do sleep 0.05; done; export DISPLAY=:$(cat " + number + "); $DOCTOR; s=$?; kill $!; exit $s";
  };
  struct Row {
    std::string script;  // with $DOCTOR
    int status;
    std::vector<std::string> lines;
  };
  const std::vector<Row> rows{
      {"$DOCTOR",
       0,
       {"works   Speech recognition: The worker has recognised",
        "works   Key ring: ", "        llama-server                closed ",
        "limited Microphone: The microphone delivers digital silence."}},
      {"PULSE_SERVER=unix:/nowhere $DOCTOR", 1, {"broken  Microphone: No sound server answers."}},
      {"cp /bin/false " + worker + "; " + copy + "/bin/murmel doctor; s=$?; rm " + worker + "; " + copy +
           "/bin/murmel doctor; exit $s",
       1,
       {"broken  Speech recognition: Local transcription failed: ",
        "broken  Speech recognition: The worker is missing: "}},
      {"XDG_DATA_HOME=" + blocked + " $DOCTOR", 0, {"limited Files: History and models cannot be kept: "}},
      {"XDG_CONFIG_HOME=" + blocked + " $DOCTOR", 0, {"limited Files: Settings cannot be kept: "}},
      {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nowhere $DOCTOR",
       0,
       {"limited Session bus: ", "limited Key ring: No secret service answers."}},
      {"env -u DISPLAY $DOCTOR", 1, {"broken  Desktop: There is no display."}},
      {"XDG_SESSION_TYPE=wayland $DOCTOR",
       1,
       {"broken  Desktop: This is a session of Wayland without XWayland"}},
      {onServer("-extension XTEST", "mute"),
       0,
       {"limited Automatic paste: The X server lets no program press keys"}},
      {onServer("", "bare"), 0, {"limited Automatic paste: No window manager"}},
      // Last, and locked before.
      {"$DOCTOR", 0, {"limited Key ring: It is locked."}},
  };
  // Side by side, but not so many that the key ring has no time for each.
  std::counting_semaphore<> places(3);
  const auto examine = [this, &places](std::size_t number, const std::string& script) {
    places.acquire();
    const Registration leaving([&places] { places.release(); });
    const auto scriptFile = file("script-" + std::to_string(number));
    writeFile(scriptFile, script);
    return outputOf("DOCTOR='" + std::string(MURMEL_EXECUTABLE) + " doctor' sh " + scriptFile.string() +
                    " 2>&1; echo status $?");
  };
  std::vector<std::future<std::string>> outputs;
  for (std::size_t number = 0; number < rows.size(); ++number) {
    if (number + 1 == rows.size()) {
      for (const auto& earlier : outputs) earlier.wait();
      keyringControl::lock();
    }
    outputs.push_back(std::async(std::launch::async, examine, number, rows[number].script));
  }
  for (std::size_t number = 0; number < rows.size(); ++number) {
    const auto output = outputs[number].get();
    for (const auto& line : rows[number].lines)
      EXPECT_NE(output.find("\n" + line), std::string::npos) << rows[number].script << "\n" << output;
    EXPECT_TRUE(output.ends_with("status " + std::to_string(rows[number].status))) << output;
  }
  keyringControl::unlock();  // the tests that follow have the same session
  const auto json = outputOf(std::string(MURMEL_EXECUTABLE) + " doctor --json");
  EXPECT_EQ(json.find(R"({"checks":[{"details":[],"identifier":"edition")"), 0U) << json;
  EXPECT_EQ(namesIn(configuration()), std::set<std::string>{"defaults.json"})
      << "it looks, and leaves no trace";
  EXPECT_FALSE(std::filesystem::exists(data()));
}
