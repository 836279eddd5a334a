#pragma once

// Where ggml asks for a faster product of matrices than its own: by this name, with these arguments.

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct wsp_ggml_compute_params;

/// `c[j * ldc + i]` becomes the product of row i of `a` (of m) and row j of `b` (of n). k, lda and ldb count
/// blocks of the type. False when ggml has to do it.
bool llamafile_sgemm(const struct wsp_ggml_compute_params* params, int64_t m, int64_t n, int64_t k,
                     const void* a, int64_t lda, const void* b, int64_t ldb, void* c, int64_t ldc, int aType,
                     int bType, int cType);

#ifdef __cplusplus
}
#endif
