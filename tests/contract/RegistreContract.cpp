// What Registre does, asserted on whichever registry the binary links in: the same
// expectations run against the fake natively and against Wine's real registry.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "contract/RegistryBench.h"
#include "platform/Registre.h"

namespace tamrix::test {
namespace {

using namespace tamrix::Registre;

class RegistreContract : public ::testing::Test {
 protected:
  void SetUp() override {
    bench = MakeRegistryBench();
    key = bench->Scratch();
    bench->CreateKey(hive::CurrentUser, key);
  }
  Platform& p() { return bench->platform(); }
  std::unique_ptr<RegistryBench> bench;
  std::string key;
};

TEST_F(RegistreContract, TextReadKeepsItsTerminator) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::Sz, std::string("abc\0", 4));
  RegValue v = ReadRegValue(p(), hive::CurrentUser, key, "v");
  ASSERT_TRUE(v.IsText());
  EXPECT_EQ(v.ToText(), std::string("abc\0", 4));
  EXPECT_NE(v.ToText(), "abc");     // a caller comparing with the three letters finds them different
  EXPECT_EQ(v.Shown(), "abc");      // a caller showing it shows the three letters
}

TEST_F(RegistreContract, EmptyTextOfSizeOneReadsAsOneNul) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::Sz, std::string("\0", 1));
  RegValue v = ReadRegValue(p(), hive::CurrentUser, key, "v");
  ASSERT_TRUE(v.IsText());
  EXPECT_EQ(v.ToText(), std::string("\0", 1));
}

TEST_F(RegistreContract, TextOfSizeZeroReadsAsEmptyTextNotEmpty) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::Sz, "");
  RegValue v = ReadRegValue(p(), hive::CurrentUser, key, "v");
  EXPECT_TRUE(v.IsText());
  EXPECT_EQ(v.ToText(), "");
}

TEST_F(RegistreContract, WrittenTextHasNoTerminatorInItsSize) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", "abc", regtype::Sz);
  RawValue raw = bench->GetRaw(hive::CurrentUser, key, "v");
  ASSERT_TRUE(raw.exists);
  EXPECT_EQ(raw.type, regtype::Sz);
  EXPECT_EQ(raw.size, 3u);
  EXPECT_EQ(raw.data, "abc");
}

TEST_F(RegistreContract, NumberWrittenAsTextGivesItsDecimalForm) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", -42, regtype::Sz);
  RawValue raw = bench->GetRaw(hive::CurrentUser, key, "v");
  EXPECT_EQ(raw.data, "-42");
  EXPECT_EQ(raw.size, 3u);
}

TEST_F(RegistreContract, AccentedTextTravelsInTheAnsiCodePage) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", "Terminée", regtype::Sz);
  RawValue raw = bench->GetRaw(hive::CurrentUser, key, "v");
  EXPECT_EQ(raw.size, 8u);  // one byte for the é
  RegValue back = ReadRegValue(p(), hive::CurrentUser, key, "v");
  EXPECT_EQ(back.ToText(), "Terminée");
}

TEST_F(RegistreContract, ExpandableTextReadsAsEmpty) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::ExpandSz, std::string("%windir%\0", 9));
  EXPECT_TRUE(ReadRegValue(p(), hive::CurrentUser, key, "v").IsEmpty());
}

TEST_F(RegistreContract, BinaryAndMultiTextReadAsEmpty) {
  bench->SetRaw(hive::CurrentUser, key, "b", regtype::Binary, "\x01\x02");
  bench->SetRaw(hive::CurrentUser, key, "m", regtype::MultiSz, std::string("a\0b\0\0", 5));
  EXPECT_TRUE(ReadRegValue(p(), hive::CurrentUser, key, "b").IsEmpty());
  EXPECT_TRUE(ReadRegValue(p(), hive::CurrentUser, key, "m").IsEmpty());
}

TEST_F(RegistreContract, DwordAllOnesReadsAsMinusOne) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::Dword, std::string("\xFF\xFF\xFF\xFF", 4));
  RegValue v = ReadRegValue(p(), hive::CurrentUser, key, "v");
  ASSERT_TRUE(v.IsNumber());
  EXPECT_EQ(v.ToInt32('.'), -1);
}

TEST_F(RegistreContract, DwordWriteStoresFourBytes) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", 1, regtype::Dword);
  RawValue raw = bench->GetRaw(hive::CurrentUser, key, "v");
  EXPECT_EQ(raw.type, regtype::Dword);
  EXPECT_EQ(raw.size, 4u);
  EXPECT_EQ(raw.data, std::string("\x01\0\0\0", 4));
  EXPECT_EQ(ReadRegValue(p(), hive::CurrentUser, key, "v"), RegValue(1));
}

TEST_F(RegistreContract, NegativeDwordRoundTrips) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", -2, regtype::Dword);
  EXPECT_EQ(bench->GetRaw(hive::CurrentUser, key, "v").data, std::string("\xFE\xFF\xFF\xFF", 4));
}

TEST_F(RegistreContract, WriteIntoMissingKeyChangesNothing) {
  std::string missing = key + "\\Missing";
  WriteRegValue(p(), hive::CurrentUser, missing, "v", 1, regtype::Dword);
  EXPECT_FALSE(bench->KeyExists(hive::CurrentUser, missing));
  EXPECT_TRUE(ReadRegValue(p(), hive::CurrentUser, missing, "v").IsEmpty());
  EXPECT_FALSE(bench->GetRaw(hive::CurrentUser, key, "v").exists);  // not written to the parent either
}

TEST_F(RegistreContract, WriteOfUnknownTypeWritesNothing) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", "abc", regtype::Binary);
  EXPECT_FALSE(bench->GetRaw(hive::CurrentUser, key, "v").exists);
}

TEST_F(RegistreContract, WriteOverwritesValueOfOtherType) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::ExpandSz, std::string("x\0", 2));
  WriteRegValue(p(), hive::CurrentUser, key, "v", 7, regtype::Dword);
  RawValue raw = bench->GetRaw(hive::CurrentUser, key, "v");
  EXPECT_EQ(raw.type, regtype::Dword);
  EXPECT_EQ(raw.data, std::string("\x07\0\0\0", 4));
}

TEST_F(RegistreContract, MissingValueReadsAsEmpty) {
  EXPECT_TRUE(ReadRegValue(p(), hive::CurrentUser, key, "nothing").IsEmpty());
}

TEST_F(RegistreContract, MissingKeyReadsAsEmpty) {
  EXPECT_TRUE(ReadRegValue(p(), hive::CurrentUser, key + "\\Nope", "v").IsEmpty());
}

TEST_F(RegistreContract, EmptyValueNameAddressesTheDefaultValue) {
  WriteRegValue(p(), hive::CurrentUser, key, "", "def", regtype::Sz);
  EXPECT_EQ(bench->GetRaw(hive::CurrentUser, key, "").data, "def");
}

TEST_F(RegistreContract, KeyPathsAreCaseInsensitive) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::Dword, std::string("\x05\0\0\0", 4));
  std::string upper = key;
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  EXPECT_EQ(ReadRegValue(p(), hive::CurrentUser, upper, "V"), RegValue(5));
}

TEST_F(RegistreContract, DeleteMissingKeyDoesNothing) {
  DeleteRegKey(p(), hive::CurrentUser, key + "\\Nope");
  EXPECT_TRUE(bench->KeyExists(hive::CurrentUser, key));
  EXPECT_FALSE(bench->KeyExists(hive::CurrentUser, key + "\\Nope"));
}

TEST_F(RegistreContract, DeleteKeyRemovesALeafKey) {
  bench->CreateKey(hive::CurrentUser, key + "\\Leaf");
  DeleteRegKey(p(), hive::CurrentUser, key + "\\Leaf");
  EXPECT_FALSE(bench->KeyExists(hive::CurrentUser, key + "\\Leaf"));
}

TEST_F(RegistreContract, DeleteValueRemovesItAndAnyType) {
  bench->SetRaw(hive::CurrentUser, key, "v", regtype::Binary, "\x01");
  DeleteRegValue(p(), hive::CurrentUser, key, "v");
  EXPECT_FALSE(bench->GetRaw(hive::CurrentUser, key, "v").exists);
}

TEST_F(RegistreContract, DeleteValueInMissingKeyIsSilent) {
  DeleteRegValue(p(), hive::CurrentUser, key + "\\Nope", "v");
  EXPECT_FALSE(bench->KeyExists(hive::CurrentUser, key + "\\Nope"));
}

TEST_F(RegistreContract, MachineKeyDeniedForWritingReadsAsEmpty) {
  bench->CreateKey(hive::LocalMachine, key);
  bench->SetRaw(hive::LocalMachine, key, "v", regtype::Dword, std::string("\x01\0\0\0", 4));
  if (!bench->DenyWrite(hive::LocalMachine, key)) GTEST_SKIP() << "this registry keeps no access rights";
  EXPECT_TRUE(ReadRegValue(p(), hive::LocalMachine, key, "v").IsEmpty());
  WriteRegValue(p(), hive::LocalMachine, key, "v", 2, regtype::Dword);
  EXPECT_EQ(bench->GetRaw(hive::LocalMachine, key, "v").data, std::string("\x01\0\0\0", 4));
}

// The wide reads a backup takes: stored bytes, texts in UTF-16 LE, and the walk of a key.
class WideReads : public RegistreContract {
 protected:
  HKey Open(const std::string& path) {
    HKey k = 0;
    EXPECT_EQ(p().RegOpenKeyExA(hive::CurrentUser, path, 0, keyaccess::Read, &k), status::Success);
    return k;
  }
};

TEST_F(WideReads, TextComesAsItsStoredUtf16WithoutATerminatorTheWriteLeftOut) {
  WriteRegValue(p(), hive::CurrentUser, key, "v", "Terminée", regtype::Sz);
  HKey k = Open(key);
  std::uint32_t type = 0, size = 0;
  ASSERT_EQ(p().RegQueryValueExW(k, "v", &type, nullptr, &size), status::Success);
  EXPECT_EQ(type, regtype::Sz);
  EXPECT_EQ(size, 16u);
  std::string data;
  ASSERT_EQ(p().RegQueryValueExW(k, "v", &type, &data, &size), status::Success);
  EXPECT_EQ(data, std::string("T\0e\0r\0m\0i\0n\0\xe9\0e\0", 16));
  std::uint32_t small = 4;
  EXPECT_EQ(p().RegQueryValueExW(k, "v", &type, &data, &small), status::MoreData);
  EXPECT_EQ(small, 16u);
  p().RegCloseKey(k);
}

TEST_F(WideReads, OtherTypesComeAsTheirBytes) {
  bench->SetRaw(hive::CurrentUser, key, "b", regtype::Binary, std::string("\x01\x00\xff", 3));
  HKey k = Open(key);
  std::uint32_t type = 0, size = 3;
  std::string data;
  ASSERT_EQ(p().RegQueryValueExW(k, "b", &type, &data, &size), status::Success);
  EXPECT_EQ(type, regtype::Binary);
  EXPECT_EQ(data, std::string("\x01\x00\xff", 3));
  EXPECT_EQ(p().RegQueryValueExW(k, "nothing", &type, nullptr, &size), status::FileNotFound);
  p().RegCloseKey(k);
}

TEST_F(WideReads, TheValuesOfAKeyAreWalkedWholeThenNoMoreItems) {
  bench->SetRaw(hive::CurrentUser, key, "un", regtype::Dword, std::string("\x01\0\0\0", 4));
  bench->SetRaw(hive::CurrentUser, key, "", regtype::Sz, std::string("d\0", 2));
  bench->SetRaw(hive::CurrentUser, key, "long", regtype::Binary, std::string(3000, '\x5a'));
  HKey k = Open(key);
  std::map<std::string, std::pair<std::uint32_t, std::string>> seen;
  std::uint32_t i = 0;
  for (;; ++i) {
    std::string name, data;
    std::uint32_t type = 0;
    long s = p().RegEnumValueW(k, i, &name, &type, &data);
    if (s != status::Success) {
      EXPECT_EQ(s, status::NoMoreItems);
      break;
    }
    seen[name] = {type, data};
  }
  p().RegCloseKey(k);
  EXPECT_EQ(i, 3u);
  std::map<std::string, std::pair<std::uint32_t, std::string>> expected = {
      {"", {regtype::Sz, std::string("d\0\0\0", 4)}},
      {"long", {regtype::Binary, std::string(3000, '\x5a')}},
      {"un", {regtype::Dword, std::string("\x01\0\0\0", 4)}},
  };
  EXPECT_EQ(seen, expected);
}

TEST_F(WideReads, TheSubkeysOfAKeyAreWalkedByNameOneLevelOnly) {
  bench->CreateKey(hive::CurrentUser, key + "\\Un");
  bench->CreateKey(hive::CurrentUser, key + "\\Deux\\Trois");
  HKey k = Open(key);
  std::vector<std::string> names;
  std::string name;
  std::uint32_t i = 0;
  for (; p().RegEnumKeyExW(k, i, &name) == status::Success; ++i) names.push_back(name);
  EXPECT_EQ(p().RegEnumKeyExW(k, i, &name), status::NoMoreItems);
  p().RegCloseKey(k);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"Deux", "Un"}));
}

}  // namespace
}  // namespace tamrix::test
