// The WMI moniker as the scripting moniker reads it: its namespace, and the impersonation level a
// bind takes when the moniker names none.
#include <gtest/gtest.h>

#include "platform/WmiMoniker.h"

namespace tamrix::wmi {
namespace {

TEST(WmiMoniker, ABareMonikerTakesTheScriptingDefaultNotComsOwn) {
  Moniker m = ParseMoniker("Winmgmts:");
  ASSERT_TRUE(m.valid);
  EXPECT_EQ(m.path, "root\\cimv2");
  EXPECT_FALSE(m.level.has_value());
  EXPECT_EQ(ImpersonationLevel(m, std::nullopt), 3u);  // impersonate, as on a fresh system
  EXPECT_EQ(ImpersonationLevel(m, 2u), 2u);              // the machine's setting says identify
  EXPECT_EQ(ImpersonationLevel(m, 9u), 3u);              // no level at all: the fresh default
}

TEST(WmiMoniker, TheMonikersOwnLevelWinsOverTheMachinesSetting) {
  Moniker m = ParseMoniker("winmgmts:{impersonationLevel=impersonate}");
  ASSERT_TRUE(m.valid);
  EXPECT_EQ(ImpersonationLevel(m, 2u), 3u);
  EXPECT_EQ(ImpersonationLevel(ParseMoniker("WINMGMTS:{ImpersonationLevel=Identify}"), 3u), 2u);
  EXPECT_EQ(ImpersonationLevel(ParseMoniker("winmgmts:{impersonationLevel=delegate}!root\\wmi"), 3u), 4u);
}

TEST(WmiMoniker, TheNamespaceFollowsTheExclamationMark) {
  EXPECT_EQ(ParseMoniker("winmgmts:!root\\default").path, "root\\default");
  EXPECT_EQ(ParseMoniker("winmgmts:{impersonationLevel=impersonate}!root\\wmi").path, "root\\wmi");
}

TEST(WmiMoniker, AnythingElseIsNoWmiMoniker) {
  EXPECT_FALSE(ParseMoniker("Scripting.FileSystemObject").valid);
  EXPECT_FALSE(ParseMoniker("winmgmts:{impersonationLevel=impersonate").valid);
  EXPECT_FALSE(ParseMoniker("").valid);
}

}  // namespace
}  // namespace tamrix::wmi
