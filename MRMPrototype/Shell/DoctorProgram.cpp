#include "Shell/Programs.h"
namespace murmel {
int runDoctor(int&, char**, const ApplicationFolders&, const InformationDictionary&) {
  return 0;
}
int runDesktop(int&, char**, const ApplicationFolders&, const InformationDictionary&, LaunchSelfTest) {
  return 0;
}
}  // namespace murmel
