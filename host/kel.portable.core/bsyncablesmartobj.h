// bsyncablesmartobj.h
// A reference-counted object with a read/write lock, and the two scoped locks on it.
#pragma once

#include <shared_mutex>

#include "bsmartobj.h"
#include "bthreadannotations.h"

// Any number of readers or one writer at a time. Not recursive: a thread that holds the lock does not ask for it again,
// in either way. It is unlocked by the thread that locked it, in the way in which it was locked. The lock belongs to
// its object: neither copying nor assigning touches it. The virtual operations are in the host's table order.
// [any thread]
class KEL_CAPABILITY("lock") KEL_PORTABLE_CORE_API BSyncableSmartObj : public virtual BSmartObj {
 public:
  BSyncableSmartObj() = default;
  BSyncableSmartObj(const BSyncableSmartObj& other) : BSmartObj(other) {}
  BSyncableSmartObj& operator=(const BSyncableSmartObj& other);

  // Wait without limit.
  virtual void LockR() const KEL_ACQUIRE_SHARED();
  virtual void LockW() const KEL_ACQUIRE();
  virtual void UnlockR() const KEL_RELEASE_SHARED();
  virtual void UnlockW() const KEL_RELEASE();
  // True when the lock was free and is now held.
  virtual bool TryLockR() const KEL_TRY_ACQUIRE_SHARED(true);
  virtual bool TryLockW() const KEL_TRY_ACQUIRE(true);

  ~BSyncableSmartObj() override;

 private:
  mutable std::shared_mutex m_lock;
};

// Holds an object's lock for reading, for its scope.
class KEL_SCOPED_CAPABILITY BAutoLockR {
 public:
  explicit BAutoLockR(const BSyncableSmartObj& object) KEL_ACQUIRE_SHARED(object) : m_object(object) {
    m_object.LockR();
  }
  ~BAutoLockR() KEL_RELEASE() { m_object.UnlockR(); }
  BAutoLockR(const BAutoLockR&) = delete;
  BAutoLockR& operator=(const BAutoLockR&) = delete;

 private:
  const BSyncableSmartObj& m_object;
};

// Holds an object's lock for writing, for its scope.
class KEL_SCOPED_CAPABILITY BAutoLockW {
 public:
  explicit BAutoLockW(const BSyncableSmartObj& object) KEL_ACQUIRE(object) : m_object(object) { m_object.LockW(); }
  ~BAutoLockW() KEL_RELEASE() { m_object.UnlockW(); }
  BAutoLockW(const BAutoLockW&) = delete;
  BAutoLockW& operator=(const BAutoLockW&) = delete;

 private:
  const BSyncableSmartObj& m_object;
};
