// What the profile functions do, asserted on whichever platform the binary links in: the same
// expectations run against the fake natively and against Wine's real GetPrivateProfileStringA
// and WritePrivateProfileStringA. Included by exactly one file of each test binary, which also
// gives MakeProfileBench.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/Ini.h"
#include "platform/Platform.h"

namespace tamrix::test {

// Files for the profile expectations: the fake's in-memory files, or real files on disk. Texts
// are UTF-8 here; on disk they stand in the ANSI code page, as the platform writes them.
class ProfileBench {
 public:
  virtual ~ProfileBench() = default;
  virtual Platform& platform() = 0;
  // The path of a file that belongs to this test alone, absent at first.
  virtual std::string Path(const std::string& name) = 0;
  virtual void Put(const std::string& path, const std::string& text) = 0;
  virtual std::optional<std::string> Get(const std::string& path) = 0;
};

std::unique_ptr<ProfileBench> MakeProfileBench();

namespace {

class ProfileContract : public ::testing::Test {
 protected:
  void SetUp() override {
    bench = MakeProfileBench();
    file = bench->Path("contract.ini");
  }
  Platform& p() { return bench->platform(); }
  std::string Read(const std::string& section, const std::string& key, const std::string& def = "",
                   std::uint32_t size = 255, std::uint32_t* count = nullptr) {
    std::string buffer(size, '\0');
    std::uint32_t n = p().GetPrivateProfileStringA(section, key, def, &buffer, size, file);
    if (count) *count = n;
    return buffer;
  }
  void Write(const std::string& section, const std::string& key, const std::string& value) {
    EXPECT_TRUE(p().WritePrivateProfileStringA(section, key, value, file));
  }
  std::string Text() { return bench->Get(file).value_or("<no file>"); }
  std::unique_ptr<ProfileBench> bench;
  std::string file;
};

TEST_F(ProfileContract, MissingFileGivesTheDefaultAndItsLength) {
  std::uint32_t n = 99;
  EXPECT_EQ(Read("opti", "bmp", "", 255, &n), "");
  EXPECT_EQ(n, 0u);
  EXPECT_EQ(Read("opti", "bmp", "dflt", 255, &n), "dflt");
  EXPECT_EQ(n, 4u);
  EXPECT_FALSE(bench->Get(file)) << "reading makes no file";
}

TEST_F(ProfileContract, DefaultLosesItsTrailingBlanks) {
  std::uint32_t n = 0;
  EXPECT_EQ(Read("opti", "bmp", "x  ", 255, &n), "x");
  EXPECT_EQ(n, 1u);
}

TEST_F(ProfileContract, FirstWriteMakesTheFileWithItsSection) {
  Write("opti", "bmp", "1");
  EXPECT_EQ(Text(), "[opti]\r\nbmp=1\r\n");
}

TEST_F(ProfileContract, KeysStandInTheOrderFirstWritten) {
  Write("opti", "dvd", "1");
  Write("opti", "bmp", "1");
  Write("opti", "open", "1");
  Write("opti", "dvd", "0");
  EXPECT_EQ(Text(), "[opti]\r\ndvd=0\r\nbmp=1\r\nopen=1\r\n");
}

TEST_F(ProfileContract, NewSectionGoesAtTheEndWithoutABlankLine) {
  Write("opti", "bmp", "1");
  Write("other", "x", "y");
  Write("opti", "more", "2");
  EXPECT_EQ(Text(), "[opti]\r\nbmp=1\r\nmore=2\r\n[other]\r\nx=y\r\n");
}

TEST_F(ProfileContract, ExistingKeyAndSectionKeepTheirCapitals) {
  bench->Put(file, "[Opti]\r\nBMP=1\r\n");
  Write("OPTI", "bmp", "0");
  EXPECT_EQ(Text(), "[Opti]\r\nBMP=0\r\n");
  EXPECT_EQ(Read("opti", "Bmp"), "0");
}

TEST_F(ProfileContract, WriteDropsBlankLinesAndTrimsEveryLine) {
  bench->Put(file, "; comment\r\n\r\n  [ opti ]  junk\r\n  bmp =  1  \r\n\r\nnoequal\r\n[Other]\r\nq=\"quoted\"\r\n\r\n");
  Write("opti", "dvd", "1");
  EXPECT_EQ(Text(), "; comment\r\n[opti]\r\nbmp=1\r\nnoequal\r\ndvd=1\r\n[Other]\r\nq=\"quoted\"\r\n");
}

TEST_F(ProfileContract, LineFeedsAloneComeBackAsCarriageReturnLineFeed) {
  bench->Put(file, "[386Enh]\nMaxBps=1\n[x]\nMaxBps=2");
  Write("display", "DDC", "1");
  EXPECT_EQ(Text(), "[386Enh]\r\nMaxBps=1\r\n[x]\r\nMaxBps=2\r\n[display]\r\nDDC=1\r\n");
}

TEST_F(ProfileContract, SameKeyInAnotherSectionIsLeftAlone) {
  bench->Put(file, "[386Enh]\r\nMaxBps=1\r\n[other]\r\nMaxBps=2\r\n");
  Write("386Enh", "MaxBps", "65530");
  EXPECT_EQ(Text(), "[386Enh]\r\nMaxBps=65530\r\n[other]\r\nMaxBps=2\r\n");
}

TEST_F(ProfileContract, ReadingIgnoresCaseAndBlanksAndStripsOnePairOfQuotes) {
  bench->Put(file, "[ Sec A ]\r\n\tk1\t=\tv1\t\r\na=b=c\r\nq=\"quoted\"\r\nh=\"half\r\ns=' x '\r\ne=\"\"\r\nnoequal\r\n");
  EXPECT_EQ(Read("sec a", "K1"), "v1");
  EXPECT_EQ(Read("SEC A", "a"), "b=c");
  EXPECT_EQ(Read("sec a", "q"), "quoted");
  EXPECT_EQ(Read("sec a", "h"), "\"half");
  EXPECT_EQ(Read("sec a", "s"), " x ");
  EXPECT_EQ(Read("sec a", "e"), "");
  EXPECT_EQ(Read("sec a", "noequal", "dflt"), "dflt") << "a line without = is no value";
}

TEST_F(ProfileContract, NulInTheFileEndsTheValueThatHoldsIt) {
  bench->Put(file, std::string("[s]\r\nk=ab\0cd\r\nn=1\r\n", 19));
  std::string value;
  EXPECT_EQ(p().GetPrivateProfileStringA("s", "k", "", &value, 255, file), 2u);
  EXPECT_EQ(value, "ab");
  EXPECT_EQ(p().GetPrivateProfileStringA("s", "n", "", &value, 255, file), 1u);
  EXPECT_EQ(value, "1");
}

TEST_F(ProfileContract, OnlyTheFirstOfTwoSectionsOfOneNameCounts) {
  bench->Put(file, "[s]\r\nk=1\r\n[s]\r\nk=2\r\nj=3\r\n");
  EXPECT_EQ(Read("s", "k"), "1");
  EXPECT_EQ(Read("s", "j", "dflt"), "dflt");
  Write("s", "j", "4");
  EXPECT_EQ(Text(), "[s]\r\nk=1\r\nj=4\r\n[s]\r\nk=2\r\nj=3\r\n");
}

TEST_F(ProfileContract, ValueLosesItsLeadingBlanksAndReadsBackTrimmed) {
  Write("opti", "bmp", "  0  ");
  EXPECT_EQ(Read("opti", "bmp"), "0");
  Write("opti", "dvd", "1");
  EXPECT_EQ(Text(), "[opti]\r\nbmp=0\r\ndvd=1\r\n");
}

TEST_F(ProfileContract, LongValueIsCutToTheBufferLessOne) {
  std::string value(300, 'a');
  value[253] = 'B';
  value[254] = 'C';
  Write("opti", "long", value);
  std::uint32_t n = 0;
  std::string got = Read("opti", "long", "", 255, &n);
  EXPECT_EQ(n, 254u);
  EXPECT_EQ(got.substr(0, n), value.substr(0, 254));
}

TEST_F(ProfileContract, AccentedTextIsCountedInCharacters) {
  Write("opti", "mot", "Règlage");
  std::uint32_t n = 0;
  std::string got = Read("opti", "mot", "", 255, &n);
  EXPECT_EQ(n, 7u);
  EXPECT_EQ(got.substr(0, 8), "Règlage");
}

TEST_F(ProfileContract, ReadProfileValueGivesExactlyTheValue) {
  bench->Put(file, "[opti]\r\nbmp=1\r\n");
  ini::ProfilePath = file;
  EXPECT_EQ(ini::ReadProfileValue(p(), "opti", "bmp"), "1");
  EXPECT_EQ(ini::ReadProfileValue(p(), "opti", "dvd"), "");
  EXPECT_EQ(ini::WriteProfileValue(p(), "opti", "dvd", "0"), "");
  EXPECT_EQ(Text(), "[opti]\r\nbmp=1\r\ndvd=0\r\n");
  ini::ProfilePath.clear();
}

TEST_F(ProfileContract, ProfileValueOfMoreThan254CharactersReadsBackCut) {
  ini::ProfilePath = file;
  ini::WriteProfileValue(p(), "opti", "long", std::string(300, 'z'));
  EXPECT_EQ(ini::ReadProfileValue(p(), "opti", "long"), std::string(254, 'z'));
  ini::ProfilePath.clear();
}

}  // namespace
}  // namespace tamrix::test
