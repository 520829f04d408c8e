// interleave-inl.h
// Colours of vectors of pixels stored as red, green and blue in turns; compiled once for each kind of vector unit.

// No #pragma once: Highway includes this file again for each vector unit, and toggles the guard between.
#if defined(KEL_ROWS_INTERLEAVE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KEL_ROWS_INTERLEAVE_INL_H_
#undef KEL_ROWS_INTERLEAVE_INL_H_
#else
#define KEL_ROWS_INTERLEAVE_INL_H_
#endif

#include <cstddef>
#include <cstdint>

#include "vectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Rows {
namespace HWY_NAMESPACE {

// Where a byte of an RGB picture comes from: one of three vectors and a byte of it.
struct Origin {
  int vector;
  int byte;
};

// Of red, green and blue in vectors of their own.
struct PlanarOrigin {
  static constexpr Origin Of(int byte) { return {byte % 3, byte / 3}; }
};

// The byte of a vector where Packed(even, odd) puts that of a pixel.
constexpr int PackedPlace(int pixel) { return pixel / 16 * 16 + pixel % 16 / 2 + pixel % 2 * 8; }

// Of a mosaic's pixels, in order; and of the near and the other colours of its sites, as Phase::Limited() makes them.
template <class P>
struct MosaicOrigin {
  static constexpr Origin Of(int byte) {
    const int pixel = byte / 3;
    const int colour = byte % 3;
    constexpr int kOwn = P::kIsRed ? 0 : 2;
    const bool is_chroma = (pixel % 2 == 0) == P::kIsChromaFirst;
    if (colour == (is_chroma ? kOwn : 1)) return {0, pixel};
    return {colour == (is_chroma ? 1 : kOwn) ? 1 : 2, PackedPlace(pixel)};
  }
};

#if HWY_TARGET == HWY_AVX3_DL
// For byte i of the three vectors that 64 pixels fill: its byte in the vector that it comes from, and which one this
// is.
template <class Origins>
struct WideInterleave {
  alignas(64) std::uint8_t byte[3][64] = {};
  std::uint64_t of_second[3] = {};
  std::uint64_t of_third[3] = {};
  constexpr WideInterleave() {
    for (int i = 0; i < 192; ++i) {
      const Origin origin = Origins::Of(i);
      byte[i / 64][i % 64] = static_cast<std::uint8_t>(origin.byte);
      if (origin.vector == 1) of_second[i / 64] |= std::uint64_t{1} << i % 64;
      if (origin.vector == 2) of_third[i / 64] |= std::uint64_t{1} << i % 64;
    }
  }
};

template <class Origins>
HWY_INLINE void StoreFrom(V8 first, V8 second, V8 third, std::uint8_t* to) {
  static constexpr WideInterleave<Origins> kFrom;
  for (int b = 0; b < 3; ++b) {
    const __m512i from = _mm512_load_si512(kFrom.byte[b]);
    __m512i bytes = _mm512_permutexvar_epi8(from, first.raw);
    bytes = _mm512_mask_permutexvar_epi8(bytes, kFrom.of_second[b], from, second.raw);
    bytes = _mm512_mask_permutexvar_epi8(bytes, kFrom.of_third[b], from, third.raw);
    _mm512_storeu_si512(to + 64 * b, bytes);
  }
}

// Stores red, green and blue of a vector of pixels, three bytes a pixel.
HWY_INLINE void StoreRgb(V8 red, V8 green, V8 blue, std::uint8_t* to) { StoreFrom<PlanarOrigin>(red, green, blue, to); }

// Stores the colours of a vector of a mosaic's pixels.
template <class P>
HWY_INLINE void StoreMosaic(V8 pixels, V8 near, V8 other, std::uint8_t* to) {
  StoreFrom<MosaicOrigin<P>>(pixels, near, other, to);
}

HWY_INLINE void StoreGrey(V8 grey, std::uint8_t* to) {
  static constexpr WideInterleave<PlanarOrigin> kFrom;
  for (int b = 0; b < 3; ++b) {
    _mm512_storeu_si512(to + 64 * b, _mm512_permutexvar_epi8(_mm512_load_si512(kFrom.byte[b]), grey.raw));
  }
}
#else
// Three vectors of blocks, the first holding each first one of three, to memory in order.
HWY_INLINE void StoreThirds(V8 first, V8 second, V8 third, std::uint8_t* to) {
#if HWY_TARGET == HWY_AVX3
  // The blocks f0 f2 s0 s2, then t0 t2 f1 f3, then s1 s3 t1 t3.
  const __m512i a = _mm512_shuffle_i64x2(first.raw, second.raw, 0x88);
  const __m512i b = _mm512_shuffle_i64x2(third.raw, first.raw, 0xD8);
  const __m512i c = _mm512_shuffle_i64x2(second.raw, third.raw, 0xDD);
  // The blocks f0 s0 t0 f1, then s1 t1 f2 s2, then t2 f3 s3 t3.
  _mm512_storeu_si512(to, _mm512_shuffle_i64x2(a, b, 0x88));
  _mm512_storeu_si512(to + 64, _mm512_shuffle_i64x2(c, a, 0xD8));
  _mm512_storeu_si512(to + 128, _mm512_shuffle_i64x2(b, c, 0xDD));
#elif HWY_TARGET == HWY_AVX2
  hn::StoreU(hn::ConcatLowerLower(D8(), second, first), D8(), to);
  hn::StoreU(hn::ConcatUpperLower(D8(), first, third), D8(), to + 32);
  hn::StoreU(hn::ConcatUpperUpper(D8(), third, second), D8(), to + 64);
#else
  hn::StoreU(first, D8(), to);
  hn::StoreU(second, D8(), to + 16);
  hn::StoreU(third, D8(), to + 32);
#endif
}

// Shuffles for the three blocks that 16 pixels fill, each out of two blocks: one has two colours of eight pixels, as
// Places says, the other one the third colour of all 16. A byte that the one gives, the other leaves 0.
template <class Origins, class Places>
struct BlockShuffles {
  alignas(HWY_MAX_BYTES) std::uint8_t two[3][HWY_MAX_BYTES] = {};
  alignas(HWY_MAX_BYTES) std::uint8_t third[3][HWY_MAX_BYTES] = {};
  constexpr BlockShuffles() {
    constexpr std::uint8_t kNone = 0x80;
    for (int j = 0; j < 3 * HWY_MAX_BYTES; ++j) {
      const int i = j / HWY_MAX_BYTES * 16 + j % 16;
      const Origin origin = Origins::Of(i);
      // Block 0 has pixels 0..5, which are among the first eight; block 1 5..10, among 4..11; block 2 10..15.
      const int place = Places::Of(i, origin) - 8 * (i / 16);
      two[i / 16][j % HWY_MAX_BYTES] = origin.vector == 2 ? kNone : static_cast<std::uint8_t>(place);
      third[i / 16][j % HWY_MAX_BYTES] = origin.vector == 2 ? static_cast<std::uint8_t>(origin.byte) : kNone;
    }
  }
};

// Stores a vector of pixels of which `low` and `high` have two colours: of the first and of the last eight of each 16.
template <class Origins, class Places>
HWY_INLINE void StoreBlocks(V8 low, V8 high, V8 third, std::uint8_t* to) {
  static constexpr BlockShuffles<Origins, Places> kShuffles;
  const auto block = [third](int b, V8 two) HWY_ATTR {
    return hn::Or(hn::TableLookupBytesOr0(two, hn::Load(D8(), kShuffles.two[b])),
                  hn::TableLookupBytesOr0(third, hn::Load(D8(), kShuffles.third[b])));
  };
  const V8 middle = hn::CombineShiftRightBytes<8>(D8(), high, low);
  StoreThirds(block(0, low), block(1, middle), block(2, high), to);
}

// Red and green of a pixel lie side by side.
struct PlanarPlaces {
  static constexpr int Of(int, const Origin& origin) { return 2 * origin.byte + origin.vector; }
};

// Stores red, green and blue of a vector of pixels, three bytes a pixel.
HWY_INLINE void StoreRgb(V8 red, V8 green, V8 blue, std::uint8_t* to) {
  StoreBlocks<PlanarOrigin, PlanarPlaces>(hn::InterleaveLower(D8(), red, green), hn::InterleaveUpper(D8(), red, green),
                                          blue, to);
}

// The sampled bytes of two pixels, then their near colours.
struct MosaicPlaces {
  static constexpr int Of(int byte, const Origin& origin) {
    const int pixel = byte / 3;
    return pixel / 2 * 4 + origin.vector * 2 + pixel % 2;
  }
};

// Stores the colours of a vector of a mosaic's pixels.
template <class P>
HWY_INLINE void StoreMosaic(V8 pixels, V8 near, V8 other, std::uint8_t* to) {
  const V16 pairs = hn::BitCast(D16(), pixels);
  const V16 near_pairs = hn::BitCast(D16(), InOrder(near));
  const V8 low = hn::BitCast(D8(), hn::InterleaveLower(D16(), pairs, near_pairs));
  const V8 high = hn::BitCast(D8(), hn::InterleaveUpper(D16(), pairs, near_pairs));
  StoreBlocks<MosaicOrigin<P>, MosaicPlaces>(low, high, other, to);
}

// For byte i of the 48 of a block of 16 pixels: its pixel.
struct GreyShuffle {
  alignas(16) std::uint8_t byte[3][16] = {};
  constexpr GreyShuffle() {
    for (int i = 0; i < 48; ++i) byte[i / 16][i % 16] = static_cast<std::uint8_t>(i / 3);
  }
};

// Stores each pixel three times.
HWY_INLINE void StoreGrey(V8 grey, std::uint8_t* to) {
  static constexpr GreyShuffle kShuffle;
  StoreThirds(hn::TableLookupBytes(grey, hn::LoadDup128(D8(), kShuffle.byte[0])),
              hn::TableLookupBytes(grey, hn::LoadDup128(D8(), kShuffle.byte[1])),
              hn::TableLookupBytes(grey, hn::LoadDup128(D8(), kShuffle.byte[2])), to);
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace Rows
HWY_AFTER_NAMESPACE();

#endif
