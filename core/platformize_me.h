// Asking the jailbreak support library for platform entitlements.
#pragma once

// Calls jb_oneshot_entitle_now of /usr/lib/libjailbreak.dylib for this process. Returns null when the library
// is absent, the loader's error text when the symbol is missing, and otherwise what the library returns,
// passed through unchanged (a pointer-sized value that need not point to anything). Nothing in the system
// calls it: setuid(0) is what the process relies on.
const char* platformize_me();

// The same with another library at the absolute path `library`.
const char* platformizeThrough(const char* library);
