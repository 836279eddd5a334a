#include "RealApplications.h"

TEST(DeliveryToRealApplications, TheTextArrivesOnceAndTheClipboardIsAsBefore) {
  const RealApplication applications[] = {
      {"mousepad", "Mousepad", {"mousepad", "--disable-server", "FILE"}},
      {"qt-editor", "qt-editor", {buildFolder() + "/tests/qt-editor", "FILE"}, false, false},
      {"xterm", "XTerm", {"xterm", "-u8", "-e", "SCRIPT"}, true},
      {"xfce4-terminal", "Xfce4-terminal", {"xfce4-terminal", "--disable-server", "-x", "SCRIPT"}, true},
  };
  for (const auto& application : applications) {
    SCOPED_TRACE(application.program);
    RealApplicationRun(application).deliver(2);
  }
}
