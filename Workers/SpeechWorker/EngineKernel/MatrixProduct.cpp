#include "Workers/SpeechWorker/EngineKernel/MatrixProduct.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <functional>
#include <vector>

namespace murmel::worker {

namespace {

using Index = std::int64_t;

// As wide as the processor's registers, and a tile of sums that fits into them.
#if defined(__AVX512F__)
constexpr Index width = 16;
constexpr Index tileColumns = 12;
#elif defined(__AVX__)
constexpr Index width = 8;
constexpr Index tileColumns = 6;
#else
constexpr Index width = 4;
constexpr Index tileColumns = 6;
#endif
constexpr Index tileRows = 2 * width;
using Vector [[gnu::vector_size(width * sizeof(float))]] = float;
/// Anywhere among floats.
using LooseVector [[gnu::vector_size(width * sizeof(float)), gnu::aligned(sizeof(float)), gnu::may_alias]] =
    float;

// What is computed at a time stays in the caches.
constexpr Index depth = 256;
constexpr Index blockColumns = 480;

struct Range {
  Index begin;
  Index end;
};

struct Scratch {
  std::vector<float> a = std::vector<float>(tileRows * depth);
  std::vector<float> b = std::vector<float>(blockColumns * depth);
  std::array<float, depth> row;
};

/// Up to `panelRows` rows side by side: number by number, one of each row. Missing rows are zeros.
void pack(const RowReader& read, Range rows, Index panelRows, Range numbers, Scratch& scratch, float* panel) {
  const Index count = numbers.end - numbers.begin;
  if (rows.end - rows.begin < panelRows) std::fill_n(panel, panelRows * count, 0.0F);
  for (Index row = rows.begin; row < rows.end; ++row) {
    read(row, numbers.begin, count, scratch.row.data());
    const float* const in = scratch.row.data();
    float* const out = panel + (row - rows.begin);
    for (Index at = 0; at < count; ++at) out[at * panelRows] = in[at];
  }
}

using Tile = std::array<float, tileRows * tileColumns>;

void multiply(const float* a, const float* b, Index count, Tile& tile) {
  std::array<std::array<Vector, 2>, tileColumns> sums{};
  for (Index at = 0; at < count; ++at, a += tileRows, b += tileColumns) {
    const Vector low = *reinterpret_cast<const LooseVector*>(a);
    const Vector high = *reinterpret_cast<const LooseVector*>(a + width);
#pragma GCC unroll 12
    for (Index column = 0; column < tileColumns; ++column) {
      auto& sum = sums[static_cast<std::size_t>(column)];
      sum[0] += low * b[column];
      sum[1] += high * b[column];
    }
  }
  std::memcpy(tile.data(), sums.data(), sizeof tile);
}

/// The range that the worker has of all, in whole units.
Range share(Index all, Index unit, int worker, int workers) {
  const Index units = (all + unit - 1) / unit;
  return {std::min(all, units * worker / workers * unit),
          std::min(all, units * (worker + 1) / workers * unit)};
}

/// Puts the sums where they belong, the first of them or what is to be added.
void put(const Tile& tile, const MatrixProduct& product, Range rows, Range columns, bool isFirst) {
  const Index count = rows.end - rows.begin;
  for (Index column = columns.begin; column < columns.end; ++column) {
    const float* const sums = tile.data() + (column - columns.begin) * tileRows;
    float* const out = product.c + column * product.stride + rows.begin;
    if (isFirst)
      std::copy_n(sums, count, out);
    else
      std::transform(sums, sums + count, out, out, std::plus());
  }
}

/// All that the numbers of that range add to the block.
void addBlock(const MatrixProduct& product, Range rows, Range columns, Range numbers, Scratch& scratch) {
  const Index count = numbers.end - numbers.begin;
  const auto tileAt = [columns](Index begin) {
    return Range{begin, std::min(begin + tileColumns, columns.end)};
  };
  const auto panelOf = [&](Index column) { return scratch.b.data() + (column - columns.begin) * count; };
  for (Index column = columns.begin; column < columns.end; column += tileColumns)
    pack(product.b, tileAt(column), tileColumns, numbers, scratch, panelOf(column));
  Tile tile;
  for (Index row = rows.begin; row < rows.end; row += tileRows) {
    const Range some{row, std::min(row + tileRows, rows.end)};
    pack(product.a, some, tileRows, numbers, scratch, scratch.a.data());
    for (Index column = columns.begin; column < columns.end; column += tileColumns) {
      multiply(scratch.a.data(), panelOf(column), count, tile);
      put(tile, product, some, tileAt(column), numbers.begin == 0);
    }
  }
}

}  // namespace

void MatrixProduct::compute(int worker, int workers) const {
  thread_local Scratch scratch;
  Range ownRows{0, rows};
  Range ownColumns{0, columns};
  // Each worker reads all of the other matrix for itself: so the longer one is shared out.
  if (rows >= columns)
    ownRows = share(rows, tileRows, worker, workers);
  else
    ownColumns = share(columns, tileColumns, worker, workers);
  if (ownRows.begin == ownRows.end) return;
  for (Index column = ownColumns.begin; column < ownColumns.end; column += blockColumns) {
    const Range block{column, std::min(column + blockColumns, ownColumns.end)};
    for (Index first = 0; first < length; first += depth)
      addBlock(*this, ownRows, block, {first, std::min(first + depth, length)}, scratch);
  }
}

}  // namespace murmel::worker
