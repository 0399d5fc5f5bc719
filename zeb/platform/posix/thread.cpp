// thread.cpp (POSIX): detached pthreads and nanosleep.
#include "zeb/platform/thread.h"

#include <errno.h>
#include <pthread.h>
#include <time.h>

#include <new>

namespace zeb {
namespace platform {

namespace {

struct DetachedAttributes {
  DetachedAttributes() {
    ok = pthread_attr_init(&attr) == 0;
    if (ok) ok = pthread_attr_setdetachstate(&attr, PTHREAD_CREATE_DETACHED) == 0;
  }
  ~DetachedAttributes() { pthread_attr_destroy(&attr); }
  pthread_attr_t attr;
  bool ok;
};

struct StartRecord {
  void (*routine)(void*);
  void* arg;
};

void* runStartRecord(void* p) {
  const StartRecord start = *static_cast<StartRecord*>(p);
  delete static_cast<StartRecord*>(p);
  start.routine(start.arg);
  return nullptr;
}

}  // namespace

bool startDetachedThread(void (*routine)(void*), void* arg) {
  DetachedAttributes attributes;
  if (!attributes.ok) return false;
  StartRecord* start = new (std::nothrow) StartRecord{routine, arg};
  if (start == nullptr) return false;
  pthread_t thread;
  if (pthread_create(&thread, &attributes.attr, &runStartRecord, start) == 0) return true;
  delete start;
  return false;
}

void sleepMilliseconds(int ms) {
  if (ms <= 0) return;
  timespec remaining{ms / 1000, static_cast<long>(ms % 1000) * 1000000L};
  while (nanosleep(&remaining, &remaining) != 0 && errno == EINTR) {
  }
}

}  // namespace platform
}  // namespace zeb
