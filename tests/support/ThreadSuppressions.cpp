// What ThreadSanitizer is not to report. Its library asks for it at the start of a program.

// Qt as Debian ships it is not instrumented, and its mutexes are its own, so that what they keep apart looks
// like a race.
extern "C" const char* __tsan_default_suppressions() {
  // What Qt itself makes of memory and conditions. Our code is looked at all the same, also where Qt calls
  // it.
  return "called_from_lib:libQt6Core.so.6\n"
         "called_from_lib:libQt6Gui.so.6\n"
         "called_from_lib:libQt6Widgets.so.6\n"
         "called_from_lib:libglib-2.0.so.0\n"  // whose event loop the threads of Qt have
         // A job that a worker posted and that is taken back, unrun, at the end of the application.
         "race:QMetaCallEvent\n";
}
