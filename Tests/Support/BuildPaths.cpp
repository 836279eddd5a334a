#include "Support/BuildPaths.h"

namespace murmel {

std::string sourceFolder() {
  return MURMEL_SOURCE_DIR;
}

std::string buildFolder() {
  return MURMEL_BUILD_DIR;
}

std::string resourcesFolder() {
  return MURMEL_RESOURCES_DIR;
}

}  // namespace murmel
