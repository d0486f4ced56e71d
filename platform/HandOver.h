// Tells ThreadSanitizer of what one thread hands over to another through Qt, whose locks it does not see.
// One place for all of it, so a race between two jobs may hide behind a third. Costs nothing elsewhere.
#pragma once

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace handover {

#if defined(__SANITIZE_THREAD__)
inline char between;
// What this thread did so far is done before what another does after taken().
inline void given() {
  __tsan_release(&between);
}
inline void taken() {
  __tsan_acquire(&between);
}
#else
inline void given() {}
inline void taken() {}
#endif

}  // namespace handover
