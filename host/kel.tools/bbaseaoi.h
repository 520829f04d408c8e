// bbaseaoi.h
// An area of interest: the part of a host's image that a device fills.
#pragma once

#include "bimage8u.h"
#include "bimagergb.h"
#include "bsyncablesmartobj.h"
#include "bthreadannotations.h"
#include "kel_tools_api.h"
#include "wstring.h"

// A reference-counted object with a read/write lock. The host makes the area and gives it to a device's snap; the
// device holds the lock for writing (BAoiLockRW) while it resets and fills the area. None of the operations takes the
// lock: whoever shares the area between threads holds it, for reading to look, for writing to change.
class KEL_TOOLS_API BBaseAoi : public BSyncableSmartObj {
 public:
  // The image that an area holds. A device fills eMono8 and eRgb; areas of every other kind hold no image, and are left
  // alone.
  enum Kind : int { eNone = 0, eMono8 = 1, eRgb = 2, eMono16 = 3 };

  // A plain area at (0,0), with an image of 0 x 0 if its kind holds one.
  explicit BBaseAoi(Kind kind, WString text = {});

  int ImageKind() const { return m_kind; }  // a Kind; never changes
  // How a host asks for a conversion, in any case: "[l]" fast, "[p]" good grey without colour weights, anything else
  // good.
  const WString& Text() const { return m_text; }
  void SetText(WString text);
  BSize ImageSize() const;                    // pixels; 0 x 0 without an image
  BPoint Offset() const { return m_offset; }  // where the area lies in the host's picture; any value
  void SetOffset(const BPoint& offset) { m_offset = offset; }
  // Plain: no zoom, mirror or mask of the host lies on the area, so that image pixels are frame pixels.
  bool IsPlain() const { return m_plain; }
  void SetPlain(bool plain) { m_plain = plain; }
  // Makes the area plain, at this place, with an image of this size, whose pixels are unspecified unless the size
  // stays. The text stays. Throws std::bad_alloc, with the area as it was.
  void Reset(const BSize& size, const BPoint& offset = {});

  BImage8u* Mono();  // the area's own; null unless the kind is eMono8
  BImageRgb* Rgb();  // the area's own; null unless the kind is eRgb

  WString ArchiveName() const override;
  WString Properties() const override;

 private:
  Kind m_kind;
  WString m_text;
  BPoint m_offset;
  bool m_plain = true;
  BImage8u m_mono;  // at most one of the two has pixels: the one of the kind
  BImageRgb m_rgb;
};

// Holds an area for reading and writing, from construction to destruction. Waits for the lock without limit; the lock
// is not recursive. Locks and unlocks must be on one thread. [any thread]
class KEL_SCOPED_CAPABILITY BAoiLockRW {
 public:
  explicit BAoiLockRW(BBaseAoi& aoi) KEL_ACQUIRE(aoi) : m_aoi(aoi) { m_aoi.LockW(); }
  ~BAoiLockRW() KEL_RELEASE() { m_aoi.UnlockW(); }
  BAoiLockRW(const BAoiLockRW&) = delete;
  BAoiLockRW& operator=(const BAoiLockRW&) = delete;

 private:
  BBaseAoi& m_aoi;
};
