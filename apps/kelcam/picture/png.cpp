// png.cpp
// Pictures as PNG files.
#include "picture/png.h"

#include <algorithm>
#include <array>
#include <new>
#include <span>
#include <tuple>

#define ZLIB_CONST
#include <zlib.h>

namespace Kelcam {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::uint8_t kBitsPerChannel = 8;
constexpr std::uint8_t kGreyColour = 0;
constexpr std::uint8_t kTrueColour = 2;
constexpr std::uint8_t kAverageFilter = 3;
constexpr std::size_t kDataChunkBytes = 256U << 10U;
// Of deflate: the most memory for its tables, and the largest window.
constexpr int kMemoryLevel = 9;
constexpr int kWindowBits = 15;

void AppendNumber(Bytes& file, std::size_t number) {
  for (const unsigned shift : {24U, 16U, 8U, 0U}) file.push_back(static_cast<std::uint8_t>(number >> shift));
}

void AppendChunk(Bytes& file, std::string_view type, std::span<const std::uint8_t> data) {
  AppendNumber(file, data.size());
  const std::size_t checked_from = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), data.begin(), data.end());
  AppendNumber(file, crc32_z(0, file.data() + checked_from, file.size() - checked_from));
}

Bytes Header(const Pixels& pixels) {
  Bytes header;
  AppendNumber(header, static_cast<std::size_t>(pixels.size.width));
  AppendNumber(header, static_cast<std::size_t>(pixels.size.height));
  const std::uint8_t colour = pixels.channels == 1 ? kGreyColour : kTrueColour;
  // Compression, filter method and interlace have one value each.
  header.insert(header.end(), {kBitsPerChannel, colour, 0, 0, 0});
  return header;
}

void AppendText(Bytes& file, std::string_view keyword, const std::string& text) {
  const bool is_ascii = std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; });
  Bytes data(keyword.begin(), keyword.end());
  data.push_back(0);
  // Not compressed, of no language, and the keyword is not translated.
  if (!is_ascii) data.insert(data.end(), {0, 0, 0, 0});
  data.insert(data.end(), text.begin(), text.end());
  AppendChunk(file, is_ascii ? "tEXt" : "iTXt", data);
}

// Filters rows, each against the one before it.
class RowFilter {
 public:
  explicit RowFilter(const Pixels& pixels)
      : m_channels(pixels.channels), m_above(pixels.RowBytes()), m_filtered(1 + pixels.RowBytes(), kAverageFilter) {}

  std::span<const std::uint8_t> Filtered(const std::uint8_t* row) {
    // Not through the members: as far as the compiler knows, each byte that is written may be one of theirs.
    const std::size_t bytes = m_above.size();
    const std::size_t channels = m_channels;
    const std::uint8_t* const above = m_above.data();
    std::uint8_t* const target = m_filtered.data() + 1;
    const std::size_t first_pixel = std::min(channels, bytes);
    for (std::size_t i = 0; i < first_pixel; ++i) target[i] = Difference(row[i], above[i]);
    for (std::size_t i = first_pixel; i < bytes; ++i) target[i] = Difference(row[i], row[i - channels] + above[i]);
    std::copy_n(row, bytes, m_above.begin());
    return m_filtered;
  }

 private:
  static std::uint8_t Difference(int value, int sum_of_neighbours) {
    return static_cast<std::uint8_t>(value - sum_of_neighbours / 2);
  }

  const std::size_t m_channels;
  Bytes m_above;     // black above the first row
  Bytes m_filtered;  // the filter's number, then the row
};

// Compresses what it gets into chunks of pixel data.
class DataChunks {
 public:
  explicit DataChunks(Bytes& file) : m_file(file), m_chunk(kDataChunkBytes) {
    if (deflateInit2(&m_stream, 1, Z_DEFLATED, kWindowBits, kMemoryLevel, Z_HUFFMAN_ONLY) != Z_OK)
      throw std::bad_alloc();
    StartChunk();
  }
  ~DataChunks() { std::ignore = deflateEnd(&m_stream); }
  DataChunks(const DataChunks&) = delete;
  DataChunks& operator=(const DataChunks&) = delete;

  void Append(std::span<const std::uint8_t> bytes) {
    m_stream.next_in = bytes.data();
    m_stream.avail_in = static_cast<uInt>(bytes.size());
    while (m_stream.avail_in > 0) Deflate(Z_NO_FLUSH);
  }

  void Finish() {
    while (!Deflate(Z_FINISH)) {
    }
    EndChunk();
  }

 private:
  // True when the stream is complete.
  bool Deflate(int flush) {
    const int code = deflate(&m_stream, flush);
    if (m_stream.avail_out == 0) {
      EndChunk();
      StartChunk();
    }
    return code == Z_STREAM_END;
  }

  void StartChunk() {
    m_stream.next_out = m_chunk.data();
    m_stream.avail_out = static_cast<uInt>(m_chunk.size());
  }

  void EndChunk() {
    const std::size_t count = m_chunk.size() - m_stream.avail_out;
    if (count > 0) AppendChunk(m_file, "IDAT", std::span(m_chunk).first(count));
  }

  Bytes& m_file;
  Bytes m_chunk;
  z_stream m_stream{};
};

}  // namespace

std::vector<std::uint8_t> EncodePng(const Pixels& pixels, const PictureDetails& details) {
  Bytes file;
  // Noise leaves about half of a picture.
  file.reserve(pixels.Bytes() / 2);
  file.assign(kSignature.begin(), kSignature.end());
  AppendChunk(file, "IHDR", Header(pixels));
  for (const auto& [keyword, text] : TextsOf(details)) AppendText(file, keyword, text);
  DataChunks data(file);
  RowFilter filter(pixels);
  for (int y = 0; y < pixels.size.height; ++y) data.Append(filter.Filtered(pixels.Row(y)));
  data.Finish();
  AppendChunk(file, "IEND", {});
  return file;
}

}  // namespace Kelcam
