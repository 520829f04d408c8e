// bsmartobj.cpp
// The reference count and what an object answers that says nothing of its own.
#include "bsmartobj.h"

#include <ostream>

BSmartObjBase& BSmartObjBase::operator=(const BSmartObjBase&) { return *this; }
BSmartObjBase::~BSmartObjBase() = default;
std::size_t BSmartObjBase::AllocatedMemory() const { return 0; }

void BSmartObjBase::Ref() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }

void BSmartObjBase::Unref() const noexcept {
  if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

std::int32_t BSmartObjBase::References() const noexcept { return m_references.load(std::memory_order_relaxed); }

BSmartObj& BSmartObj::operator=(const BSmartObj& other) = default;

void BSmartObj::WriteData(std::wostream& archive) const {
  WritePrefix(archive);
  archive << Properties().Str() << L'\n';
}

void BSmartObj::UpdateAssociations() {}
WString BSmartObj::ArchiveName() const { return L"BSmartObj"; }
bool BSmartObj::VerifyObj() const { return true; }
std::uint32_t BSmartObj::Version() const { return 1; }
WString BSmartObj::Properties() const { return ArchiveName(); }

void BSmartObj::WritePrefix(std::wostream& archive) const {
  // Formatted here, since the stream's locale may group digits.
  archive << WString::Format(L"%s %u\n", ArchiveName(), Version()).Str();
}
