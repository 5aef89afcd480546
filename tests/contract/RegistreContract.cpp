// What Registre does, asserted on whichever registry the binary links in: the same
// expectations run against the fake natively and against Wine's real registry.
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace tamrix::test
