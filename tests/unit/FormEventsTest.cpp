#include <gtest/gtest.h>

#include <vector>

#include "shell/Controls.h"

namespace tamrix {
namespace {

TEST(FormEvents, ACancelledQueryKeepsTheFormLoaded) {
  Form f({.name = "F"});
  f.Load();
  int asked = 0;
  f.OnQueryUnload = [&](bool& cancel) {
    ++asked;
    cancel = true;
  };
  f.Unload();
  EXPECT_TRUE(f.Loaded());
  EXPECT_EQ(asked, 1);
}

TEST(FormEvents, AnUnloadFromWithinTheQueryGoesThroughWithoutAskingAgain) {
  Form f({.name = "F"});
  f.Load();
  int asked = 0;
  f.OnQueryUnload = [&](bool&) {
    ++asked;
    f.Unload();
  };
  f.Unload();
  EXPECT_FALSE(f.Loaded());
  EXPECT_EQ(asked, 1);
}

TEST(FormEvents, AQueryThatLetsGoUnloads) {
  Form f({.name = "F"});
  f.Load();
  f.OnQueryUnload = [](bool&) {};
  f.Unload();
  EXPECT_FALSE(f.Loaded());
}

TEST(FormEvents, TheEndOfSessionAsksTheQueryWithTheSystemsModeAndACancelRefusesIt) {
  Form f({.name = "F"});
  f.Load();
  int modeSeen = -1;
  f.OnQueryUnload = [&](bool& cancel) {
    modeSeen = f.QueryUnloadMode();
    cancel = true;
  };
  EXPECT_FALSE(f.QueryEndSession());
  EXPECT_EQ(modeSeen, 2);
  EXPECT_TRUE(f.Loaded());
}

TEST(FormEvents, TheEndOfSessionGoesOnWhenTheQueryLetsGo) {
  Form f({.name = "F"});
  f.Load();
  int asked = 0;
  f.OnQueryUnload = [&](bool&) { ++asked; };
  EXPECT_TRUE(f.QueryEndSession());
  EXPECT_EQ(asked, 1);
  Form bare({.name = "G"});
  bare.Load();
  EXPECT_TRUE(bare.QueryEndSession());
}

TEST(FormEvents, TheCloseBoxAndCodeGiveTheirOwnModes) {
  Form f({.name = "F"});
  std::vector<int> modes;
  f.OnQueryUnload = [&](bool& cancel) {
    modes.push_back(f.QueryUnloadMode());
    cancel = true;
  };
  f.Load();
  f.Unload(Form::kUnloadByCloseBox);
  f.Unload();
  EXPECT_EQ(modes, (std::vector<int>{0, 1}));
}

TEST(FormEvents, ActivationRaisesTheHandler) {
  Form f({.name = "F"});
  int activations = 0;
  f.OnActivate = [&] { ++activations; };
  f.Activate();
  EXPECT_EQ(activations, 1);
}

TEST(FormEvents, AKeyPressHandlerMaySwallowTheCharacter) {
  Form f({.name = "F"});
  TextBox box(&f, {.name = "box"});
  int key = 'a';
  box.KeyPress(key);  // no handler: the key passes
  EXPECT_EQ(key, 'a');
  box.OnKeyPress = [](int& k) { k = 0; };
  box.KeyPress(key);
  EXPECT_EQ(key, 0);
}

}  // namespace
}  // namespace tamrix
