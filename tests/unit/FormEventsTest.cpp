#include <gtest/gtest.h>

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
