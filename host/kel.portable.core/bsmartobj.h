// bsmartobj.h
// Reference-counted objects: the count (BSmartObjBase) and what the host asks of every such object (BSmartObj).
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <iosfwd>

#include "kel_portable_core_api.h"
#include "wstring.h"

// The virtual operations of both classes are in the host's table order: assignment of BSmartObjBase, destructor,
// AllocatedMemory, assignment of BSmartObj, WriteData, UpdateAssociations, ArchiveName, VerifyObj, Version, Properties,
// WritePrefix. A module calls them by their place, so none may be added, moved or taken away.

// A new object has no reference, and the count belongs to the object: neither copying nor assigning touches it. Whoever
// drops the last reference deletes the object, so an object that is ever referenced lives on the heap. An object that
// never was may also be deleted plainly.
class KEL_PORTABLE_CORE_API BSmartObjBase {
 public:
  BSmartObjBase() = default;
  BSmartObjBase(const BSmartObjBase&) : BSmartObjBase() {}
  virtual BSmartObjBase& operator=(const BSmartObjBase& other);
  virtual ~BSmartObjBase();

  // Bytes that the object holds beyond itself. Here: 0.
  virtual std::size_t AllocatedMemory() const;

  // One reference more; one reference less, which deletes the object when it was the last. Unref matches an earlier
  // Ref. What a thread did to the object before its Unref is done when another thread's Unref deletes it. [any thread]
  void Ref() const noexcept;
  void Unref() const noexcept;
  // How many there are now; with other threads about, no more than a hint. [any thread]
  std::int32_t References() const noexcept;

 private:
  mutable std::atomic<std::int32_t> m_references{0};
};

// An object of the host: counted, and able to describe itself to an archive and to a person.
class KEL_PORTABLE_CORE_API BSmartObj : public BSmartObjBase {
 public:
  using BSmartObjBase::operator=;
  BSmartObj() = default;
  BSmartObj(const BSmartObj&) = default;
  virtual BSmartObj& operator=(const BSmartObj& other);

  // Writes the object: WritePrefix, then its content. Here the content is the line that Properties gives.
  virtual void WriteData(std::wostream& archive) const;
  // Called when an archive has been read in full, to look up the objects that this one names. Here: nothing.
  virtual void UpdateAssociations();
  // The name under which an archive knows the class. Here: "BSmartObj".
  virtual WString ArchiveName() const;
  // Whether the object's content is sound. Here: true.
  virtual bool VerifyObj() const;
  // The version of what WriteData writes. Here: 1.
  virtual std::uint32_t Version() const;
  // One line, without line break, that describes the object to a person. Here: the archive name.
  virtual WString Properties() const;
  // Writes the line that starts an object: archive name, blank, version.
  virtual void WritePrefix(std::wostream& archive) const;
};
