#include "Support/Testing.h"
#include "Workers/SpeechWorker/EngineKernel/MatrixProduct.h"

using namespace murmel::worker;

namespace {

/// Whole numbers, so that no sum is rounded.
float number(std::int64_t row, std::int64_t at) {
  return static_cast<float>((7 * row + 3 * at) % 11 - 5);
}

RowReader rows(std::int64_t firstRow) {
  return [firstRow](auto row, auto first, auto count, float* numbers) {
    for (std::int64_t at = 0; at < count; ++at) numbers[at] = number(firstRow + row, first + at);
  };
}

}  // namespace

TEST(MatrixProduct, IsThatOfEveryPairOfRowsWhateverTheSizesAndWorkers) {
  struct Size {
    std::int64_t rows, columns, length;
    int workers;
  };
  for (const auto& size :
       {Size{1, 6, 32, 1}, Size{33, 7, 64, 2}, Size{64, 500, 512, 3}, Size{90, 13, 288, 7}}) {
    const auto stride = size.rows + 3;
    std::vector<float> c(static_cast<std::size_t>(stride * size.columns), NAN);
    const MatrixProduct product{rows(0), rows(5), size.rows, size.columns, size.length, c.data(), stride};
    for (int worker = 0; worker < size.workers; ++worker) product.compute(worker, size.workers);
    for (std::int64_t column = 0; column < size.columns; ++column) {
      for (std::int64_t row = 0; row < stride; ++row) {
        const float found = c[static_cast<std::size_t>(column * stride + row)];
        float wanted = 0;
        for (std::int64_t at = 0; at < size.length; ++at) wanted += number(row, at) * number(5 + column, at);
        if (row >= size.rows ? !std::isnan(found) : found != wanted)
          FAIL() << row << ", " << column << " of " << size.rows << " x " << size.columns;
      }
    }
  }
}
