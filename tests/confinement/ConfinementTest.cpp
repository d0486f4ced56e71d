// The device's promises, each tried in every way we know: as an ordinary user, and from root. An attempt
// counts only where it succeeds outside the device; one that should and does not fails the test, since then
// nothing is proven.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// Has no account: whatever it can do, it can do as a number only.
constexpr uid_t kUser = 23456;

struct Try {
  std::string way;
  std::string caller;
  std::string expected;  // whose control it has
  std::string error;
  bool succeedsOutside = false;
  bool succeedsInside = false;
};
using Tries = std::map<std::string, std::vector<Try>>;

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream words(line);
  for (std::string field; std::getline(words, field, '|');) fields.push_back(field);
  return fields;
}

class Place {
 public:
  Place() : path_("/tmp/tweakbench-confinement-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
    chmod(path_.c_str(), 0755);
    const fs::path files = fs::path(path_) / "lib/tweakbench";
    fs::create_directories(files / "tests");
    fs::create_directories(fs::path(path_) / "bin");
    fs::copy_file(LAUNCHER, fs::path(path_) / "bin/tweakbench");
    for (const char* name : {"guard", "starter", "theos", "Tweakbench.app", "tests/probe"})
      fs::copy(fs::path(OWN_FILES) / name, files / name, fs::copy_options::recursive);
    fs::copy_file(STAGE, fs::path(path_) / "bin/stage");
  }
  ~Place() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

void run(Tries& tries, const std::string& caller) {
  const Place place;
  std::string command =
      "env CALLERS_TOKEN=the-callers-secret " + place.path() + "/bin/stage " + place.path() + " 2>&1";
  if (caller == "user" && geteuid() == 0) {
    const std::string number = std::to_string(kUser);
    ASSERT_EQ(chown(place.path().c_str(), kUser, kUser), 0);
    command = "exec setpriv --reuid=" + number + " --regid=" + number + " --clear-groups " + command;
  }
  FILE* output = popen(command.c_str(), "r");
  std::array<char, 2048> buffer;
  while (fgets(buffer.data(), buffer.size(), output) != nullptr) {
    std::string line = buffer.data();
    line.resize(line.find_last_not_of('\n') + 1);
    const auto fields = fieldsOf(line);
    if (fields.size() != 6) {
      ADD_FAILURE() << caller << ": " << line;
      continue;
    }
    auto& those = tries[fields[1]];
    auto known = std::find_if(those.begin(), those.end(), [&](const Try& other) {
      return other.way == fields[2] && other.caller == caller;
    });
    if (known == those.end()) known = those.insert(those.end(), {fields[2], caller, fields[3], {}});
    const bool isThrough = fields[4] == "through";
    if (fields[0] == "control") {
      known->succeedsOutside = isThrough;
    } else {
      known->succeedsInside = known->succeedsInside || isThrough;
      known->error = fields[5] == "Success" ? "" : fields[5];
    }
  }
  EXPECT_EQ(pclose(output), 0) << caller;
}

// Everything is tried once, for all tests.
const Tries& allTries() {
  static const Tries tries = [] {
    Tries made;
    run(made, "user");
    if (geteuid() == 0) run(made, "root");
    return made;
  }();
  return tries;
}

std::vector<std::string> promises() {
  return {"The user's home is out of reach",
          "Other people's files are out of reach",
          "The host's system cannot be changed",
          "No rights can be gained",
          "The host's processes can be neither seen nor touched",
          "A build cannot stop or slow down the application",
          "No memory or queue is shared with the host",
          "Nothing can be typed into the caller's terminal",
          "The caller's environment stays outside",
          "The session's services are out of reach",
          "The display is out of reach",
          "There is no network",
          "No namespace or mount can be made",
          "The caller's keys stay outside",
          "The kernel's corners are closed",
          "The machine cannot be exhausted"};
}

class Promise : public testing::TestWithParam<std::string> {
 protected:
  static void TearDownTestSuite() {
    Count all;
    for (const std::string& promise : promises()) {
      const Count user = count(promise, "user");
      const Count root = count(promise, "root");
      std::printf("%-56s user %2d of %2d   root %2d of %2d\n", promise.c_str(), user.stopped, user.tried,
                  root.stopped, root.tried);
      all.tried += user.tried + root.tried;
      all.stopped += user.stopped + root.stopped;
    }
    std::printf("%d of %d escape attempts stopped\n", all.stopped, all.tried);
  }

 private:
  struct Count {
    int tried = 0;
    int stopped = 0;
  };

  // Of the attempts that succeed outside.
  static Count count(const std::string& promise, const std::string& caller) {
    Count result;
    const auto found = allTries().find(promise);
    if (found == allTries().end()) return result;
    for (const Try& each : found->second) {
      if (each.caller != caller || !each.succeedsOutside) continue;
      ++result.tried;
      if (!each.succeedsInside) ++result.stopped;
    }
    return result;
  }
};

TEST_P(Promise, IsKept) {
  const auto found = allTries().find(GetParam());
  ASSERT_NE(found, allTries().end()) << "Nothing was tried.";
  int counted = 0;
  for (const Try& each : found->second) {
    const bool isExpected = each.expected == "everyone" || (each.expected == "root" && each.caller == "root");
    EXPECT_TRUE(each.succeedsOutside || !isExpected)
        << each.caller << ": \"" << each.way << "\" does not even succeed outside the device";
    EXPECT_FALSE(each.succeedsInside) << each.caller << ": " << each.way;
    if (each.succeedsOutside) ++counted;
    std::printf("  %-4s  %-55s %-8s %s\n", each.caller.c_str(), each.way.c_str(),
                each.succeedsInside ? "THROUGH" : "stopped",
                each.succeedsOutside ? each.error.c_str() : "(not counted: cannot be done outside either)");
  }
  if (counted == 0 && geteuid() != 0) GTEST_SKIP() << "Only root could try this.";
  EXPECT_GT(counted, 0);
}

std::string asName(const testing::TestParamInfo<std::string>& promise) {
  std::string name;
  bool startsWord = true;
  for (const char character : promise.param) {
    if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
      name.push_back(startsWord ? static_cast<char>(std::toupper(character)) : character);
    }
    startsWord = character == ' ';
  }
  return name;
}
INSTANTIATE_TEST_SUITE_P(Device, Promise, testing::ValuesIn(promises()), asName);

// A promise that is tried and not in the list would go unread.
TEST(Promises, AreAllListed) {
  for (const auto& [promise, tries] : allTries()) {
    const auto listed = promises();
    EXPECT_NE(std::find(listed.begin(), listed.end(), promise), listed.end()) << promise;
  }
}

}  // namespace
