// Checks of a page's design: every control inside its container, clear of a titled panel's band
// and border, on whole pixels, and clear of its siblings but for outlines and for the pairs that
// lie on one another on purpose.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "shell/Controls.h"

namespace tamrix::test {

constexpr int kTitleBand = 300;  // twips: the band of a titled panel
constexpr int kGroupCaption = 210;  // twips: the caption line of a plain frame
constexpr int kBorder = 45;      // twips kept clear of the panel's rounded border

inline bool Overlap(const Twips& a, const Twips& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

// Pairs of design names that may overlap, in either order.
using Overlaps = std::set<std::pair<std::string, std::string>>;

inline void ExpectTidy(Control& panel, const Overlaps& allowed = {}) {
  const Twips& outer = panel.Rect();
  const auto& children = panel.Children();
  const bool titled = !panel.Caption().empty();
  const int band = panel.kind() == Kind::Frame ? kGroupCaption : kTitleBand + 15;
  for (Control* c : children) {
    const Twips& r = c->Rect();
    SCOPED_TRACE(panel.Name() + " / " + c->Name());
    EXPECT_GE(r.left, kBorder);
    if (titled) EXPECT_GE(r.top, band);
    EXPECT_LE(r.left + r.width, outer.width - kBorder);
    EXPECT_LE(r.top + r.height, outer.height - kBorder);
    EXPECT_EQ(r.left % 15, 0) << "whole pixels";
    EXPECT_EQ(r.top % 15, 0);
    EXPECT_EQ(r.width % 15, 0);
    EXPECT_EQ(r.height % 15, 0);
    for (Control* d : children) {
      // A shape is an outline drawn around other controls: it may enclose them.
      bool outline = c->kind() == Kind::Shape || d->kind() == Kind::Shape;
      if (c < d && !outline && !allowed.count({c->Name(), d->Name()}) && !allowed.count({d->Name(), c->Name()})) {
        EXPECT_FALSE(Overlap(r, d->Rect())) << "overlaps " << d->Name();
      }
    }
    if (c->kind() == Kind::TamrixFrm || c->kind() == Kind::Frame) ExpectTidy(*c, allowed);
  }
}

}  // namespace tamrix::test
