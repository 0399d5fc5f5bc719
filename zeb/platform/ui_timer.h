// ui_timer.h: a periodic timer on the UI thread's message loop, for the UI task thread.
//
// On POSIX the loop is GLib's main loop: the timer is a timeout source attached to the calling
// thread's main context (its thread-default context, or the global default context when none is
// pushed), so the callback runs on the thread that iterates that context.
//
//   void* timer = zeb::platform::startUiTimer(16, &onTick, state);
//   ...
//   zeb::platform::stopUiTimer(timer);   // on the same thread
#ifndef ZEB_PLATFORM_UI_TIMER_H
#define ZEB_PLATFORM_UI_TIMER_H

namespace zeb {
namespace platform {

// Calls tick(data) every `periodMs` milliseconds from the calling thread's main loop until
// stopUiTimer. Returns the timer, null when `tick` is null or the timer cannot be created.
void* startUiTimer(unsigned periodMs, void (*tick)(void* data), void* data);
// Destroys a timer startUiTimer returned; tick is not called again. Null is ignored.
void stopUiTimer(void* timer);

}  // namespace platform
}  // namespace zeb

#endif  // ZEB_PLATFORM_UI_TIMER_H
