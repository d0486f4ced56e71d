#include "core/FileManager.h"
#include "core/PropertyList.h"
#include "support/BinaryPropertyList.h"
#include "support/Cases.h"
#include "support/SizeLimit.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

namespace filesystem = std::filesystem;

TEST(Reading, TakesRegularFilesOnlyAndNeverWaits) {
  const TemporaryFolder folder;
  putFile(folder / "text", "whole\ntext");
  putFile(folder / "latin", "caf\xE9");
  mkfifo((folder / "fifo").c_str(), 0600);
  EXPECT_EQ(stringWithContentsOfFile(folder / "text"), "whole\ntext");
  EXPECT_EQ(contentsOfFile(folder / "latin"), "caf\xE9");
  EXPECT_EQ(stringWithContentsOfFile(folder / "latin"), std::nullopt);
  for (const char* name : {"fifo", ".", "missing"})
    EXPECT_EQ(contentsOfFile(folder / name), std::nullopt) << name;
  EXPECT_EQ(contentsOfFile(folder / "text", 9), std::nullopt);
  EXPECT_EQ(contentsOfFile(folder / "text", 10), "whole\ntext");
}

TEST(Reading, ListsAFolderAsTheFileSystemGivesIt) {
  const TemporaryFolder folder;
  filesystem::create_directory(folder / "sub");
  for (const char* name : {".hidden", "b", "a", "\xFFraw"}) putFile(folder / name, "");
  std::vector<std::string> listed;
  for (const auto& entry : filesystem::directory_iterator(folder.path()))
    listed.push_back(entry.path().filename());
  EXPECT_EQ(contentsOfDirectoryAtPath(folder.path()), listed);
  EXPECT_FALSE(contentsOfDirectoryAtPath(folder / "a"));
}

TEST(Writing, ReplacesTheFileAndKeepsItsModeAndItsLink) {
  const TemporaryFolder folder;
  putFile(folder / "script", "old");
  filesystem::permissions(folder / "script", filesystem::perms(0750));
  filesystem::create_symlink("script", folder / "link");
  EXPECT_TRUE(writeToFileAtomically(folder / "link", "new"));
  EXPECT_EQ(fileAt(folder / "script"), "new");
  EXPECT_TRUE(filesystem::is_symlink(folder / "link"));
  EXPECT_EQ(filesystem::status(folder / "script").permissions(), filesystem::perms(0750));
  const std::string longName(255, 'n');
  EXPECT_TRUE(writeToFileAtomically(folder / longName, "fits"));
  EXPECT_EQ(fileAt(folder / longName), "fits");
}

TEST(Writing, AFailureKeepsTheOldFileAndLeavesNothingBehind) {
  const TemporaryFolder folder;
  filesystem::create_directory(folder / "taken");
  EXPECT_FALSE(writeToFileAtomically(folder / "taken", "x"));
  EXPECT_FALSE(writeToFileAtomically(folder / "no/such/folder", "x"));
  putFile(folder / "kept", "old and whole");
  const bool written = [&folder] {
    const SizeLimit limit(100);
    return writeToFileAtomically(folder / "kept", std::string(1000, 'n'));
  }();
  EXPECT_FALSE(written);
  EXPECT_EQ(fileAt(folder / "kept"), "old and whole");
  EXPECT_EQ(contentsOfDirectoryAtPath(folder.path())->size(), 2U);
}

TEST(Removing, TakesFoldersWholeAndLinksNotWhatTheyLeadTo) {
  const TemporaryFolder folder;
  putFile(folder / "kept/file", "k");
  putFile(folder / "log/nested/file", "x");
  filesystem::create_symlink(folder / "kept", folder / "log/link");
  removeItemAtPath(folder / "log");
  removeItemAtPath(folder / "missing");
  EXPECT_FALSE(fileExistsAtPath(folder / "log"));
  EXPECT_EQ(fileAt(folder / "kept/file"), "k");
}

std::string xmlList(const std::string& inside) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + inside + "</plist>";
}

const std::string lists = TWEAKBENCH_PROPERTY_LISTS;

TEST(PropertyLists, AnUpdateChangesOneKeyAndKeepsTheRest) {
  const TemporaryFolder folder;
  const std::string path = folder / "settings.plist";
  expectCases("list", [&path](const Case& row) {
    putFile(path, row[1].starts_with("@") ? fileAt(lists + "/" + row[1].substr(1)) : row[1]);
    std::string outcome;
    for (const std::string& step : splitAt(row[2], "; ")) {
      const std::string key = step.substr(0, step.find('='));
      if (step.starts_with("has "))
        outcome += fileAt(path).find(step.substr(4)) != std::string::npos ? "yes, " : "no, ";
      else if (step.starts_with("-"))
        setPropertyListValue(path, step.substr(1), std::nullopt);
      else if (key != step)
        setPropertyListValue(path, key, step.substr(key.size() + 1));
      else
        outcome += propertyListValue(path, key).value_or("none") + ", ";
    }
    return outcome + "end";
  });
}

std::string repeated(const std::string& text, std::size_t count) {
  std::string all;
  while (count-- > 0) all += text;
  return all;
}

std::string nested(std::size_t levels) {
  return xmlList(repeated("<array>", levels) + repeated("</array>", levels));
}

TEST(PropertyLists, DamagedAndHostileFilesAreNoListAndStayAsTheyAre) {
  for (const std::string& most :
       {nested(65), xmlList(repeated("<dict/>", 4000)), xmlList(repeated("<x/>", 39'999))})
    ASSERT_TRUE(isWithinPropertyListBounds(most));
  std::map<std::string, std::string> rows{
      {"nested 200,000 deep", nested(200'000)},
      {"nested 30,000 deep", nested(30'000)},
      {"nested one level too deep", nested(66)},
      {"one dictionary too many", xmlList(repeated("<dict/>", 4001))},
      {"one value too many", xmlList(repeated("<x/>", 40'000))},
      {"nested in step with comments", "<plist>" + repeated("<array><!--</array>-->", 30'000)},
      {"larger than settings are",
       xmlList("<dict><key>k</key><string>" + std::string(2 << 20, 'x') + "</string></dict>")},
  };
  for (const auto& entry : filesystem::directory_iterator(lists))
    rows[entry.path().filename()] = fileAt(entry.path());
  for (const char* sound : {"binary", "locale", "patches", "xml"}) {
    ASSERT_TRUE(isWithinPropertyListBounds(rows.at(sound)));
    rows.erase(sound);
  }
  EXPECT_EQ(rows.size(), 28U);
  const TemporaryFolder folder;
  for (const auto& [why, bytes] : rows) {
    const std::string path = folder / "list.plist";
    putFile(path, bytes);
    EXPECT_FALSE(setPropertyListValue(path, "Choose", "x")) << why;
    EXPECT_EQ(fileAt(path), bytes) << why;
  }
  setPropertyListValue(folder / "missing.plist", "Choose", "x");
  EXPECT_FALSE(fileExistsAtPath(folder / "missing.plist"));
}

TEST(PropertyLists, ATreeHoldsEveryKindOfValueInEitherForm) {
  const std::string values =
      "<string>نص</string><integer>-5</integer><integer>9223372036854775807</integer><real>1.5</real><true/>"
      "<dict><key>a</key><array><false/></array></dict><date>2020-01-01T00:00:00Z</date>"
      "<integer>18446744073709551615</integer><integer>9223372036854775808</integer>"
      "<integer>-9223372036854775808</integer>";
  const std::string xml = xmlList("<array>" + values + "</array>");
  for (const std::string& list : {xml, binaryPropertyList(xml)}) {
    const auto tree = propertyListTree(list);
    ASSERT_TRUE(tree && tree->array() != nullptr);
    const PropertyListValue::Array& held = *tree->array();
    ASSERT_EQ(held.size(), 10U);
    EXPECT_EQ(*held[0].text(), "نص");
    EXPECT_EQ(std::get<std::int64_t>(held[1].value), -5);
    EXPECT_EQ(std::get<std::int64_t>(held[2].value), INT64_MAX);
    EXPECT_EQ(std::get<double>(held[3].value), 1.5);
    EXPECT_TRUE(std::get<bool>(held[4].value));
    ASSERT_NE(held[5].find("a"), nullptr);
    EXPECT_FALSE(std::get<bool>(held[5].find("a")->array()->at(0).value));
    EXPECT_EQ(held[5].find("b"), nullptr);
    EXPECT_EQ(held[0].find("a"), nullptr);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(held[6].value));
    // A number past the signed ones never becomes negative.
    EXPECT_EQ(std::get<std::uint64_t>(held[7].value), UINT64_MAX);
    EXPECT_EQ(std::get<std::uint64_t>(held[8].value), std::uint64_t{1} << 63);
    EXPECT_EQ(std::get<std::int64_t>(held[9].value), INT64_MIN);
  }
  const auto noText = propertyListTree(xmlList("<string>\xE9</string>"));
  EXPECT_TRUE(noText && std::holds_alternative<std::monostate>(noText->value));
  EXPECT_TRUE(propertyListTree(fileAt(lists + "/shared-text")));
  for (const char* none : {"multiplying", "multiplying-text", "no-list"})
    EXPECT_FALSE(propertyListTree(fileAt(lists + "/" + none))) << none;
}

std::vector<std::string> diskCalls;

}  // namespace

extern "C" int fsync(int file) {
  struct stat status {};
  fstat(file, &status);
  diskCalls.emplace_back(S_ISDIR(status.st_mode) ? "sync folder" : "sync file");
  return static_cast<int>(syscall(SYS_fsync, file));
}

extern "C" int rename(const char* from, const char* to) {
  diskCalls.emplace_back("rename");
  return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

namespace {

TEST(Writing, ADurableFileIsOnTheDiskBeforeItsNameIsAndItsNameWhenTheCallReturns) {
  const TemporaryFolder folder;
  diskCalls.clear();
  ASSERT_TRUE(writeToFileAtomically(folder / "settings", "new", Durability::Durable));
  EXPECT_EQ(diskCalls, (std::vector<std::string>{"sync file", "rename", "sync folder"}));
  diskCalls.clear();
  ASSERT_TRUE(writeToFileAtomically(folder / "log", "new", Durability::Deferred));
  EXPECT_EQ(diskCalls, std::vector<std::string>{"rename"});
}

}  // namespace
