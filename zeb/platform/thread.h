// thread.h: the native thread services of the thread wrapper: starting a detached thread and
// sleeping the calling thread.
//
//   if (!zeb::platform::startDetachedThread(&work, arg)) reportFailure();
//   zeb::platform::sleepMilliseconds(1);
#ifndef ZEB_PLATFORM_THREAD_H
#define ZEB_PLATFORM_THREAD_H

namespace zeb {
namespace platform {

// Starts a native thread that runs routine(arg) and then ends; nobody joins it (its resources
// are freed when it ends). False when the system cannot create the thread (routine is then never
// called).
bool startDetachedThread(void (*routine)(void*), void* arg);

// Suspends the calling thread for at least `ms` milliseconds (nothing for ms <= 0).
void sleepMilliseconds(int ms);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_THREAD_H
