// A picture of every page of both windows, as a person sees it: the pages shown one after the
// other through their own buttons, each picture taken once its page alone stands, of its window
// alone. `make screenshots` keeps them in docs/pages/ for the gallery of the documentation.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "e2e/Driver.h"

namespace tamrix::e2e {
namespace {

struct Shown {
  const char* button;  // what the user clicks
  const char* page;    // the frame that then stands alone among its kind
  const char* picture;
};

const char* const kPages[] = {"Frame1", "Frame2", "Frame3", "Frame4", "frmprot", "Propos"};
const char* const kSubPages[] = {"fwindows", "pc", "disque", "FrmBios", "FrmCpu", "Frmson"};
const char* const kToolPages[] = {"TamrixFrm1", "TamrixFrm2", "TamrixFrm5", "TamrixFrm6", "fraPerso"};

const Shown kMainPages[] = {
    {"win", "Frame1", "windows"},    {"internet", "Frame2", "internet"}, {"TamrixCmd7", "frmprot", "protection"},
    {"apro", "Propos", "a-propos"},
};
const Shown kTestLab[] = {
    {"TamrixCmd2", "fwindows", "testlab-windows"}, {"command2", "pc", "testlab-pc"},
    {"TamrixCmd3", "disque", "testlab-disques"},   {"TamrixCmd6", "FrmBios", "testlab-bios"},
    {"TamrixCmd4", "FrmCpu", "testlab-processeur"}, {"TamrixCmd11", "Frmson", "testlab-son"},
};
// The tools window's pages open from the Windows page.
const Shown kTools[] = {
    {"TamrixCmd12", "TamrixFrm1", "outils-dossiers-speciaux"}, {"TamrixCmd5", "fraPerso", "outils-personnaliser-dossier"},
    {"TamrixCmd13", "TamrixFrm2", "outils-information-oem"},   {"TamrixCmd14", "TamrixFrm5", "outils-resolution"},
    {"TamrixCmd15", "TamrixFrm6", "outils-arret"},
};

class Gallery : public ::testing::Test {
 protected:
  App app;
  void SetUp() override { ASSERT_TRUE(app.Start()); }

  bool Visible(HWND form, const char* name) {
    HWND h = ChildOf(form, name);
    return h && IsWindowVisible(h);
  }
  // The page stands and no other of its kind does.
  bool Alone(HWND form, const char* page, const char* const* kind, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i)
      if (Visible(form, kind[i]) != (std::string(kind[i]) == page)) return false;
    return true;
  }
  // The picture once the window has gone through what it was told.
  void Picture(HWND window, const std::string& name) {
    SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, nullptr);
    Sleep(500);
    WindowShot(window, name);
  }
};

TEST_F(Gallery, EveryPageOfTheMainWindowAloneInItsPicture) {
  ASSERT_TRUE(WaitUntil([&] { return Alone(app.Main(), "Frame4", kPages, std::size(kPages)); })) << "starts on the home page";
  Picture(app.Main(), "accueil");
  for (const Shown& s : kMainPages) {
    app.Click(s.button);
    ASSERT_TRUE(WaitUntil([&] { return Alone(app.Main(), s.page, kPages, std::size(kPages)); })) << s.button;
    Picture(app.Main(), s.picture);
  }
  app.Click("sys");
  ASSERT_TRUE(WaitUntil([&] { return Alone(app.Main(), "Frame3", kPages, std::size(kPages)); }));
  for (const Shown& s : kTestLab) {
    app.Click(s.button);
    ASSERT_TRUE(WaitUntil([&] { return Alone(app.Main(), s.page, kSubPages, std::size(kSubPages)); })) << s.button;
    // The drive page fills its lines from the drive chosen first; the sound page from the first mixer.
    if (std::string(s.page) == "disque") ASSERT_TRUE(WaitUntil([&] { return !app.Text("d4").empty(); }));
    Picture(app.Main(), s.picture);
  }
}

TEST_F(Gallery, EveryPageOfTheToolsWindowAloneInItsPicture) {
  for (const Shown& s : kTools) {
    app.Click("win");
    app.Click(s.button);
    HWND tools = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
      tools = FormOf(app.Pid(), "Form2");
      return tools && IsWindowVisible(tools) && Alone(tools, s.page, kToolPages, std::size(kToolPages));
    })) << s.button;
    Picture(tools, s.picture);
    // Closed by its title bar's button, as a user does: the main window comes back minimised.
    PostMessageA(tools, WM_CLOSE, 0, 0);
    ASSERT_TRUE(WaitUntil([&] { return !IsWindowVisible(tools) || !IsWindow(tools); }));
    ShowWindow(app.Main(), SW_RESTORE);
    ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(app.Main()) && !IsIconic(app.Main()); }));
  }
}

}  // namespace
}  // namespace tamrix::e2e
