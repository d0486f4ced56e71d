// Stands for the jailbreak support library: answers with its arguments, so that a test sees them arrive.
#include <stdint.h>
#include <sys/types.h>

const char* jb_oneshot_entitle_now(pid_t process, int flag) {
  return (const char*)(intptr_t)(process * 10 + flag);
}
