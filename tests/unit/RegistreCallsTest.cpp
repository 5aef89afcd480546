// The exact platform calls behind each Registre operation: the mask, the order, the close that
// follows even a failed opening, and the silence.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "platform/Registre.h"
#include "platform/Runtime.h"

namespace tamrix {
namespace {

using Calls = std::vector<std::string>;
using namespace Registre;

TEST(RegistreCalls, ReadOpensWithMask3FQueriesTwiceAndCloses) {
  fake::FakePlatform p;
  p.SetValue(hive::LocalMachine, "Software\\A", "v", regtype::Sz, std::string("abc\0", 4));
  ReadRegValue(p, hive::LocalMachine, "Software\\A", "v");
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKLM,Software\\A,0,0x3F)", "RegQueryValueExA(key,v,no buffer)",
                            "RegQueryValueExA(key,v,buffer 4)", "RegCloseKey(key)"}));
  EXPECT_EQ(p.OpenHandles(), 0u);
}

TEST(RegistreCalls, ReadOfMissingKeyStillQueriesAndClosesTheZeroHandle) {
  fake::FakePlatform p;
  RegValue v = ReadRegValue(p, hive::CurrentUser, "Software\\Missing", "v");
  EXPECT_TRUE(v.IsEmpty());
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKCU,Software\\Missing,0,0x3F)", "RegQueryValueExA(0,v,no buffer)",
                            "RegCloseKey(0)"}));
}

TEST(RegistreCalls, WriteIntoMissingKeyTriesTheZeroHandleAndCreatesNothing) {
  fake::FakePlatform p;
  WriteRegValue(p, hive::CurrentUser, "Software\\Missing", "v", 1, regtype::Dword);
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKCU,Software\\Missing,0,0x3F)", "RegSetValueExA(0,v,4,1,4)",
                            "RegCloseKey(0)"}));
  EXPECT_FALSE(p.KeyExists(hive::CurrentUser, "Software\\Missing"));
}

TEST(RegistreCalls, TextWriteCountsNoTerminator) {
  fake::FakePlatform p;
  p.CreateKey(hive::CurrentUser, "K");
  WriteRegValue(p, hive::CurrentUser, "K", "v", "abc", regtype::Sz);
  EXPECT_EQ(p.calls[1], "RegSetValueExA(key,v,1,abc,3)");
}

TEST(RegistreCalls, DeleteKeyGoesStraightToTheHive) {
  fake::FakePlatform p;
  DeleteRegKey(p, hive::CurrentUser, "Software\\X");
  EXPECT_EQ(p.calls, (Calls{"RegDeleteKeyA(HKCU,Software\\X)"}));
}

TEST(RegistreCalls, DeleteValueOpensDeletesCloses) {
  fake::FakePlatform p;
  p.SetValue(hive::CurrentUser, "K", "v", regtype::Sz, "x");
  DeleteRegValue(p, hive::CurrentUser, "K", "v");
  EXPECT_EQ(p.calls, (Calls{"RegOpenKeyExA(HKCU,K,0,0x3F)", "RegDeleteValueA(key,v)", "RegCloseKey(key)"}));
  EXPECT_EQ(p.GetValue(hive::CurrentUser, "K", "v"), nullptr);
}

TEST(RegistreCalls, DeleteKeyWithSubkeysLeavesItAsOnNt) {
  fake::FakePlatform p;
  p.CreateKey(hive::CurrentUser, "K\\Sub");
  DeleteRegKey(p, hive::CurrentUser, "K");
  EXPECT_TRUE(p.KeyExists(hive::CurrentUser, "K\\Sub"));
}

TEST(RegistreCalls, QueryStatusIsMinusOneForOtherTypes) {
  fake::FakePlatform p;
  p.SetValue(hive::CurrentUser, "K", "v", regtype::ExpandSz, std::string("x\0", 2));
  HKey h = 0;
  p.RegOpenKeyExA(hive::CurrentUser, "K", 0, kAccessMask, &h);
  RegValue v;
  EXPECT_EQ(QueryOpenKeyValue(p, h, "v", v), -1);
  EXPECT_TRUE(v.IsEmpty());
}

TEST(RegistreCalls, QueryStatusOfMissingValueIsThePlatformCode) {
  fake::FakePlatform p;
  p.CreateKey(hive::CurrentUser, "K");
  HKey h = 0;
  p.RegOpenKeyExA(hive::CurrentUser, "K", 0, kAccessMask, &h);
  RegValue v("before");
  EXPECT_EQ(QueryOpenKeyValue(p, h, "nothing", v), status::FileNotFound);
  EXPECT_EQ(v, RegValue("before"));  // left as it was
}

TEST(RegistreCalls, SetStatusOfUnknownTypeIsZeroAndNothingIsCalled) {
  fake::FakePlatform p;
  EXPECT_EQ(SetOpenKeyValue(p, 0, "v", regtype::Binary, "x"), 0);
  EXPECT_TRUE(p.calls.empty());
}

TEST(RegistreCalls, SetStatusOnZeroHandleIsThePlatformCode) {
  fake::FakePlatform p;
  EXPECT_EQ(SetOpenKeyValue(p, 0, "v", regtype::Dword, 1), status::InvalidHandle);
}

TEST(RegistreCalls, DwordWriteOfNonNumericTextIsTheOneFault) {
  fake::FakePlatform p;
  p.CreateKey(hive::CurrentUser, "K");
  EXPECT_THROW(WriteRegValue(p, hive::CurrentUser, "K", "v", "abc", regtype::Dword), RuntimeError);
}

TEST(RegistreCalls, DwordWriteOfNumericTextUsesTheRegionalDecimalSign) {
  fake::FakePlatform p;
  p.decimalSign = ',';
  p.CreateKey(hive::CurrentUser, "K");
  WriteRegValue(p, hive::CurrentUser, "K", "v", "2,5", regtype::Dword);  // halves to even
  EXPECT_EQ(Registre::ReadRegValue(p, hive::CurrentUser, "K", "v"), RegValue(2));
}

TEST(RegValueRules, EmptyIsZeroAmongNumbersAndNothingAmongTexts) {
  RegValue empty;
  EXPECT_TRUE(empty.EqualsNumber(0));
  EXPECT_FALSE(empty.EqualsNumber(1));
  EXPECT_EQ(empty.ToText(), "");
  EXPECT_EQ(empty.ToInt16(','), 0);
  EXPECT_EQ(empty.ToInt32(','), 0);
}

TEST(RegValueRules, TextNeverEqualsANumber) {
  EXPECT_FALSE(RegValue("1").EqualsNumber(1));
  EXPECT_FALSE(RegValue(std::string("1\0", 2)).EqualsNumber(1));
  EXPECT_TRUE(RegValue(1).EqualsNumber(1));
}

TEST(RegValueRules, SixteenBitConversionOverflows) {
  EXPECT_EQ(RegValue(32767).ToInt16(','), 32767);
  EXPECT_THROW(RegValue(32768).ToInt16(','), RuntimeError);
  EXPECT_THROW(RegValue("abc").ToInt16(','), RuntimeError);
  EXPECT_EQ(RegValue(" 1 ").ToInt16(','), 1);
}

}  // namespace
}  // namespace tamrix
