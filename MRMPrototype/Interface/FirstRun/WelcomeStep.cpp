#include "Interface/FirstRun/Steps.h"

namespace murmel {

WelcomeStep::WelcomeStep(const FirstRunServices& services)
    : FormPage(tr("Dictate into any application"),
               tr("Press a shortcut and speak: your words appear where you write.")) {
  auto& does = *addCard(tr("What Murmel does"));
  does.addRow(tr("Listens only while you dictate"),
              tr("From the shortcut, or a click on its button, until you let go or press again."), nullptr);
  does.addRow(tr("Recognizes speech on this computer"), tr("No network is needed for it."), nullptr);
  does.addRow(
      tr("Inserts the words for you"),
      tr("What you had copied before is put back. When an application takes no text, your words stay on "
         "the clipboard."),
      nullptr);
  auto& never = *addCard(tr("What it never does"));
  never.addRow(tr("Your voice is never written to disk or sent anywhere"),
               tr("Sound is kept in memory until it is recognized."), nullptr);
  never.addRow(tr("Your words are never written to a log"),
               tr("There is a history only if you want one, and it is encrypted."), nullptr);
  addWidget(new CheckList(services.checks,
                          {"speech-model", "speech-recognition", "microphone", "shortcut", "paste",
                           "password-fields", "refiners", "tray"},
                          true));
}

}  // namespace murmel
