#pragma once

namespace murmel {

/// Which refiner a text goes to.
enum class RefinementRoute { russian, english, multilingual, none };

}  // namespace murmel
