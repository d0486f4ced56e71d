#include "build/BuildProblem.h"
#include "build/LogCleanUp.h"
#include "core/Text.h"

#include <gtest/gtest.h>

namespace {

#define E "\033"
#define MAKING(what) E "[1;31m> " E "[1;3;39mMaking " what "…" E "[m\n"
#define STEP(what) E "[0;32m==> " E "[1;39m" what "…" E "[m\n"
#define CLANG(place, colour, kind, message) \
  E "[1m" place ": " E "[0m" E "[" colour kind ": " E "[0m" E "[1m" message E "[0m\n"
#define ERROR(place, message) CLANG(place, "0;1;31m", "error", message)
#define CARET E "[0;1;32m         ^\n" E "[0m"
#define FAILED                                                                                             \
  "make[3]: *** [/opt/theos/makefiles/instance/rules.mk:404: /p/.theos/obj/debug/arm64/T.dylib] Error 1\n" \
  "rm /p/.theos/obj/debug/arm64/Tweak.x.m\nmake: *** [/opt/theos/makefiles/master/rules.mk:146: "          \
  "T.all.tweak.variables] Error 2\n"

const BuiltProject project{
    "/p",
    {"Makefile", "T.plist", "Tweak.x", "control", "inner/Makefile", "inner/deep/x.c", "prefs/Makefile",
     "prefs/P.plist", "prefs/Tweak.x", "prefs/more/Makefile", "prefs/more/M.m", "scripts/x.pl",
     "scripts/x.sh", "sub/A.xm", "sub/B.m", "sub/Own.h"}};

std::string problemsOf(const std::string& log) {
  std::string all;
  for (const Problem& problem : problemsIn(log, project))
    if (!problem.repeated) all += std::to_string(problem.logLine) + " " + textOf(problem) + "\n";
  return all;
}

// The logs are those of a real Theos, shortened.
TEST(BuildProblem, IsFoundInEveryKindOfLine) {
  const struct {
    const char* what;
    std::string log, problems;
  } rows[] = {
      {"a build that works",
       MAKING("all for tweak T")
           STEP("Compiling Tweak.x (arm64)") "dm.pl: building package `com.t:iphoneos-arm' in "
                                             "`./packages/t.deb'\n",
       ""},
      {"clang",
       STEP("Compiling Tweak.x (arm64)")
           ERROR("Tweak.x:4:20", "expected ';' at end of declaration") "\tint s = 3\n" CARET ERROR(
               "sub/A.xm:5:15", "use of undeclared identifier 'y'") "2 errors generated.\n" FAILED,
       "1 Tweak.x:4:20: error: expected ';' at end of declaration\n4 sub/A.xm:5:15: error: use of undeclared "
       "identifier 'y'\n"},
      {"its other kinds, and a header",
       "In file included from sub/B.m:1:\n" CLANG("sub/Own.h:1:9", "0;1;31m", "fatal error",
                                                  "'N.h' file not found")
           CLANG("/p/sub/B.m:2:3", "0;1;35m", "warning", "unused variable 'a' [-Wunused-variable]")
               CLANG("./sub/B.m:1:1", "0;1;30m", "note", "here"),
       "0 sub/B.m:1: note: included from here\n1 sub/Own.h:1:9: error: 'N.h' file not found\n"
       "2 sub/B.m:2:3: warning: unused variable 'a' [-Wunused-variable]\n3 sub/B.m:1:1: note: here\n"},
      {"twice, for two architectures", ERROR("Tweak.x:1:2", "a") ERROR("Tweak.x:1:2", "a"),
       "0 Tweak.x:1:2: error: a\n"},
      {"gcc, lines of Windows",
       "sub/B.m:1:9: error: expected expression before ‘;’ token\r\n    1 | int x = ;\r\n      |         "
       "^\r\n",
       "0 sub/B.m:1:9: error: expected expression before ‘;’ token\n"},
      {"Logos", "Tweak.x:8: error: %init for an undefined %group B\n",
       "0 Tweak.x:8: error: %init for an undefined %group B\n"},
      {"Logos, strict", "logos: warnings being treated as errors\nTweak.x:6: warning: missing %end\n" FAILED,
       "1 Tweak.x:6: error: missing %end\n"},
      {"make", "Makefile:4: *** missing separator.  Stop.\n", "0 Makefile:4: error: missing separator.\n"},
      {"an include",
       "Makefile:1: /t.mk: No such file or directory\nmake: *** No rule to make target '/t.mk'.  Stop.\n",
       "0 Makefile:1: error: /t.mk: No such file or directory\n"},
      {"a rule that fails without a word", "false\nmake: *** [Makefile:8: after-stage] Error 1\n",
       "1 Makefile:8: error: [after-stage] Error 1\n"},
      {"one whose failure does not matter", "make: [Makefile:8: after-stage] Error 1 (ignored)\n",
       "0 Makefile:8: warning: [after-stage] Error 1 (ignored)\n"},
      {"old make", "make[1]: *** [all] Error 1\nmake: *** [sub] Error 2\n", "0 error: [all] Error 1\n"},
      {"make's warnings", "Makefile:9: warning: overriding recipe for target 'x'\nMakefile:3: careful\n",
       "0 Makefile:9: warning: overriding recipe for target 'x'\n1 Makefile:3: warning: careful\n"},
      {"lld",
       "ld64.lld: error: undefined symbol: _f\n>>> referenced by "
       "/p/.theos/obj/debug/arm64/Tweak.x.dbc28723.o\nclang: " E "[0;1;31merror: " E "[0m" E
       "[1mlinker command failed with exit code 1" E "[0m\n" FAILED,
       "0 Tweak.x: error: undefined symbol: _f\n"},
      {"ld",
       "Undefined symbols for architecture arm64:\n  \"_f\", referenced from:\n      _g in "
       "B.m.dbc28723.o\nld: symbol(s) not found for architecture arm64\n",
       "1 sub/B.m: error: undefined symbol: _f\n"},
      {"ld without a place",
       "ld: library not found for -ly\n"
       "ld: warning: old\nld64.lld: error: library not found for -lx\n",
       "0 error: library not found for -ly\n1 warning: old\n2 error: library not found for -lx\n"},
      {"Theos",
       E "[0;31m==> " E "[1;31mError:" E "[m File gone.m does not exist.\n" E "[0;33m==> " E
         "[1;33mWarning:" E "[m No files to link.\n" E "[0;36m==> " E "[1;36mNotice:" E
         "[m Build may be slow\n",
       "0 error: File gone.m does not exist.\n1 warning: No files to link.\n"},
      {"dm.pl",
       "ERROR: control file '/p/.theos/_/DEBIAN/control' is missing a Package field at /opt/theos/bin/dm.pl "
       "line 84.\n" FAILED,
       "0 control: error: control file '/p/.theos/_/DEBIAN/control' is missing a Package field\n"},
      {"dpkg-deb",
       "dpkg-deb: error: parsing file '.theos/_/DEBIAN/control' near line 2 package 'com.t':\n field name "
       "'Name' must be followed by colon\n" FAILED,
       "0 control:2: error: parsing file '.theos/_/DEBIAN/control' near line 2 package 'com.t': field name "
       "'Name' must be followed by colon\n"},
      {"Perl",
       "went wrong at scripts/x.pl line 3.\nUse of uninitialized value $x in print at scripts/x.pl line 4, "
       "<F> line 9.\nsyntax error at scripts/x.pl line 2, near \"= ;\"\nlook at line 5\n",
       "0 scripts/x.pl:3: error: went wrong\n1 scripts/x.pl:4: warning: Use of uninitialized value $x in "
       "print\n2 scripts/x.pl:2: error: syntax error at scripts/x.pl line 2, near \"= ;\"\n"},
      {"shells",
       "scripts/x.sh: line 2: n: command not found\nscripts/x.sh: 4: Syntax error\n/bin/sh: line 1: n: "
       "command not found\n",
       "0 scripts/x.sh:2: error: n: command not found\n1 scripts/x.sh:4: error: Syntax error\n2 error: n: "
       "command not found\n"},
      {"subprojects of Theos",
       MAKING("all for tweak T") MAKING("all in prefs") MAKING("all for tweak P") ERROR("Tweak.x:2:22", "a")
           MAKING("all in more") ERROR("M.m:1:2", "b") MAKING("all for tweak T") ERROR("Tweak.x:3:1", "c"),
       "3 prefs/Tweak.x:2:22: error: a\n5 prefs/more/M.m:1:2: error: b\n7 Tweak.x:3:1: error: c\n"},
      {"folders that make tells, in any language",
       "make[1]: Entering directory '/p/prefs'\nTweak.x:1:1: error: a\nmake[1]: Leaving directory "
       "'/p/prefs'\nTweak.x:1:1: error: a\n"
       "make: Verzeichnis ‘/p/inner’ wird betreten\ndeep/x.c:1:1: error: b\n",
       "1 prefs/Tweak.x:1:1: error: a\n3 Tweak.x:1:1: error: a\n5 inner/deep/x.c:1:1: error: b\n"},
      {"folders in commands, or none",
       "make -C inner\nMakefile:1: *** missing separator.  Stop.\ncd prefs && make\nTweak.x:1:1: error: "
       "a\ndeep/x.c:1:1: error: b\n",
       "1 inner/Makefile:1: error: missing separator.\n3 prefs/Tweak.x:1:1: error: a\n4 inner/deep/x.c:1:1: "
       "error: b\n"},
      {"generated files",
       "/p/.theos/obj/debug/arm64/sub/A.xm.mm:99:1: error: a\n.theos/obj/arm64/Tweak.x.m:9: error: "
       "b\n/opt/theos/include/h.h:3:1: error: c\n",
       "0 sub/A.xm: error: a\n1 Tweak.x: error: b\n2 /opt/theos/include/h.h:3:1: error: c\n"},
      {"no problems",
       "12:30:01: nothing\nhttp://a:80/: x\nerror\nnote that: x\n1 error generated.\ncc -I. -DX=\"a: b\" "
       "x.c:3\n==> Notice: error: \n",
       ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(problemsOf(row.log), row.problems) << row.what;
    EXPECT_EQ(problemsOf(cleanedLog(row.log, BuildVariant::Package)), row.problems)
        << row.what << ", cleaned";
    EXPECT_EQ(problemsOf(cleanedLog(row.log, BuildVariant::Install)), row.problems)
        << row.what << ", cleaned less";
    EXPECT_EQ(problemsOf(withoutSequences(row.log)), row.problems) << row.what << ", without colours";
  }
}

TEST(BuildProblem, KnowsTheLinesThatPointIntoTheSource) {
  const auto found = problemsIn(ERROR("Tweak.x:1:2", "a") "int a b;\n" CARET E "[0;32m         ;\n" E
                                                          "[0m" ERROR("Tweak.x:2:1", "b") "x\n",
                                project);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].caretLine, 2U);
  EXPECT_EQ(found[0].caretLines, 2U);
  EXPECT_EQ(found[1].caretLines, 0U);
}

TEST(BuildProblem, IsBoundedInLogsWithoutEnd) {
  std::string log;
  for (int line = 1; line < 30'000; ++line) log += "Tweak.x:" + std::to_string(line) + ":1: warning: a\n";
  log += "Tweak.x:1:1: error: the one that matters\n";
  const auto found = problemsIn(log, project);
  EXPECT_LT(found.size(), 10'000U);
  EXPECT_EQ(textOf(found.back()), "Tweak.x:1:1: error: the one that matters");
}

}  // namespace
