#pragma once

#include <functional>
#include <memory>

namespace murmel::test {

/// What the tests of one source run within, as Qt's application: made before the first of them, destroyed
/// after the last. A constant of that source, which says its `__FILE__`.
class Surroundings {
 public:
  using Make = std::function<std::shared_ptr<void>()>;
  Surroundings(const char* source, Make make);
};

}  // namespace murmel::test
