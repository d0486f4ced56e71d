// Writes that fail half way, as on a full disk.
#pragma once

#include <csignal>
#include <sys/resource.h>

// During its lifetime no file of this process grows beyond that size.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit tight{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
  }
  ~SizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  rlimit before_{};
};
