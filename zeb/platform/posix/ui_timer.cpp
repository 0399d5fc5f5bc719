// ui_timer.cpp (POSIX): the UI timer as a GLib timeout source.
#include "zeb/platform/ui_timer.h"

#include <glib.h>

namespace zeb {
namespace platform {

namespace {

struct TickTarget {
  void (*tick)(void*);
  void* data;
};

gboolean onTimeout(gpointer p) {
  const TickTarget* target = static_cast<const TickTarget*>(p);
  target->tick(target->data);
  return G_SOURCE_CONTINUE;
}

void freeTarget(gpointer p) {
  delete static_cast<TickTarget*>(p);
}

}  // namespace

void* startUiTimer(unsigned periodMs, void (*tick)(void* data), void* data) {
  if (tick == nullptr) return nullptr;
  GSource* source = g_timeout_source_new(periodMs);
  g_source_set_callback(source, &onTimeout, new TickTarget{tick, data}, &freeTarget);
  // A null context attaches to the global default context.
  g_source_attach(source, g_main_context_get_thread_default());
  return source;
}

void stopUiTimer(void* timer) {
  if (timer == nullptr) return;
  GSource* source = static_cast<GSource*>(timer);
  g_source_destroy(source);
  g_source_unref(source);
}

}  // namespace platform
}  // namespace zeb
