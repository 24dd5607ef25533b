// What the leak sanitizer is to overlook in programs of the twin.

/// Asked by the sanitizer when it starts; one suppression a line.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
  return
      // The runtime's tables of selectors and methods, filled at the start and kept until the end.
      "leak:objc_malloc\n"
      // GNUstep's classes share methods; the lists that it copies for that are kept.
      "leak:class_copyMethodList\n"
      // Objects that GNUstep's classes make for themselves when they are first used. All objects
      // come from this library, whose stacks the sanitizer cannot follow further; those of the twin
      // are counted by its tests.
      "leak:libgnustep-base\n";
}
