#include "Workers/SpeechWorker/EngineKernel/MatrixProduct.h"
#include "llamafile/sgemm.h"

#include <cstring>
#include <optional>

#include <ggml-cpu-impl.h>
#include <ggml-cpu.h>
#include <ggml.h>

namespace {

using murmel::worker::MatrixProduct;
using murmel::worker::RowReader;

/// Rows of that type, `stride` blocks apart.
std::optional<RowReader> rowsOf(const void* data, int typeNumber, std::int64_t stride) {
  const auto type = static_cast<wsp_ggml_type>(typeNumber);
  const auto blockBytes = static_cast<std::int64_t>(wsp_ggml_type_size(type));
  const auto blockNumbers = wsp_ggml_blck_size(type);
  const auto* const bytes = static_cast<const char*>(data);
  const auto at = [=](std::int64_t row, std::int64_t first) {
    return bytes + (row * stride + first / blockNumbers) * blockBytes;
  };
  if (type == WSP_GGML_TYPE_F32)
    return [at](auto row, auto first, auto count, float* numbers) {
      std::memcpy(numbers, at(row, first), static_cast<std::size_t>(count) * sizeof(float));
    };
  if (type == WSP_GGML_TYPE_F16)
    return [at](auto row, auto first, auto count, float* numbers) {
      wsp_ggml_cpu_fp16_to_fp32(reinterpret_cast<const wsp_ggml_fp16_t*>(at(row, first)), numbers, count);
    };
  const auto toFloat = wsp_ggml_get_type_traits(type)->to_float;
  if (toFloat == nullptr) return std::nullopt;
  return [at, toFloat](auto row, auto first, auto count, float* numbers) {
    toFloat(at(row, first), numbers, count);
  };
}

}  // namespace

// ggml multiplies row by row, which is bound by what a core can load: the encoder, nine tenths of the time of
// a recognition, takes several times as long.
bool llamafile_sgemm(const wsp_ggml_compute_params* params, std::int64_t m, std::int64_t n, std::int64_t k,
                     const void* a, std::int64_t lda, const void* b, std::int64_t ldb, void* c,
                     std::int64_t ldc, int aType, int bType, int cType) {
  if (cType != WSP_GGML_TYPE_F32 || n < MatrixProduct::fewestColumns) return false;
  const auto aRows = rowsOf(a, aType, lda);
  const auto bRows = rowsOf(b, bType, ldb);
  if (!aRows || !bRows) return false;
  const MatrixProduct product{.a = *aRows,
                              .b = *bRows,
                              .rows = m,
                              .columns = n,
                              .length = k * wsp_ggml_blck_size(static_cast<wsp_ggml_type>(aType)),
                              .c = static_cast<float*>(c),
                              .stride = ldc};
  product.compute(params->ith, params->nth);
  return true;
}
