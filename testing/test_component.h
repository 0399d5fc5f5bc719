// test_component.h: the interface of the test component, a real component library that the
// loader tests build as a module and load. Its factory "createInterfaceObject" returns a new
// itestcomponent; the tests hand it bundles through their interface.
#ifndef ZEB_TESTING_TEST_COMPONENT_H
#define ZEB_TESTING_TEST_COMPONENT_H

#include "zeb/data/tdatabundle.h"
#include "zeb/utils/interface_classbase.h"

class itestcomponent : public interface_classbase {
 public:
  itestcomponent() : interface_classbase(true) {}
  // Reads the bundle on the component's side: walks its items, reads "n" (int32), "u" (uint64)
  // and "s" (text), and writes back "count" (int32, the items walked), "sum" (int64, n + u) and
  // "echo" (the text followed by "!"). Returns the items walked; -1 for a null bundle.
  virtual int readBundle(idatabundle* bundle) = 0;
};

#endif  // ZEB_TESTING_TEST_COMPONENT_H
