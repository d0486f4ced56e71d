#include "build/BuildRunner.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "workspace/CurrentProject.h"
#include "workspace/Projects.h"

#include <gtest/gtest.h>

namespace {

namespace filesystem = std::filesystem;

const std::string updateMarker = "/var/Tweakyard/tmp/SuccessfullyUpdated.log";

class Build : public testing::Test {
 protected:
  Build() {
    device::reset();
    createProjectsFolder();
    recordTheosPath();
  }

  // A project whose make does what `recipe` says.
  static void makeProject(const std::string& recipe) {
    putFile(device::projects + "P/Makefile", "package:\n\t" + recipe + "\n");
    setCurrentProject("P");
    putFile(updateMarker, "");
  }

  static void job(BuildVariant variant) { runBuildJob(variant, updateTheos); }

  const StandardStreams restored_;
};

TEST_F(Build, TheFirstTapUpdatesTheosAndBuildsNothing) {
  createProject("P");
  putFile(device::application + "MakeLog.log", "of an earlier build\n");
  job(BuildVariant::Package);
  EXPECT_TRUE(fileExistsAtPath(updateMarker));
  EXPECT_NE(fileAt(updateMarker), "") << "the updater's words are the marker";
  EXPECT_FALSE(fileExistsAtPath(device::packages));
  EXPECT_EQ(collectBuildResult(BuildVariant::Package).log, "of an earlier build\n");

  job(BuildVariant::Package);
  const BuildResult result = collectBuildResult(BuildVariant::Package);
  EXPECT_TRUE(result.hasPackages);
  EXPECT_EQ(result.project, "P");
  ASSERT_TRUE(result.log);
  EXPECT_NE(result.log->find("Making all for tweak P"), std::string::npos) << *result.log;
  const auto built = contentsOfDirectoryAtPath(device::packages + "/P");
  ASSERT_TRUE(built);
  ASSERT_EQ(built->size(), 1U);
  EXPECT_EQ(pathExtension(built->front()), "deb");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "P/packages"));
}

TEST_F(Build, TheMarkerComesIntoBeingWithoutTheosToo) {
  setTheosPath("/no/theos");
  job(BuildVariant::Package);
  EXPECT_NE(fileAt(updateMarker).find("/no/theos/bin/update-theos"), std::string::npos);
}

TEST_F(Build, TheInstallBuildUpdatesOnEveryTapUntilItsOwnMarkerIsThere) {
  makeProject("echo built");
  removeItemAtPath(updateMarker);
  for (int tap = 0; tap < 2; ++tap) {
    job(BuildVariant::Install);
    EXPECT_TRUE(fileExistsAtPath(updateMarker));
    EXPECT_FALSE(fileExistsAtPath(device::application + "MakeLog.log"));
    removeItemAtPath(updateMarker);
  }
  putFile(device::projects + "P/Makefile", "package install:\n\t@echo made $@\n");
  putFile(device::application + "SuccessfullyUpdated.log", "");
  job(BuildVariant::Install);
  EXPECT_EQ(collectBuildResult(BuildVariant::Install).log, "made package\nmade install\n\n");
}

TEST_F(Build, TheProjectsPackagesReplaceTheOldOnesWhole) {
  makeProject("mkdir packages && echo new > packages/new.deb");
  putFile(device::packages + "/P/old.deb", "old");
  putFile(device::packages + "/Q/other.deb", "other");
  job(BuildVariant::Package);
  EXPECT_EQ(*contentsOfDirectoryAtPath(device::packages + "/P"), std::vector<std::string>{"new.deb"});
  EXPECT_EQ(fileAt(device::packages + "/Q/other.deb"), "other");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "P/packages"));
}

TEST_F(Build, AFailedBuildShowsInTheLogAndInTheMissingPackages) {
  makeProject("echo broken >&2; exit 1");
  putFile(device::packages + "/P/old.deb", "old");
  job(BuildVariant::Package);
  EXPECT_NE(fileAt(device::application + "MakeLog.log").find("mv: cannot stat 'packages'"),
            std::string::npos);
  const BuildResult result = collectBuildResult(BuildVariant::Package);
  EXPECT_FALSE(result.hasPackages);
  ASSERT_TRUE(result.log);
  EXPECT_NE(result.log->find("broken\n"), std::string::npos);
  EXPECT_EQ(result.log->find("mv: cannot stat"), std::string::npos) << *result.log;
}

TEST_F(Build, WithoutAProjectTheShellFailsAndNothingIsLost) {
  putFile(updateMarker, "");
  putFile(device::packages + "/P/kept.deb", "kept");
  putFile(device::projects + "P/kept", "kept");
  job(BuildVariant::Package);
  const BuildResult result = collectBuildResult(BuildVariant::Package);
  ASSERT_TRUE(result.log);
  EXPECT_NE(result.log->find("syntax error"), std::string::npos) << *result.log;
  EXPECT_FALSE(result.project);
  EXPECT_FALSE(result.hasPackages);
  EXPECT_EQ(fileAt(device::packages + "/P/kept.deb"), "kept");
  EXPECT_EQ(fileAt(device::projects + "P/kept"), "kept");
}

TEST_F(Build, ALogThatIsNotUTF8StaysAndIsReadWithReplacementCharacters) {
  makeProject("@printf '\\351caf\\303\\251 [0m\\377\\342\\202'; mkdir packages");
  job(BuildVariant::Package);
  EXPECT_EQ(collectBuildResult(BuildVariant::Package).log, "\uFFFDcaf\u00E9 [0m\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(fileAt(device::application + "MakeLog.log"),
            "\xE9"
            "caf\u00E9 [0m\xFF\xE2\x82");
}

}  // namespace
