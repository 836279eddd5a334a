#include "Foundation/Print.h"
#include "Interface/PlatformWords.h"
#include "Models/ModelManager.h"
#include "Platform/Linux/Journal/JournalLogSink.h"
#include "Platform/Linux/Process/MappedMemory.h"
#include "Platform/Linux/PulseAudio/PulseAudioAuthorization.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Platform/Linux/SecretService/SecretServiceStore.h"
#include "Platform/Linux/Session/SessionProbe.h"
#include "Platform/Qt/QtExecutor.h"
#include "Settings/DefaultsDocument.h"
#include "Settings/DefaultsStore.h"
#include "Settings/JsonDefaultsStore.h"
#include "Settings/SettingsKeys.h"
#include "Settings/SettingsMigrations.h"
#include "Shell/Checks/Checks.h"
#include "Shell/Confinement.h"
#include "Shell/FluidAudioRecognition.h"
#include "Shell/ModelServices.h"
#include "Shell/Programs.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace murmel {

namespace {

/// The user's settings, looked at: what reading them would bring up to date stays in memory.
class SettingsToLookAt final : public DefaultsStore {
 public:
  explicit SettingsToLookAt(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (auto parsed = DefaultsDocument::parse(std::string{std::istreambuf_iterator<char>(stream), {}}))
      document_ = *std::move(parsed);
  }
  [[nodiscard]] std::optional<DefaultsValue> value(std::string_view key) const override {
    return document_.value(key);
  }
  [[nodiscard]] bool contains(std::string_view key) const override { return document_.contains(key); }
  void set(std::string_view key, DefaultsValue value) override { document_.set(key, value); }
  void remove(std::string_view key) override { document_.remove(key); }

 private:
  DefaultsDocument document_;
};

void printJson(const std::vector<CheckReport>& reports, bool works) {
  QJsonArray checks;
  for (const auto& report : reports) {
    const auto state = checkStateName(report.state);
    QJsonArray details;
    for (const auto& line : report.details) details.append(QString::fromStdString(line));
    checks.append(QJsonObject{
        {QStringLiteral("identifier"), QString::fromStdString(report.identifier)},
        {QStringLiteral("name"), QString::fromStdString(report.name)},
        {QStringLiteral("state"), QString::fromUtf8(state.data(), static_cast<qsizetype>(state.size()))},
        {QStringLiteral("sentence"), inPlatformWords(report.sentence)},
        {QStringLiteral("details"), details},
    });
  }
  const QJsonObject object{{QStringLiteral("works"), works}, {QStringLiteral("checks"), checks}};
  print(stdout, "{}\n", QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString());
}

/// The same messages that the desktop application would get, without being it.
class Doctor {
 public:
  explicit Doctor(const Installation& installation)
      : installation_(installation),
        facts_(probeSession(installation.environment)),
        desktop_(connectToDesktop(planDesktop(facts_), {.process = process_, .installation = installation})),
        microphone_(executor_, {installation.build.displayName, std::nullopt}),
        authorization_(PulseAudioAuthorization::Environment::from(installation.environment)),
        models_(process_, installation),
        recognition_({executor_, clock_, launcher_},
                     {installation.folders.resources, installation.identifier}, *models_.speech,
                     installation.policy),
        settings_(defaultsFile(installation.folders.configuration)),
        checks_(executor_, desktopChecks(services())) {
    checking_ = checks_.didChange().subscribe([this] {
      if (!checks_.isRunning()) QCoreApplication::quit();
    });
  }

  [[nodiscard]] const std::vector<CheckReport>& examine() {
    // From inside the loop: an end before it runs would be lost.
    executor_.post([this] { checks_.run(); });
    QCoreApplication::exec();
    return checks_.reports();
  }

 private:
  CheckedServices services() {
    if (desktop_) desktopServices_.emplace((*desktop_)->services());
    if (auto* trials = desktopServices_ ? desktopServices_->shortcuts.trials() : nullptr)
      trials->recall(settings_.get<std::string>(shortcutTrialKey).value_or(""));
    return {
        .executor = executor_,
        .queue = queue_,
        .installation = installation_,
        .facts = facts_,
        .desktop = desktopServices_ ? &*desktopServices_ : nullptr,
        .desktopFailure = desktop_ ? std::string() : desktop_.error(),
        .microphone = microphone_,
        .microphoneAuthorization = authorization_,
        .isRecording = [] { return false; },
        .models = *models_.speech,
        .recognition = recognition_,
        .smartModels = models_.smart,
        .secrets = secrets_,
        .launcher = launcher_,
        .shortcut = [this] { return settingsMigration::shortcut(settings_, installation_.channel); },
        .smartFormatting = [this] { return settings_.boolean(settingsKey::smartFormatting, false); },
    };
  }

  const Installation& installation_;
  SessionFacts facts_;
  QtExecutor executor_;
  SystemClock clock_;
  JournalLogSink log_{JournalLogSink::Fallback::none};
  LinuxProcessLauncher launcher_{confinementPolicy(installation_)};
  MappedMemory memory_;
  ProcessServices process_{executor_, clock_, log_, launcher_, memory_};
  SerialQueue queue_{executor_, "murmel-doctor"};
  SecretServiceStore secrets_;
  std::expected<std::unique_ptr<DesktopConnection>, std::string> desktop_;
  std::optional<DesktopServices> desktopServices_;
  PulseAudioInput microphone_;
  PulseAudioAuthorization authorization_;
  ModelServices models_;
  FluidAudioRecognition recognition_;
  SettingsToLookAt settings_;
  CheckRunner checks_;
  Registration checking_;
};

}  // namespace

int runDoctor(Arguments arguments, const Installation& installation, const DoctorRole& role) {
  const QCoreApplication application(arguments.count, arguments.values);
  Doctor doctor(installation);
  const auto& reports = doctor.examine();
  const bool works = std::ranges::none_of(
      reports, [](const CheckReport& report) { return report.state == CheckState::broken; });
  if (role.json) {
    printJson(reports, works);
  } else {
    for (const auto& report : reports) {
      print(stdout, "{:8}{}: {}\n", checkStateName(report.state), report.name,
            inPlatformWords(report.sentence).toStdString());
      for (const auto& line : report.details) print(stdout, "        {}\n", line);
    }
  }
  return works ? 0 : 1;
}

}  // namespace murmel
