// bbaseaoi.cpp
// An area of interest: the part of a host's image that a device fills.
#include "bbaseaoi.h"

#include <utility>

BBaseAoi::BBaseAoi(Kind kind, WString text) : m_kind(kind), m_text(std::move(text)) {}

void BBaseAoi::SetText(WString text) { m_text = std::move(text); }

BSize BBaseAoi::ImageSize() const { return m_kind == eRgb ? m_rgb.Size() : m_mono.Size(); }

void BBaseAoi::Reset(const BSize& size, const BPoint& offset) {
  if (m_kind == eMono8) m_mono.Resize(size);
  if (m_kind == eRgb) m_rgb.Resize(size);
  m_offset = offset;
  m_plain = true;
}

BImage8u* BBaseAoi::Mono() { return m_kind == eMono8 ? &m_mono : nullptr; }

BImageRgb* BBaseAoi::Rgb() { return m_kind == eRgb ? &m_rgb : nullptr; }

WString BBaseAoi::ArchiveName() const { return L"BBaseAoi"; }

WString BBaseAoi::Properties() const {
  const BSize size = ImageSize();
  return WString::Format(L"Image kind %d, %d x %d pixels at (%d, %d)%s", ImageKind(), size.width, size.height,
                         m_offset.x, m_offset.y, m_plain ? L"" : L", not plain");
}
