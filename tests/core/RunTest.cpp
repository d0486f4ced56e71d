#include "core/FileManager.h"
#include "core/History.h"
#include "core/LauncherContract.h"
#include "core/Process.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "support/Clock.h"
#include "support/StandardStreams.h"
#include "support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>

#include <gtest/gtest.h>

// The program's own definitions come before the C library's. On a held clock all time that is waited for
// passes at once.
extern "C" {

int poll(pollfd* files, nfds_t count, int timeout) {
  const auto real = reinterpret_cast<decltype(&poll)>(dlsym(RTLD_NEXT, "poll"));
  const int ready = real(files, count, HeldClock::isHeldNow() ? 0 : timeout);
  if (ready == 0 && HeldClock::isHeldNow()) HeldClock::turn(timeout);
  return ready;
}

int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* lock, clockid_t clock,
                           const timespec* until) {
  const auto real =
      reinterpret_cast<decltype(&pthread_cond_clockwait)>(dlsym(RTLD_NEXT, "pthread_cond_clockwait"));
  if (!HeldClock::isHeldNow()) return real(condition, lock, clock, until);
  HeldClock::turn((until->tv_sec * 1'000'000'000 + until->tv_nsec - HeldClock::read()) / 1'000'000);
  return ETIMEDOUT;
}
}

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
  const HeldClock clock;
  const long begin = HeldClock::read();
  read_cmd("sleep 1000", [&calls](std::string_view piece) { return piece.empty() && ++calls < 3; });
  EXPECT_EQ(calls, 3) << "it is asked without any output, too";
  EXPECT_EQ((HeldClock::read() - begin) / 1'000'000, 300);
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

TEST(Stopping, GivesARunningTreeItsGraceEndsItAndStartsNoMore) {
  // What the command does when it is asked to end, and whether the whole grace passes.
  for (const auto& [trap, wholeGrace] : {std::pair("", true), {"touch tidied; exit", false}}) {
    // In a process of its own, since stopping is for good.
    const TemporaryFolder folder;
    mkfifo((folder / "ready").c_str(), 0600);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
      alarm(20);  // where nothing is stopped
      std::thread runner([&folder, trap = trap] {
        // Its child ignores the signal as well where the trap is empty, and would write when it is over.
        run_cmd(fill("cd %@; trap '%@' TERM; (echo > ready; while [ -e ready ]; do sleep 0.01; done); "
                     "touch survived",
                     {folder.path(), std::string(trap)})
                    .c_str());
        run_cmd(("touch " + (folder / "next-step")).c_str());
      });
      fileAt(folder / "ready");
      long passed = 0;
      if (wholeGrace) {
        const HeldClock clock;
        const long begin = HeldClock::read();
        stopCommands(3'600'000);
        passed = (HeldClock::read() - begin) / 1'000'000;
      } else {
        stopCommands(2000);
      }
      runner.join();
      _exit(passed == (wholeGrace ? 3'600'000 : 0) && waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD
                ? 0
                : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << trap;
    EXPECT_EQ(fileExistsAtPath(folder / "tidied"), !wholeGrace);
    EXPECT_FALSE(fileExistsAtPath(folder / "survived"));
    EXPECT_FALSE(fileExistsAtPath(folder / "next-step"));
  }
}

TEST(History, IsWaitedForASecondAndNoLonger) {
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
  ASSERT_EQ(dup2(ends[0], history::applicationDescriptor), history::applicationDescriptor);
  connectHistory();
  const HeldClock clock;
  const auto waited = [] {
    const long begin = HeldClock::read();
    keepHistory();
    return (HeldClock::read() - begin) / 1'000'000;
  };
  const long begin = HeldClock::read() / 1'000'000;
  EXPECT_EQ(waited(), 1000);
  history::Request request{};
  ASSERT_GT(recv(ends[1], &request, sizeof request, MSG_DONTWAIT), 0);
  EXPECT_EQ(request.wish, history::Wish::Copy);
  EXPECT_EQ(request.deadline, begin + 1000);
  // The late answer to the first comes before the second's.
  for (const std::uint32_t number : {request.number, request.number + 1}) {
    const history::Answer answer{number};
    ASSERT_GT(send(ends[1], &answer, sizeof answer, 0), 0);
  }
  EXPECT_EQ(waited(), 0);
  recv(ends[1], &request, sizeof request, MSG_DONTWAIT);
  static_cast<void>(NotedBackup("P"));
  NotedBackup("Q").isWhole();
  NotedBackup(std::string(sizeof request.name, 'n')).isWhole();
  std::string asked;
  while (recv(ends[1], &request, sizeof request, MSG_DONTWAIT) > 0)
    asked += std::to_string(static_cast<int>(request.wish)) + request.name + " ";
  EXPECT_EQ(asked, "2P 4 2Q 3 3 ");
  close(history::applicationDescriptor);
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
