#include "shell/Keyboard.h"

#include <algorithm>
#include <cctype>

namespace tamrix::keyboard {

bool IsOption(const Control& c) { return c.kind() == Kind::TamrixOpButton || c.kind() == Kind::OptionButton; }

bool TakesFocus(const Control& c) {
  switch (c.kind()) {
    case Kind::TamrixCmd:
    case Kind::TamrixCB:
    case Kind::TamrixOpButton:
    case Kind::OptionButton:
    case Kind::TextBox:
    case Kind::ListBox:
    case Kind::ComboBox:
    case Kind::DriveListBox:
    case Kind::DirListBox:
    case Kind::VScrollBar:
      return true;
    default:
      return false;
  }
}

bool Reachable(const Control& c) {
  for (const Control* at = &c; at && at->kind() != Kind::Form; at = at->Parent())
    if (!at->Visible() || !at->Enabled()) return false;
  return true;
}

namespace {

// Every control that takes the focus and can be reached, in declaration order.
std::vector<Control*> Focusable(Control& root) {
  std::vector<Control*> all;
  ForEachControl(root, [&all](Control& c) {
    if (TakesFocus(c) && Reachable(c)) all.push_back(&c);
  });
  return all;
}

// The stop of an option's group: its chosen option, or its first reachable one.
const Control* GroupStop(const Control& option) {
  const Control* first = nullptr;
  for (const Control* sibling : option.Parent()->Children()) {
    if (sibling->kind() != option.kind() || !Reachable(*sibling)) continue;
    if (static_cast<const OptionBase*>(sibling)->Selected()) return sibling;
    if (!first) first = sibling;
  }
  return first;
}

bool IsStop(const Control& c) { return !IsOption(c) || !c.Parent() || GroupStop(c) == &c; }

}  // namespace

std::vector<Control*> TabStops(Control& form, const Control* current) {
  std::vector<Control*> stops;
  for (Control* c : Focusable(form))
    if (c == current || IsStop(*c)) stops.push_back(c);
  return stops;
}

Control* NextTabStop(Control& form, const Control* current, bool backwards) {
  std::vector<Control*> stops = TabStops(form, current);
  if (stops.empty()) return nullptr;
  auto at = std::find(stops.begin(), stops.end(), current);
  if (at == stops.end()) return backwards ? stops.back() : stops.front();
  auto i = static_cast<std::size_t>(at - stops.begin());
  if (backwards) return stops[(i + stops.size() - 1) % stops.size()];
  return stops[(i + 1) % stops.size()];
}

Control* FirstTabStop(Control& container) {
  for (Control* c : Focusable(container))
    if (IsStop(*c)) return c;
  return nullptr;
}

char AccessKeyOf(const std::string& caption) {
  for (std::size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] == '&') {
      ++i;
      continue;
    }
    auto letter = static_cast<unsigned char>(caption[i + 1]);
    return letter < 0x80 ? static_cast<char>(std::toupper(letter)) : 0;
  }
  return 0;
}

std::string ShownCaption(const std::string& caption) {
  std::string shown;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    shown += caption[i];
  }
  return shown;
}

namespace {

bool CarriesAccessKey(const Control& c) {
  switch (c.kind()) {
    case Kind::TamrixCmd:
    case Kind::TamrixCB:
    case Kind::TamrixOpButton:
    case Kind::OptionButton:
    case Kind::Label:
      return true;
    default:
      return false;
  }
}

// A label hands the focus to the first control declared after it that can take it.
Control* AfterLabel(Control& form, const Control& label) {
  bool seen = false;
  Control* found = nullptr;
  ForEachControl(form, [&](Control& c) {
    if (found) return;
    if (&c == &label) seen = true;
    else if (seen && TakesFocus(c) && Reachable(c)) found = &c;
  });
  return found;
}

}  // namespace

AccessKeyHit FindAccessKey(Control& form, char key, const Control* current) {
  key = static_cast<char>(std::toupper(static_cast<unsigned char>(key)));
  if (key == 0) return {};
  std::vector<Control*> matches;
  ForEachControl(form, [&](Control& c) {
    if (CarriesAccessKey(c) && Reachable(c) && AccessKeyOf(c.Caption()) == key) matches.push_back(&c);
  });
  if (matches.empty()) return {};
  if (matches.size() == 1) {
    Control* c = matches.front();
    if (c->kind() == Kind::Label) return {AfterLabel(form, *c), false};
    return {c, true};
  }
  // Several: the next one after the focus, in declaration order, wrapping; a label among them
  // stands for the control it hands the focus to.
  std::vector<Control*> order;
  ForEachControl(form, [&](Control& c) { order.push_back(&c); });
  auto position = [&order](const Control* c) {
    return static_cast<std::size_t>(std::find(order.begin(), order.end(), c) - order.begin());
  };
  const std::size_t from = current ? position(current) : order.size();
  Control* first = nullptr;
  for (Control* m : matches) {
    Control* target = m->kind() == Kind::Label ? AfterLabel(form, *m) : m;
    if (!target || target == current) continue;
    if (position(m) > from) return {target, false};
    if (!first) first = target;  // past the last one, the walk starts again at the first
  }
  Control* next = first ? first : const_cast<Control*>(current);
  return {next, false};
}

Control* NextOption(Control& option, bool backwards) {
  if (!option.Parent()) return &option;
  std::vector<Control*> group;
  for (Control* sibling : option.Parent()->Children())
    if (sibling->kind() == option.kind() && Reachable(*sibling)) group.push_back(sibling);
  auto at = std::find(group.begin(), group.end(), &option);
  if (at == group.end()) return &option;
  auto i = static_cast<std::size_t>(at - group.begin());
  return group[backwards ? (i + group.size() - 1) % group.size() : (i + 1) % group.size()];
}

}  // namespace tamrix::keyboard
