// A command line, as the application runs it.
#pragma once

#include <cstdio>
#include <string>

// Its standard output and standard error.
inline std::string outputOf(const std::string& command) {
  std::string text;
  FILE* pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  for (int character = fgetc(pipe); character != EOF; character = fgetc(pipe))
    text.push_back(static_cast<char>(character));
  pclose(pipe);
  return text;
}
