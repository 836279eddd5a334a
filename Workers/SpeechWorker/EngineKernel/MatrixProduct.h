#pragma once

#include <cstdint>
#include <functional>

namespace murmel::worker {

/// Rows of numbers in whatever form: writes `count` of row `row`, from its number `first` on, as floats.
/// `first` is a multiple of 256.
using RowReader =
    std::function<void(std::int64_t row, std::int64_t first, std::int64_t count, float* numbers)>;

/// The products of each row of one matrix with each row of another: `c[column * stride + row]`.
struct MatrixProduct {
  RowReader a;  ///< `rows` of them
  RowReader b;  ///< `columns` of them
  std::int64_t rows;
  std::int64_t columns;
  std::int64_t length;  ///< of a row
  float* c;
  std::int64_t stride;

  /// Fewer columns than that are no faster here than row by row.
  static constexpr std::int64_t fewestColumns = 6;

  /// The share of one of `workers` threads; no two shares touch the same number of `c`.
  void compute(int worker, int workers) const;
};

}  // namespace murmel::worker
