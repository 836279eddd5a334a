#pragma once

/// What a test always needs: GoogleTest, the everyday part of the standard library and the product's names.
/// Only tests include it, and whatever else one uses it includes itself.

#include "Support/Texts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include <gtest/gtest.h>

using namespace murmel;
using namespace murmel::test;
using namespace std::chrono_literals;
