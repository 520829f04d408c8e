// bsyncablesmartobj.cpp
// The read/write lock of an object.
#include "bsyncablesmartobj.h"

#if defined(__MINGW32__)
#include <pthread.h>

// The thread library allocates a lock when it is first used, and this standard library leaves it allocated.
BSyncableSmartObj::~BSyncableSmartObj() {
  pthread_rwlock_destroy(static_cast<pthread_rwlock_t*>(m_lock.native_handle()));
}
#else
BSyncableSmartObj::~BSyncableSmartObj() = default;
#endif

BSyncableSmartObj& BSyncableSmartObj::operator=(const BSyncableSmartObj& other) {
  BSmartObj::operator=(other);
  return *this;
}

// The standard lock inside carries no annotations; the functions' own declarations are what callers are checked
// against.
void BSyncableSmartObj::LockR() const KEL_NO_THREAD_SAFETY_ANALYSIS { m_lock.lock_shared(); }
void BSyncableSmartObj::LockW() const KEL_NO_THREAD_SAFETY_ANALYSIS { m_lock.lock(); }
void BSyncableSmartObj::UnlockR() const KEL_NO_THREAD_SAFETY_ANALYSIS { m_lock.unlock_shared(); }
void BSyncableSmartObj::UnlockW() const KEL_NO_THREAD_SAFETY_ANALYSIS { m_lock.unlock(); }
bool BSyncableSmartObj::TryLockR() const KEL_NO_THREAD_SAFETY_ANALYSIS { return m_lock.try_lock_shared(); }
bool BSyncableSmartObj::TryLockW() const KEL_NO_THREAD_SAFETY_ANALYSIS { return m_lock.try_lock(); }
