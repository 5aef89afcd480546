// The platform operations of the tools window against Wine's real shell and display.
#include <windows.h>
#include <shlobj.h>

#include <gtest/gtest.h>

#include "platform/win32/Win32Platform.h"

namespace tamrix::win32 {
namespace {

TEST(ToolsPlatformOnWine, TheDesktopFolderHasAFileSystemPathThroughTheItemList) {
  Win32Platform p;
  std::uint64_t list = 0;
  ASSERT_EQ(p.SHGetSpecialFolderLocation(0, CSIDL_DESKTOP, &list), 0);
  ASSERT_NE(list, 0u);
  std::string path;
  ASSERT_TRUE(p.SHGetPathFromIDListA(list, &path));
  char expected[MAX_PATH] = {};
  ASSERT_TRUE(SHGetSpecialFolderPathA(nullptr, expected, CSIDL_DESKTOP, FALSE));
  EXPECT_EQ(path, expected);
  p.CoTaskMemFree(list);
}

TEST(ToolsPlatformOnWine, AFolderNumberThatDoesNotExistIsRefused) {
  Win32Platform p;
  std::uint64_t list = 0;
  EXPECT_NE(p.SHGetSpecialFolderLocation(0, 0x7F, &list), 0);
  EXPECT_EQ(list, 0u);
}

TEST(ToolsPlatformOnWine, TheScreenInTwipsIsItsPixelsTimesFifteenAtNinetySixDots) {
  Win32Platform p;
  auto s = p.GetScreenTwips();
  HDC dc = GetDC(nullptr);
  int dpi = GetDeviceCaps(dc, LOGPIXELSX);
  ReleaseDC(nullptr, dc);
  EXPECT_EQ(s.twipsPerPixelX, 1440 / dpi);
  EXPECT_EQ(s.width / s.twipsPerPixelX, GetSystemMetrics(SM_CXSCREEN));
  EXPECT_EQ(s.height / s.twipsPerPixelY, GetSystemMetrics(SM_CYSCREEN));
}

TEST(ToolsPlatformOnWine, ModesEnumerateAndTheCurrentOneIsAmongThemAndAppliesSilently) {
  Win32Platform p;
  int bits = p.GetDeviceCaps(reinterpret_cast<ULONG_PTR>(GetDesktopWindow()), BITSPIXEL);
  std::vector<Platform::DevMode> modes;
  Platform::DevMode m;
  while (p.EnumDisplaySettingsA(static_cast<std::uint32_t>(modes.size()), &m)) modes.push_back(m);
  ASSERT_FALSE(modes.empty());
  const Platform::DevMode* current = nullptr;
  for (const auto& mode : modes)
    if (mode.dmPelsWidth == static_cast<DWORD>(GetSystemMetrics(SM_CXSCREEN)) &&
        mode.dmPelsHeight == static_cast<DWORD>(GetSystemMetrics(SM_CYSCREEN)) &&
        mode.dmBitsPerPel == static_cast<DWORD>(bits))
      current = &mode;
  ASSERT_NE(current, nullptr);
  Platform::DevMode again = *current;
  again.dmFields = DM_BITSPERPEL | DM_PELSWIDTH | DM_PELSHEIGHT;
  EXPECT_EQ(again.dmFields, 1835008u);
  EXPECT_EQ(p.ChangeDisplaySettingsA(again, CDS_UPDATEREGISTRY), DISP_CHANGE_SUCCESSFUL);
}

}  // namespace
}  // namespace tamrix::win32
