// The 32-bit tamrix.exe starts on Windows XP SP3: every function its import table names is one
// that XP SP3's DLLs export, checked against the list kept beside this test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "exe/PeImports.h"

namespace tamrix::pe {
namespace {

std::string Source(const std::string& relative) { return std::string(TAMRIX_SOURCE_DIR) + "/" + relative; }

// The executable under test: TAMRIX_I686_EXE, or the one the win32 tree builds.
std::string ThirtyTwoBitExe() {
  const char* given = std::getenv("TAMRIX_I686_EXE");
  return given && *given ? given : Source("build/win32/tamrix.exe");
}

bool Imports(const std::vector<Import>& imports, const std::string& dll, const std::string& function) {
  return std::any_of(imports.begin(), imports.end(), [&](const Import& i) {
    return ExportList{{{dll, function}}}.Has(i.dll, i.function);
  });
}

class ThirtyTwoBitProgram : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(std::ifstream(ThirtyTwoBitExe()).good()) << ThirtyTwoBitExe() << " is missing: build the win32 tree";
    imports = ReadImports(ThirtyTwoBitExe());
  }
  std::vector<Import> imports;
};

TEST_F(ThirtyTwoBitProgram, ImportsOnlyWhatWindowsXpSp3Exports) {
  const ExportList xp = ReadExportList(Source("tests/exe/xp-sp3-exports.txt"));
  std::vector<std::string> newer = NotIn(imports, xp);
  std::string named;
  for (const std::string& n : newer) named += "\n  " + n;
  EXPECT_TRUE(newer.empty()) << "imports Windows XP SP3 does not export:" << named;
}

TEST_F(ThirtyTwoBitProgram, DoesNotImportTheVistaTickCount) {
  EXPECT_FALSE(Imports(imports, "kernel32.dll", "GetTickCount64"));
}

// The companion beside it, double-clicked on the same XP: its import table, read the same way.
TEST(ThirtyTwoBitCompanion, ImportsOnlyWhatWindowsXpSp3Exports) {
  const std::string exe = Source("build/win32/tamrix-etat.exe");
  if (!std::ifstream(exe).good()) GTEST_SKIP() << exe << " is not built";
  const std::vector<Import> imports = ReadImports(exe);
  EXPECT_TRUE(Imports(imports, "kernel32.dll", "GetConsoleProcessList")) << "the reader finds what it plainly calls";
  std::vector<std::string> newer = NotIn(imports, ReadExportList(Source("tests/exe/xp-sp3-exports.txt")));
  std::string named;
  for (const std::string& n : newer) named += "\n  " + n;
  EXPECT_TRUE(newer.empty()) << "imports Windows XP SP3 does not export:" << named;
}

TEST_F(ThirtyTwoBitProgram, TableReadsTheCallsTheProgramIsKnownToMake) {
  // The reader is right only if it finds what the program plainly calls.
  EXPECT_TRUE(Imports(imports, "kernel32.dll", "GlobalMemoryStatus"));
  EXPECT_TRUE(Imports(imports, "user32.dll", "CreateWindowExA"));
  EXPECT_TRUE(Imports(imports, "advapi32.dll", "RegSetValueExA"));
  EXPECT_GT(imports.size(), 100u);
}

// The shutdown timer calls ExitWindowsEx as it is: no privilege is asked for, so where the system
// wants one the call fails and nothing is said. Both builds are read, each where it was built.
TEST(BuiltPrograms, NeitherAsksForTheShutdownPrivilege) {
  int read = 0;
  for (const std::string& exe : {ThirtyTwoBitExe(), Source("build/win64/tamrix.exe")}) {
    if (!std::ifstream(exe).good()) continue;
    SCOPED_TRACE(exe);
    ++read;
    const std::vector<Import> imports = ReadImports(exe);
    ASSERT_TRUE(Imports(imports, "user32.dll", "ExitWindowsEx"));
    for (const char* function : {"AdjustTokenPrivileges", "OpenProcessToken", "LookupPrivilegeValueA"})
      EXPECT_FALSE(Imports(imports, "advapi32.dll", function)) << function;
  }
  if (read == 0) GTEST_SKIP() << "neither build/win32/tamrix.exe nor build/win64/tamrix.exe is built";
}

// What the release ships: each program of each build, 2 MB (2,000,000 bytes) or less, so that
// it fits where the program's users keep it and downloads as fast as its peers'.
TEST(BuiltPrograms, EachShippedProgramIsTwoMegabytesOrLess) {
  int read = 0;
  for (const char* tree : {"win32", "win64"})
    for (const char* name : {"tamrix.exe", "tamrix-etat.exe"}) {
      std::ifstream exe(Source(std::string("build/") + tree + "/" + name), std::ios::binary | std::ios::ate);
      if (!exe.good()) continue;
      ++read;
      EXPECT_LE(static_cast<long long>(exe.tellg()), 2000000LL) << tree << "/" << name;
    }
  if (read == 0) GTEST_SKIP() << "no program of build/win32 or build/win64 is built";
}

TEST(XpExportList, AnImportTheListLacksIsNamedWithItsDll) {
  const ExportList list{{{"kernel32.dll", "GetTickCount"}}};
  const std::vector<Import> imports{{"KERNEL32.dll", "GetTickCount", 0}, {"KERNEL32.dll", "GetTickCount64", 0},
                                    {"USER32.dll", "GetTickCount", 0}};
  EXPECT_EQ(NotIn(imports, list), (std::vector<std::string>{"KERNEL32.dll!GetTickCount64", "USER32.dll!GetTickCount"}));
}

TEST(XpExportList, AnImportByOrdinalAloneCannotBeCheckedAndIsNamed) {
  const ExportList list{{{"comctl32.dll", "InitCommonControlsEx"}}};
  EXPECT_EQ(NotIn({{"COMCTL32.DLL", "", 17}}, list), (std::vector<std::string>{"COMCTL32.DLL#17"}));
}

TEST(XpExportList, FileReadsOneFunctionALineWithCommentsAndDllNamesWithoutCase) {
  const std::string path = testing::TempDir() + "xp-list-test.txt";
  std::ofstream(path) << "# a comment line\nKERNEL32.DLL GetTickCount  # from the reference\n\nuser32.dll IsWindow\n";
  const ExportList list = ReadExportList(path);
  std::remove(path.c_str());
  EXPECT_EQ(list.entries.size(), 2u);
  EXPECT_TRUE(list.Has("kernel32.dll", "GetTickCount"));
  EXPECT_TRUE(list.Has("USER32.dll", "IsWindow"));
  EXPECT_FALSE(list.Has("user32.dll", "iswindow")) << "function names keep their case";
}

}  // namespace
}  // namespace tamrix::pe
