// What each command line does with names that are none, ordinary ones, and ones that the shell expands.
#include "support/Cases.h"
#include "support/Operations.h"
#include "support/StandardStreams.h"
#include "support/Tree.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace {

const std::vector<std::string> ordinary{"P", "Q", "a", "-rf", ".hidden", "ملف", "#x~!}1],+=^%:@-_"};

// Not by chooseProject(), whose records are synced to the disk one by one.
void choose(const MaybeText& name) {
  const std::string text = replaceAll(replaceAll(name.value_or(""), "&", "&amp;"), "<", "&lt;");
  const auto put = [&](const std::string& list, const std::string& key) {
    putFile(device::application + list + ".plist",
            device::emptyList(name ? fill("<key>%@</key><string>%@</string>", {key, text}) : ""));
  };
  put("Choose", "Choose");
  put("Files", "Files");
}

using Paths = std::vector<std::string>;

// What the shell changes below /var; "%@" is the name, and under "*" each that is not hidden.
struct Use {
  std::string name;
  Paths steps;
  Paths ordinary;
  Paths split;  // under "a b"
  Paths star;
};

std::vector<Use> uses() {
  std::vector<Use> all;
  const auto paths = [](const std::string& cell) { return cell.empty() ? Paths() : splitAt(cell, ", "); };
  for (const Case& row : cases("use"))
    all.push_back({row[0], splitAt(row[1], "; "), paths(row[2]), paths(row[3]), paths(row.at(4))});
  return all;
}

class Names : public testing::Test {
 protected:
  Names() {
    EXPECT_EQ(chdir("/"), 0);
    refill();
  }
  ~Names() override {
    for (const char* folder : {"Out", "TweakbenchBackups"}) removeItemAtPath(device::documents + folder);
    device::reset();
  }

  // What changes below /var when the project, or what else is named so, is used.
  std::set<std::string> changesBy(const Use& use, const MaybeText& name) {
    choose(name);
    name || use.steps[0] != "delete %@" ? performAll(use.steps, name.value_or("")) : deleteProject(name);
    const Tree after = treeAt("/var");
    std::set<std::string> changes;
    for (const auto& [path, contents] : before_) {
      if (const auto now = after.find(path); now == after.end() || now->second != contents)
        changes.insert(path);
    }
    for (const auto& [path, contents] : after) {
      if (!before_.contains(path)) changes.insert(path);
    }
    if (!changes.empty()) refill();
    return changes;
  }

  // That something in each of `items` changed, and nothing outside them.
  void expectChanges(const Use& use, const std::string& name, const Paths& items) {
    const std::set<std::string> changes = changesBy(use, name);
    const auto liesIn = [](const std::string& path, const std::string& item) {
      return path == item || path.starts_with(item + "/");
    };
    for (const std::string& item : items) {
      EXPECT_TRUE(
          std::any_of(changes.begin(), changes.end(), [&](const auto& path) { return liesIn(path, item); }))
          << use.name << " " << name << " left " << item;
    }
    for (const std::string& path : changes) {
      EXPECT_TRUE(
          std::any_of(items.begin(), items.end(), [&](const auto& item) { return liesIn(path, item); }))
          << use.name << " " << name << " changed " << path;
    }
  }

 private:
  void refill() {
    device::reset();
    for (const char* folder : {"Out", "TweakbenchBackups"}) removeItemAtPath(device::documents + folder);
    putFile(device::documents + "Out/kept", "");
    putFile("/var/Tweakyard/tmp/SuccessfullyUpdated.log", "");
    Paths names = ordinary;
    names.emplace_back("a b");
    for (const std::string& name : names) {
      const std::string folder = device::projects + name;
      putFile(folder + "/Makefile", "package:\n\t@mkdir packages && echo new > packages/new.deb\n");
      for (const char* file : {"/Tweak.x", "/control", "/FlexPatchKey"}) putFile(folder + file, name + file);
      putFile(device::projects + "P/" + name, "entry");
      putFile(device::packages + "/" + name + "/old.deb", "");
      putFile(device::documents + "TweakbenchBackups/" + name + "/Tweak.x", "older");
    }
    before_ = treeAt("/var");
  }

  const StandardStreams restored_;
  Tree before_;
};

Paths filled(const Paths& formats, const Paths& names) {
  Paths paths;
  for (const std::string& format : formats) {
    for (const std::string& name : names) paths.push_back(fill(format, {name}));
  }
  return paths;
}

TEST_F(Names, ThatAreNoneChangeNothing) {
  std::vector<MaybeText> none{""};
  for (const Case& row : cases("none")) none.insert(none.end(), row.begin(), row.end());
  none.insert(none.end(), {std::nullopt, "P/../../Projects", std::string("P\0x", 3)});
  for (const Use& use : uses()) {
    for (const MaybeText& name : none)
      EXPECT_EQ(changesBy(use, name), std::set<std::string>()) << use.name << " " << name.value_or("(none)");
  }
}

TEST_F(Names, ChangeTheirItemsAndNoOthers) {
  for (const Use& use : uses()) {
    for (const std::string& name : ordinary) expectChanges(use, name, filled(use.ordinary, {name}));
    expectChanges(use, "a b", use.split);
    expectChanges(use, "*", filled(use.star, {"P", "Q", "a", "a b", "-rf", "ملف", "#x~!}1],+=^%:@-_"}));
  }
}

}  // namespace
