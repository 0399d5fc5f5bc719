// A module that loads but exports no factory, for the loader's failure tests.

extern "C" __attribute__((visibility("default"))) int notAFactory(void) {
  return 0;
}
