// bpixelbuffer.cpp
// The memory of an image: rows of bytes, each starting at a multiple of 64.
#include "bpixelbuffer.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace {

// Rows that lie a multiple of this apart compete for the same few lines of a first-level cache.
constexpr std::size_t kCacheSetPeriod = 4096;

std::size_t LineLengthFor(std::size_t width, std::size_t bytes_per_pixel) {
  const std::size_t alignment = BPixelBuffer::kAlignment;
  const std::size_t limit = std::numeric_limits<std::size_t>::max() - 2 * alignment;
  if (width > limit / bytes_per_pixel) throw std::bad_alloc();
  const std::size_t length = (width * bytes_per_pixel + alignment - 1) / alignment * alignment;
  return length % kCacheSetPeriod == 0 ? length + alignment : length;
}

std::size_t BytesFor(std::size_t line_length_bytes, std::size_t height) {
  const auto limit = static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()) - BPixelBuffer::kAlignment;
  if (height > limit / line_length_bytes) throw std::bad_alloc();
  return line_length_bytes * height;
}

}  // namespace

BPixelBuffer::BPixelBuffer(const BPixelBuffer& other) { *this = other; }

BPixelBuffer::BPixelBuffer(BPixelBuffer&& other) noexcept { Swap(other); }

BPixelBuffer& BPixelBuffer::operator=(const BPixelBuffer& other) {
  if (this == &other) return *this;
  const std::size_t bytes = static_cast<std::size_t>(other.m_size.height) * other.m_line_length_bytes;
  if (bytes > m_capacity_bytes) Allocate(bytes);
  m_size = other.m_size;
  m_line_length_bytes = other.m_line_length_bytes;
  if (bytes != 0) std::memcpy(m_rows, other.m_rows, bytes);
  return *this;
}

BPixelBuffer& BPixelBuffer::operator=(BPixelBuffer&& other) noexcept {
  BPixelBuffer taken(std::move(other));
  Swap(taken);
  return *this;
}

BPixelBuffer::~BPixelBuffer() { std::free(m_block); }

void BPixelBuffer::Resize(const BSize& size, int bytes_per_pixel) {
  if (size.width <= 0 || size.height <= 0) {
    m_size = BSize();
    m_line_length_bytes = 0;
    return;
  }
  const std::size_t line_length_bytes =
      LineLengthFor(static_cast<std::size_t>(size.width), static_cast<std::size_t>(bytes_per_pixel));
  const std::size_t bytes = BytesFor(line_length_bytes, static_cast<std::size_t>(size.height));
  if (bytes > m_capacity_bytes) Allocate(bytes);
  m_size = size;
  m_line_length_bytes = line_length_bytes;
}

void BPixelBuffer::Allocate(std::size_t bytes) {
  BPixelBuffer larger;
  // calloc hands large blocks over as untouched zero pages: black at no cost.
  larger.m_block = std::calloc(bytes + kAlignment, 1);
  if (larger.m_block == nullptr) throw std::bad_alloc();
  const auto address = reinterpret_cast<std::uintptr_t>(larger.m_block);
  larger.m_rows = static_cast<std::uint8_t*>(larger.m_block) + (kAlignment - address % kAlignment);
  larger.m_capacity_bytes = bytes;
  Swap(larger);
}

void BPixelBuffer::Swap(BPixelBuffer& other) noexcept {
  std::swap(m_size, other.m_size);
  std::swap(m_line_length_bytes, other.m_line_length_bytes);
  std::swap(m_capacity_bytes, other.m_capacity_bytes);
  std::swap(m_rows, other.m_rows);
  std::swap(m_block, other.m_block);
}
