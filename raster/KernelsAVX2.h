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

// Pixels 0, 1, 4, 5 and 2, 3, 6, 7 in 16-bit parts.
struct TPixelWords {
  __m256i Low, High;
};
// Weights has the 256ths of B in its higher bytes and those of A in its lower. Bytes less 128 have
// a sign, as the product's second factor must; 256 times 128 is half of what the sum's 16 bits
// hold.
QXSVG_AVX2 inline TPixelWords MixedWords(__m256i A, __m256i B, __m256i Weights) {
  const __m256i Sign = _mm256_set1_epi8(-128), Half = _mm256_set1_epi16(-0x8000 + 128);
  const __m256i P = _mm256_xor_si256(A, Sign), Q = _mm256_xor_si256(B, Sign);
  const __m256i Low = _mm256_maddubs_epi16(Weights, _mm256_unpacklo_epi8(P, Q));
  const __m256i High = _mm256_maddubs_epi16(Weights, _mm256_unpackhi_epi8(P, Q));
  return {_mm256_srli_epi16(_mm256_add_epi16(Low, Half), 8),
          _mm256_srli_epi16(_mm256_add_epi16(High, Half), 8)};
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
