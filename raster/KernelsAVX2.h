// What the kernels for processors with AVX2 share. The functions carry the instruction set
// themselves, so that nothing else of their files is compiled for it.
#pragma once

#include "raster/KernelsPlain.h"

#if defined(__x86_64__)

#include <immintrin.h>

#define QXSVG_AVX2 [[gnu::target("avx2,bmi")]]

namespace qxsvg::avx2 {

QXSVG_AVX2 inline __m256i Load(const void* P) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(P));
}
QXSVG_AVX2 inline void Store(void* P, __m256i V) {
  _mm256_storeu_si256(static_cast<__m256i*>(P), V);
}

void FetchLinear(std::uint32_t* Out, std::int32_t X, std::int32_t Count, const TLinearRow& Row);
void FetchRadial(std::uint32_t* Out, std::int32_t X, std::int32_t Count, const TRadialRow& Row);
void ResampleRow(std::uint32_t* Out, std::int32_t Count, const TResampledRow& Row);
void MixRows(std::uint32_t* Out, const std::uint32_t* A, const std::uint32_t* B,
             std::uint32_t Weight, std::int32_t Count);
void MeanRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count);
void MeanFewRows(std::uint16_t* Out, const TMeanRows& Rows, std::int32_t Count);
void MeanColumns(std::uint32_t* Out, std::int32_t Count, const TMeanColumns& Columns);
void FetchTurned(std::uint32_t* Out, std::int32_t Count, const TTurnedRow& Row);

}  // namespace qxsvg::avx2

#endif
