#include "core/FileManager.h"
#include "core/Process.h"
#include "core/run_cmd.h"
#include "support/StandardStreams.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>

#include <gtest/gtest.h>

namespace {

TEST(Running, TheShellReadsTheWholeLineAndTheCallBlocksUntilItEnds) {
  const TemporaryFolder folder;
  setenv("TWEAKBENCH_TEST_WORD", "inherited", 1);
  const std::string out = folder / "out";
  run_cmd(
      ("echo \"a 'b'\" | tr a-z A-Z > " + out + " && false || echo $TWEAKBENCH_TEST_WORD >> " + out).c_str());
  EXPECT_EQ(fileAt(out), "A 'B'\ninherited\n");
  run_cmder(("exit 3; touch " + out + "2").c_str());
  run_cmd("no-such-command-here 2> /dev/null");
  run_cmd(("kill -9 $$; touch " + out + "2").c_str());
  EXPECT_FALSE(fileExistsAtPath(out + "2"));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was left unreaped";
}

TEST(Running, OutputIsReadAsItComesAndTheReaderMayEndTheCommand) {
  std::string read;
  read_cmd("echo " + quoted("it's $(false)") + "; sleep 1000 & wait", [&read](std::string_view piece) {
    read += piece;
    return read.empty();
  });
  EXPECT_EQ(read, "it's $(false)\n");
  int calls = 0;
  read_cmd("sleep 1000", [&calls](std::string_view piece) { return piece.empty() && ++calls < 3; });
  EXPECT_EQ(calls, 3) << "it is asked without any output, too";
}

TEST(Running, AFailedWaitIsTheOnlyThingReported) {
  const TemporaryFolder folder;
  const StandardStreams restored;
  redirectStandardStreams(folder / "log");
  run_cmd("exit 1");
  EXPECT_EQ(fileAt(folder / "log"), "");
  signal(SIGCHLD, SIG_IGN);
  run_cmd("true");
  signal(SIGCHLD, SIG_DFL);
  EXPECT_EQ(fileAt(folder / "log"), "waitpid: No child processes\n");
}

TEST(CapturedRun, StartsEmptyTakesOutputAndErrorsAndIsNeverUndone) {
  const TemporaryFolder folder;
  const std::string first = folder / "first.log";
  const std::string second = folder / "second.log";
  putFile(first, "of an earlier run\n");
  const StandardStreams restored;
  EXPECT_EQ(run_logged("echo out; echo err >&2", first), "out\nerr\n");
  run_cmd("echo later");
  EXPECT_EQ(fileAt(first), "out\nerr\nlater\n");
  EXPECT_EQ(run_logged("printf 'caf\\351'", second), std::nullopt) << "not UTF-8";
  run_cmd("echo more");
  EXPECT_EQ(fileAt(second), "caf\xE9more\n");
  EXPECT_EQ(fileAt(first), "out\nerr\nlater\n");
  // The log is the input as well; what a command reads there is what was printed before, then the end of the
  // file.
  EXPECT_EQ(run_logged("cat; echo done", folder / "third.log"), "done\n");
}

TEST(CapturedRun, ALogThatCannotBeOpenedIsAnAbsentOne) {
  const TemporaryFolder folder;
  const StandardStreams restored;
  EXPECT_EQ(run_logged("echo lost", folder / "no/such/folder.log"), std::nullopt);
  EXPECT_EQ(run_logged("echo found", folder / "found.log"), "found\n");
}

TEST(Stopping, EndsTheWholeTreeOfARunningCommandAndStartsNoMore) {
  // In a process of its own, since stopping is for good.
  const TemporaryFolder folder;
  const std::string ready = folder / "ready";
  mkfifo(ready.c_str(), 0600);
  const pid_t child = fork();
  ASSERT_NE(child, -1);
  if (child == 0) {
    alarm(20);  // where nothing is stopped
    std::thread runner([&] {
      // A grandchild that ignores the polite signal and would write when it is over.
      run_cmd(("trap '' TERM; (sh -c 'trap \"\" TERM; echo > " + ready + "; while [ -e " + ready +
               " ]; do sleep 0.01; done'; touch " + (folder / "survived") + ")")
                  .c_str());
      run_cmd(("touch " + (folder / "next-step")).c_str());
    });
    fileAt(ready);
    stopCommands(50);
    runner.join();
    _exit(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_FALSE(fileExistsAtPath(folder / "survived"));
  EXPECT_FALSE(fileExistsAtPath(folder / "next-step"));
}

TEST(Entitlement, HasThreeResults) {
  EXPECT_EQ(platformize_me(), nullptr);
  EXPECT_EQ(platformize_me("/no/such/library.dylib"), nullptr);
  const char* const missing = platformize_me("libm.so.6");
  ASSERT_NE(missing, nullptr);
  EXPECT_NE(std::string(missing).find("jb_oneshot_entitle_now"), std::string::npos);
  // The library of the tests answers with its arguments: process identifier times ten plus flag.
  EXPECT_EQ(reinterpret_cast<std::intptr_t>(platformize_me(TWEAKBENCH_LIBRARY_WITH_SYMBOL)),
            static_cast<std::intptr_t>(getpid()) * 10 + 2);
}

}  // namespace
