// How the controls of a form are reached from the keyboard, as a form of the classic toolkit
// does it: Tab walks the controls in the order the page declares them, across the form's
// containers, skipping what can't be seen or used; the arrows move inside a group of options;
// Alt and the letter after a caption's "&" reach the control. The binding feeds it the keys and
// moves the real focus; the rules stand here, with the controls, so that they are the same for
// every page.
#pragma once

#include <string>
#include <vector>

#include "shell/Controls.h"

namespace tamrix::keyboard {

// The kinds that take the focus. Panels, labels, pictures, shapes and bars never do.
bool TakesFocus(const Control& c);

// Seen and usable: the control and every container up to its form are visible and enabled.
bool Reachable(const Control& c);

// The stops of Tab from `form`, in declaration order. A group of options is one stop: its chosen
// option, or its first one while none is chosen. `current`, when it takes the focus and can be
// reached, is kept in the walk even where it is not a stop, so that Tab goes on from it.
std::vector<Control*> TabStops(Control& form, const Control* current = nullptr);

// The stop after (or before) `current`, wrapping at the ends; the first (or last) stop when
// `current` is none of them. Null when nothing on the form takes the focus.
Control* NextTabStop(Control& form, const Control* current, bool backwards);

// The first stop inside a container, or null.
Control* FirstTabStop(Control& container);

// The letter a caption marks with "&", upper case; 0 when it marks none ("&&" is a plain "&").
char AccessKeyOf(const std::string& caption);

// The caption as it shows: each marking "&" gone, "&&" shown as one "&".
std::string ShownCaption(const std::string& caption);

// What Alt plus a letter does on a form.
struct AccessKeyHit {
  Control* focus = nullptr;  // the control that takes the focus, or null when nothing matched
  bool press = false;        // and whether it is pressed: a button clicked, a box ticked, an option chosen
};

// A single control with that letter is reached and pressed, a label handing the focus to the
// control declared after it. When several controls of the visible page carry the same letter,
// each press moves the focus to the next of them after `current`, pressing none: the user
// walks them and presses Space.
AccessKeyHit FindAccessKey(Control& form, char key, const Control* current);

// The option after (or before) `option` in its group, wrapping: the group is the options of one
// kind in one container that can be reached.
Control* NextOption(Control& option, bool backwards);

bool IsOption(const Control& c);

}  // namespace tamrix::keyboard
