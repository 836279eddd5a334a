#pragma once

/// What a test always needs: GoogleTest, the everyday part of the standard library and the product's names.
/// Only tests include it, and whatever else one uses it includes itself.

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
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

namespace murmel::test {}

using namespace murmel;
using namespace murmel::test;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;
