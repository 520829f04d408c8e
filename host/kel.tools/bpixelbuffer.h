// bpixelbuffer.h
// The memory of an image: rows of bytes, each starting at a multiple of 64.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bsize.h"
#include "kel_tools_api.h"

// Owns the pixels of one image. Rows start at multiples of 64 bytes, so that whole cache lines and the widest vector
// registers fit them; the bytes between a row's last pixel and the next row belong to nobody, and may be overwritten by
// whoever fills the row. Not synchronized: one thread at a time, or readers only. Moving from a buffer leaves it empty.
class KEL_TOOLS_API BPixelBuffer {
 public:
  static constexpr std::size_t kAlignment = 64;

  BPixelBuffer() = default;  // 0 x 0, without memory
  BPixelBuffer(const BPixelBuffer& other);
  BPixelBuffer(BPixelBuffer&& other) noexcept;
  BPixelBuffer& operator=(const BPixelBuffer& other);  // if memory runs out, *this stays as it was
  BPixelBuffer& operator=(BPixelBuffer&& other) noexcept;
  ~BPixelBuffer();

  // Makes room for `size` pixels of bytes_per_pixel (at least 1) bytes. A size with a side that is zero or negative is
  // 0 x 0. Memory is kept where the new rows fit into it, so that an image of steady or falling size is allocated once;
  // pixels are then unspecified, unless nothing changed. New memory is zero. Throws std::bad_alloc, also for sizes
  // beyond the address space; the buffer then stays as it was.
  void Resize(const BSize& size, int bytes_per_pixel);

  const BSize& Size() const { return m_size; }
  std::size_t LineLength() const { return m_line_length_bytes; }  // bytes from one row to the next
  std::size_t AllocatedMemory() const { return m_capacity_bytes; }

  // Row y, with 0 <= y < Size().height. Valid until the next Resize, assignment or move.
  std::uint8_t* Row(int y) { return m_rows + static_cast<std::size_t>(y) * m_line_length_bytes; }
  const std::uint8_t* Row(int y) const { return m_rows + static_cast<std::size_t>(y) * m_line_length_bytes; }

 private:
  void Allocate(std::size_t bytes);
  void Swap(BPixelBuffer& other) noexcept;

  BSize m_size;
  std::size_t m_line_length_bytes = 0;
  std::size_t m_capacity_bytes = 0;  // bytes from m_rows on
  std::uint8_t* m_rows = nullptr;    // aligned, within m_block
  void* m_block = nullptr;           // owned
};
