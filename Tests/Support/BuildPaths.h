#pragma once

#include <string>

namespace murmel {

/// Where this build and its sources lie. Compiled once: a path in the flags of every test would keep the
/// compiler's cache from serving a second checkout.
std::string sourceFolder();
std::string buildFolder();
std::string resourcesFolder();

}  // namespace murmel
