// bthreadannotations.h
// Words by which clang checks, while compiling, that guarded data is touched under its lock only.
#pragma once

// Other compilers ignore them. `-Wthread-safety` turns the check on.
#if defined(__clang__)
#define KEL_THREAD_ANNOTATION(annotation) __attribute__((annotation))
#else
#define KEL_THREAD_ANNOTATION(annotation)
#endif

// On classes: a lock, and what holds one for its scope.
#define KEL_CAPABILITY(name) KEL_THREAD_ANNOTATION(capability(name))
#define KEL_SCOPED_CAPABILITY KEL_THREAD_ANNOTATION(scoped_lockable)

// On fields: the lock that guards them.
#define KEL_GUARDED_BY(lock) KEL_THREAD_ANNOTATION(guarded_by(lock))

// On functions: what the caller holds, must not hold, gains or loses.
#define KEL_REQUIRES(...) KEL_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define KEL_EXCLUDES(...) KEL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define KEL_ACQUIRE(...) KEL_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define KEL_ACQUIRE_SHARED(...) KEL_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define KEL_TRY_ACQUIRE(...) KEL_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))
#define KEL_TRY_ACQUIRE_SHARED(...) KEL_THREAD_ANNOTATION(try_acquire_shared_capability(__VA_ARGS__))
#define KEL_RELEASE(...) KEL_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define KEL_RELEASE_SHARED(...) KEL_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))

// For the body of a lock's own functions, whose inside is not annotated.
#define KEL_NO_THREAD_SAFETY_ANALYSIS KEL_THREAD_ANNOTATION(no_thread_safety_analysis)
