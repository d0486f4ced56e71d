#include "core/Languages.h"
#include "core/run_cmd.h"
#include "support/Device.h"
#include "support/Shell.h"
#include "support/SizeLimit.h"
#include "support/StandardStreams.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace {

namespace filesystem = std::filesystem;

class Workspace : public testing::Test {
 protected:
  Workspace() {
    device::reset();
    createProjectsFolder();
  }

  const StandardStreams restored_;
};

std::set<std::string> listed() {
  return {MUArray().begin(), MUArray().end()};
}

TEST_F(Workspace, TheLastExistingTheosWins) {
  ASSERT_TRUE(theosIsPresent());
  recordTheosPath();
  EXPECT_EQ(device::setting("Choose", "TheosPath"), "/opt/theos");
  const std::pair<const char*, const char*> rows[] = {
      {"/var/theos", "/opt/theos"},
      {"/var/mobile/theos", "/var/mobile/theos"},
      {"/var/mobile/Documents/theos", "/var/mobile/Documents/theos"},
  };
  for (const auto& [made, recorded] : rows) {
    filesystem::create_directories(made);
    recordTheosPath();
    EXPECT_EQ(theosPath(), recorded);
  }
  removeItemAtPath(device::application + "Choose.plist");
  recordTheosPath();
  EXPECT_FALSE(fileExistsAtPath(device::application + "Choose.plist"))
      << "a missing settings file is not made";
}

TEST_F(Workspace, TheConverterIsMovedOnceAndLeftAloneWhereOneIsInstalled) {
  const std::string shipped = device::application + "ftt";
  removeItemAtPath("/usr/bin/ftt");
  putFile(shipped, "first");
  installConverter();
  EXPECT_EQ(fileAt("/usr/bin/ftt"), "first");
  EXPECT_FALSE(fileExistsAtPath(shipped));
  putFile(shipped, "second");
  installConverter();
  EXPECT_EQ(fileAt("/usr/bin/ftt"), "first");
  EXPECT_EQ(fileAt(shipped), "second");
}

TEST_F(Workspace, TheFileListIsTheFolderAsItIs) {
  const std::string folder = device::projects + "P/";
  putFile(folder + ".hidden", "");
  putFile(folder + "packages/x.deb", "");
  putFile(folder + "b", "");
  EXPECT_TRUE(chooseProject("P"));
  ArraySetUp();
  EXPECT_EQ(listed(), (std::set<std::string>{".hidden", "packages", "b"}));
  EXPECT_EQ(MUArray(), *contentsOfDirectoryAtPath(folder));
  EXPECT_EQ(currentProjectLabel(), "P");
  removeItemAtPath(folder);
  EXPECT_EQ(MUArray().size(), 3U) << "the list is read only when it is asked for";
  ArraySetUp();
  EXPECT_TRUE(MUArray().empty());
}

TEST_F(Workspace, WithoutAChoiceOnlyAFolderNamedLikeTheAbsentValueIsListed) {
  putFile(device::projects + "P/a", "");
  ArraySetUp();
  EXPECT_TRUE(MUArray().empty());
  EXPECT_EQ(currentProjectLabel(), "");
  putFile(device::projects + "(null)/odd", "");
  ArraySetUp();
  EXPECT_EQ(listed(), std::set<std::string>{"odd"});
}

TEST_F(Workspace, ThePickIsCheckedByTheShellAndRecorded) {
  const std::string folder = device::projects + "P/";
  putFile(folder + "Tweak.x", "");
  putFile(folder + "two words", "");
  filesystem::create_directories(folder + "packages");
  chooseProject("P");
  EXPECT_FALSE(fileCheckRejects("Tweak.x"));
  EXPECT_EQ(fileAt(device::application + "Checkers.log"), "Hola\n");
  EXPECT_TRUE(fileCheckRejects("packages"));
  EXPECT_TRUE(fileCheckRejects("gone"));
  // Unquoted: test gets two words and complains, which is no.
  EXPECT_TRUE(fileCheckRejects("two words"));
  EXPECT_NE(fileAt(device::application + "Checkers.log").find("Noooop"), std::string::npos);
  SS("Tweak.x");
  EXPECT_EQ(device::setting("Checker", "FullPath"), "/var/Tweakyard/Projects/P/Tweak.x");
  SS("packages");
  EXPECT_EQ(pickedFile(), "/var/Tweakyard/Projects/P/packages");
  {
    const SizeLimit full(filesystem::file_size(device::application + "Checker.plist"));
    SS(std::string(200, 'n'));
  }
  // A pick that could not be recorded leaves none, rather than the editor on the file before.
  EXPECT_EQ(pickedFile(), std::nullopt);
  removeItemAtPath(device::application + "Checker.plist");
  SS("Tweak.x");
  EXPECT_EQ(pickedFile(), std::nullopt);
}

TEST_F(Workspace, ANewProjectIsTheTemplateWithItsNameInIt) {
  recordTheosPath();
  createProject("My Twe ak");
  const std::string folder = device::projects + "MyTweak/";
  EXPECT_EQ(device::setting("Choose", "Choose"), "MyTweak");
  EXPECT_EQ(device::setting("Files", "Files"), "MyTweak");
  ArraySetUp();
  EXPECT_EQ(listed(), (std::set<std::string>{"control", "Makefile", "MyTweak.plist", "Tweak.x"}));

  const std::string control = fileAt(folder + "control");
  const std::string package = control.substr(0, control.find('\n'));
  ASSERT_EQ(package.substr(0, 29), "Package: com.lanternfish12." + package.substr(27, 2));
  const std::string token = package.substr(27);
  EXPECT_EQ(token.size(), 8U);
  EXPECT_TRUE(std::all_of(token.begin(), token.end(), [](char letter) {
    return letter >= 'a' && letter <= 'z';
  })) << token;
  for (const char* line : {"\nName: MyTweak\n", "\nVersion: ", "\nArchitecture: iphoneos-arm\n",
                           "\nMaintainer: ", "\nAuthor: ", "\nSection: ", "\nDepends: ", "\nDescription: "}) {
    EXPECT_NE(control.find(line), std::string::npos) << line;
  }

  const std::string makefile = fileAt(folder + "Makefile");
  // GNU make takes everything after "export NAME=" as the value, so the line must end there.
  EXPECT_NE(makefile.find("export THEOS=/opt/theos\n"), std::string::npos) << makefile;
  EXPECT_NE(makefile.find("\nTWEAK_NAME = MyTweak\n"), std::string::npos);
  EXPECT_EQ(makefile.find("CC"), std::string::npos);

  // Over itself, with a standard input that answers "All". The environment's THEOS still counts, and every
  // source.
  run_logged("echo Archive", device::application + "Checkers.log");
  putFile(folder + "Tweak.x", "mine");
  putFile(folder + "Second.xm", "");
  createProject("MyTweak");
  EXPECT_EQ(fileAt(folder + "Tweak.x"), "mine");
  const std::string printed = outputOf("make -C " + folder + " COLOR=0 package");
  for (const char* source : {"Copying Tweak.x", "Copying Second.xm"})
    EXPECT_NE(printed.find(source), std::string::npos) << printed;
  EXPECT_EQ(contentsOfDirectoryAtPath(folder + "packages")->size(), 1U);
}

TEST_F(Workspace, TokensAreIndependent) {
  std::set<std::string> tokens;
  std::set<char> letters;
  for (int count = 0; count < 500; ++count) {
    const std::string token = randomToken();
    EXPECT_EQ(token.size(), 8U);
    letters.insert(token.begin(), token.end());
    tokens.insert(token);
  }
  EXPECT_EQ(tokens.size(), 500U);
  EXPECT_EQ(letters.size(), 26U);
  EXPECT_EQ(*letters.begin(), 'a');
  EXPECT_EQ(*letters.rbegin(), 'z');
}

TEST_F(Workspace, EveryExportIsExpandedAndNothingElseIsAssumedOfTheTemplate) {
  const std::string archive = device::application + "TheosOrig.zip";
  const std::string shipped = fileAt(archive);
  const TemporaryFolder folder;
  putFile(folder / "Makefile", "export A\nNAME = xCCyCC\nexport B\n");
  run_cmd(("cd " + folder.path() + " && rm " + archive + " && cmake -E tar cf " + archive +
           " --format=zip Makefile")
              .c_str());
  setTheosPath("/var/theos");
  createProject("T");
  EXPECT_EQ(fileAt(device::projects + "T/Makefile"),
            "export THEOS=/var/theos A\nNAME = xTyT\nexport THEOS=/var/theos B\n");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "T/control"));

  device::reset();
  createProjectsFolder();
  createProject("U");
  EXPECT_EQ(fileAt(device::projects + "U/Makefile").substr(0, 22), "export THEOS=(null) A\n");

  putFile(archive, "no zip at all");
  createProject("V");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "V"));
  EXPECT_EQ(currentProject(), "V") << "the project is current even when a step fails";
  putFile(archive, shipped);
}

TEST(Languages, FollowTheSettingAndInAutomaticModeTheDevice) {
  const struct {
    const char* why;
    const char* language;  // null: absent
    const char* locale;    // null: absent
    bool arabic;
  } rows[] = {
      {"nothing set", nullptr, "ar_SA", false},
      {"Arabic", "AR", "en_US", true},
      {"only upper case", "ar", "ar_SA", false},
      {"anything else", "English", "ar_SA", false},
      {"automatic, Arabic device", "Auto", "ar_SA", true},
      {"automatic, English device", "Auto", "en_US", false},
      {"automatic, Catalan device", "Auto", "ca_ES", false},
      {"automatic, no locale", "Auto", nullptr, false},
      {"automatic, ar anywhere", "Auto", "en_DE@calendar=gregorian;x-ar", true},
      {"automatic, upper case only", "Auto", "es_AR", false},
      {"automatic is case-sensitive", "auto", "ar_SA", false},
  };
  for (const auto& row : rows) {
    device::reset();
    if (row.language != nullptr) device::speak(row.language);
    if (row.locale != nullptr) setPropertyListValue(device::preferences, "XBRecentLocale", row.locale);
    EXPECT_STREQ(Languages("arabic", "english"), row.arabic ? "arabic" : "english") << row.why;
  }
  for (const std::string& missing : {device::preferences, device::application + "LangFile.plist"}) {
    device::reset();
    device::speak("Auto");
    setPropertyListValue(device::preferences, "XBRecentLocale", "ar_SA");
    removeItemAtPath(missing);
    EXPECT_STREQ(Languages("arabic", "english"), "english") << missing;
  }
}

}  // namespace
