// The control set as plain objects. The skin's five classes (TamrixCmd, TamrixCB, TamrixPBar,
// TamrixFrm, TamrixOpButton) honour what the program asks of the controls of "Tamrix Veneer.ocx",
// and DrvFact what it asks of "DrvFacts.ocx"; their painting is our own. A control holds its design properties and its run-time
// state, and the handlers of its events. When the program runs for real each control has a peer,
// the window that shell/win32 made for it and keeps in step; in the tests a control has no peer,
// and a test clicks it and reads it directly.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix {

using Color = std::uint32_t;  // blue-green-red, as the platform stores colours

namespace colors {
constexpr Color White = 0xFFFFFF;
constexpr Color Black = 0x000000;
constexpr Color Beige = 0xCEE7EF;       // the skin's panels
constexpr Color ButtonFace = 0x8000000F;  // the system's button face
constexpr Color HoverBlue = 0xFF8080;   // flat buttons under the pointer
constexpr Color LightGrey = 0xE0E0E0;
constexpr Color Green = 0x00C000;
constexpr Color Orange = 0x0080FF;
constexpr Color Default = 0xFFFFFFFF;  // "the kind's own default" in a design line
}  // namespace colors

// A rectangle in twips, relative to the container.
struct Twips {
  int left = 0, top = 0, width = 0, height = 0;
};

struct FontSpec {
  std::string name = "Verdana";
  double size = 8.25;
  bool bold = false;
};

enum class Kind {
  Form, TamrixFrm, Frame, Label, Image, Shape, TamrixCmd, TamrixCB, TamrixOpButton, OptionButton, TamrixPBar, Timer,
  TextBox, ListBox, ComboBox, DriveListBox, VScrollBar, PictureBox, DrvFact, DirListBox
};

// The design line of one control: what the window's design stores for it.
struct Design {
  std::string name;
  std::string caption;
  Twips rect;
  FontSpec font = {};
  Color backColor = colors::Default;
  Color foreColor = colors::Black;
  std::string tip;
  std::string picture;  // the name of a picture among the program's resources
  bool visible = true;
  bool enabled = true;
  int backStyle = 1;            // 0: transparent
  int buttonType = 0;           // TamrixCmd: 1 is the flat style
  Color officeOverColor = colors::HoverBlue;
  Color maskColor = colors::White;
  bool centerPicture = true;
  bool centerText = true;
  Color borderColor = colors::Default;
  Color barColor = colors::Green;
  bool showCaption = true;
  int progressType = 0;
  int direction = 0;
  int interval = 0;  // timers
  int alignment = 0;  // labels: 0 left, 1 right, 2 centre
  bool wordWrap = true;
  bool multiLine = false;  // text boxes
  bool locked = false;     // text boxes: read only
  int smallChange = 1;     // scroll bars
  int largeChange = 1;
  int mousePointer = 0;    // 0 the default arrow; 99 the control's own pointer (a pointing hand)
  int borderStyle = 0;     // forms: 0 no frame (the skin draws its own), 3 a fixed dialog frame
};

class Control;

// Whatever keeps a control's outside in step with it: its window, or a test's virtual clock.
class Peer {
 public:
  virtual ~Peer() = default;
  virtual void Refresh(Control& control) = 0;
};

class Form;

class Control {
 public:
  Control(Control* parent, Kind kind, Design design);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Kind kind() const { return kind_; }
  const std::string& Name() const { return d_.name; }
  Control* Parent() const { return parent_; }
  const std::vector<Control*>& Children() const { return children_; }
  Form* ParentForm();
  const Design& design() const { return d_; }

  const std::string& Caption() const { return d_.caption; }
  void SetCaption(const std::string& caption);
  bool Visible() const { return d_.visible; }
  void SetVisible(bool visible);
  bool Enabled() const { return d_.enabled; }
  void SetEnabled(bool enabled);
  Color BackColor() const { return d_.backColor; }
  void SetBackColor(Color c);
  Color ForeColor() const { return d_.foreColor; }
  void SetForeColor(Color c);
  const Twips& Rect() const { return d_.rect; }
  const std::string& ToolTipText() const { return d_.tip; }
  void SetToolTipText(const std::string& tip);
  void Move(Twips rect);

  // The user's click, or a test's: the control's own reaction first, then the handler.
  virtual void Click();

  std::function<void()> OnClick;
  // button: 1 left, 2 right, 4 middle; x and y in twips inside the control
  std::function<void(int button, int shift, int x, int y)> OnMouseDown;
  void MouseDown(int button, int shift, int x, int y);

  Peer* peer = nullptr;
  std::string Tag;  // free text that the program keeps on a control

 protected:
  void Changed();
  Design d_;

 private:
  Control* parent_;
  Kind kind_;
  std::vector<Control*> children_;
};

class TamrixFrm : public Control {
 public:
  TamrixFrm(Control* parent, Design d) : Control(parent, Kind::TamrixFrm, std::move(d)) {}
};

class Frame : public Control {
 public:
  Frame(Control* parent, Design d) : Control(parent, Kind::Frame, std::move(d)) {}
};

class Label : public Control {
 public:
  Label(Control* parent, Design d) : Control(parent, Kind::Label, std::move(d)) {}
  // Sets the caption; a caption that differs from the one before raises the change event.
  void SetCaption(const std::string& caption);
  std::function<void()> OnChange;
};

class Image : public Control {
 public:
  Image(Control* parent, Design d) : Control(parent, Kind::Image, std::move(d)) {}
  // A picture loaded at run time, which takes the place of the design's; 0 is none. The page
  // that sets it owns it.
  Platform::PictureHandle Picture() const { return picture_; }
  void SetPicture(Platform::PictureHandle picture);

 private:
  Platform::PictureHandle picture_ = 0;
};

class Shape : public Control {
 public:
  Shape(Control* parent, Design d) : Control(parent, Kind::Shape, std::move(d)) {}
};

class TamrixCmd : public Control {
 public:
  TamrixCmd(Control* parent, Design d) : Control(parent, Kind::TamrixCmd, std::move(d)) {}
  // The face colour of the moment: the hover colour of a flat button under the pointer.
  Color FaceColor() const;
  bool Hovered() const { return hovered_; }
  void SetHovered(bool hovered);

 private:
  bool hovered_ = false;
};

class TamrixCB : public Control {
 public:
  TamrixCB(Control* parent, Design d) : Control(parent, Kind::TamrixCB, std::move(d)) {}
  std::int32_t Value() const { return value_; }
  // From code: no click event; only the user's click raises one.
  void SetValue(std::int32_t v);
  void Click() override;  // the user's click toggles, then the handler runs

 private:
  std::int32_t value_ = 0;
};

// What the library's option button and the toolkit's plain one share: options of one kind in one
// container exclude one another, and selecting one from code raises its click event when it
// wasn't selected yet.
class OptionBase : public Control {
 public:
  bool Selected() const { return selected_; }
  void Select(bool selected);
  void Click() override;

 protected:
  OptionBase(Control* parent, Kind kind, Design d, bool selected)
      : Control(parent, kind, std::move(d)), selected_(selected) {}

 private:
  bool selected_;
};

// The library's option button: its value reads 1 when chosen.
class TamrixOpButton : public OptionBase {
 public:
  TamrixOpButton(Control* parent, Design d, std::int32_t value = 0)
      : OptionBase(parent, Kind::TamrixOpButton, std::move(d), value != 0) {}
  std::int32_t Value() const { return Selected() ? 1 : 0; }
  void SetValue(std::int32_t v) { Select(v != 0); }
};

// The toolkit's plain option button: its value reads true when chosen.
class OptionButton : public OptionBase {
 public:
  OptionButton(Control* parent, Design d, bool value = false)
      : OptionBase(parent, Kind::OptionButton, std::move(d), value) {}
  bool Value() const { return Selected(); }
  void SetValue(bool v) { Select(v); }
};

class TamrixPBar : public Control {
 public:
  TamrixPBar(Control* parent, Design d) : Control(parent, Kind::TamrixPBar, std::move(d)) {}
  // The value as it was given, fraction, overflow and all: pages read it back and add to it.
  double Value() const { return value_; }
  void SetValue(double v);
  // What the bar paints: the value kept within 0..100, NaN as 0.
  double Shown() const;

 private:
  double value_ = 0;
};

class Timer : public Control {
 public:
  // design.enabled says whether the timer runs from the start.
  Timer(Control* parent, Design d) : Control(parent, Kind::Timer, std::move(d)) {}
  int Interval() const { return d_.interval; }
  void SetInterval(int ms);
  std::function<void()> OnTimer;
  void Tick();
};

// The toolkit's text box. Its text may hold a NUL; the window shows the text up to it.
class TextBox : public Control {
 public:
  TextBox(Control* parent, Design d) : Control(parent, Kind::TextBox, std::move(d)) {}
  const std::string& Text() const { return Caption(); }
  void SetText(const std::string& text);  // raises the change event when the text changes
  std::function<void()> OnChange;
  // A typed character, before the box takes it: a handler that sets the code to 0 swallows it.
  std::function<void(int& keyAscii)> OnKeyPress;
  void KeyPress(int& keyAscii);
};

// What the list box and the drop-down list share: items and the chosen index. Setting the index
// to a new value raises the click event, as a click on an item does; clearing the list doesn't.
class ListBase : public Control {
 public:
  void AddItem(const std::string& item);
  void Clear();
  int ListCount() const { return static_cast<int>(items_.size()); }
  const std::string& List(int index) const { return items_.at(static_cast<std::size_t>(index)); }
  const std::vector<std::string>& Items() const { return items_; }
  int ListIndex() const { return listIndex_; }  // -1: nothing chosen
  void SetListIndex(int index);
  // The text of the chosen item, or "" with nothing chosen.
  std::string Text() const { return listIndex_ >= 0 ? items_[static_cast<std::size_t>(listIndex_)] : std::string(); }

 protected:
  ListBase(Control* parent, Kind kind, Design d) : Control(parent, kind, std::move(d)) {}
  // A new choice: the list and the drop-down list raise their click event.
  virtual void ChoiceChanged() { Control::Click(); }

 private:
  std::vector<std::string> items_;
  int listIndex_ = -1;
};

class ListBox : public ListBase {
 public:
  ListBox(Control* parent, Design d) : ListBase(parent, Kind::ListBox, std::move(d)) {}
};

// The drop-down list (a combo box whose text can't be typed in).
class ComboBox : public ListBase {
 public:
  ComboBox(Control* parent, Design d) : ListBase(parent, Kind::ComboBox, std::move(d)) {}
};

// The drive list: a drop-down list of the machine's drives, as the classic drive list box shows
// them: the small letter, a colon, and the volume's label in brackets where there is one
// ("c: [SYSTEME]"). A removable drive's label isn't read, so that a floppy isn't spun up. The
// list is read from the machine when its window is made, or at the first question asked of it,
// and starts on the current drive. Drive is the chosen entry's text; a new choice raises the
// change event, the same one chosen again raises nothing.
class DriveListBox : public ListBase {
 public:
  DriveListBox(Control* parent, Design d, Platform& platform)
      : ListBase(parent, Kind::DriveListBox, std::move(d)), p_(platform) {}
  // Reads the drives again and chooses the current drive, without a change event.
  void Refresh();
  bool Filled() const { return filled_; }
  std::string Drive();
  // Chooses the entry of the drive that the text names by its first letter; a drive that isn't
  // in the list is run-time error 68.
  void SetDrive(const std::string& drive);
  std::function<void()> OnChange;

 protected:
  void ChoiceChanged() override;

 private:
  Platform& p_;
  bool filled_ = false;
  bool quiet_ = false;
};

// The drive facts (DrvFacts.DrvFact, of "DrvFacts.ocx"), invisible at run time: given a drive, it answers
// for it, reading the machine afresh on each question. It takes the drive's letter from the
// text it is given, so the drive list's "c: [SYSTEME]" will do. Sizes are in megabytes of
// 1024 by 1024 bytes, to the thousandth, which is the scale of the design values 5807.464 and
// 1249.208. A drive whose volume can't be read (a CD drive without its disc) has sizes of 0;
// its texts can't be read: run-time error 68.
class DrvFact : public Control {
 public:
  DrvFact(Control* parent, Design d, Platform& platform);
  const std::string& drive() const { return drive_; }
  void setDrive(const std::string& drive) { drive_ = drive; }
  std::string volumename();
  std::string filesystem();
  std::string serialnumber();  // as the system writes it: "1A2B-3C4D"
  double totalsize();
  double freesize();
  std::int32_t drivetype();

 private:
  std::string Root() const;
  void ReadVolume(std::string* name, std::uint32_t* serial, std::string* fileSystem);
  Platform& p_;
  std::string drive_;
};

class VScrollBar : public Control {
 public:
  VScrollBar(Control* parent, Design d) : Control(parent, Kind::VScrollBar, std::move(d)) {}
  int Min() const { return min_; }
  int Max() const { return max_; }
  int Value() const { return value_; }
  int SmallChange() const { return d_.smallChange; }
  int LargeChange() const { return d_.largeChange; }
  void SetMin(int v);
  void SetMax(int v);
  // Kept within Min..Max; a change raises the change event.
  void SetValue(int v);
  std::function<void()> OnChange;

 private:
  int min_ = 0, max_ = 32767, value_ = 0;
};

// A picture box: a container that shows a picture.
class PictureBox : public Control {
 public:
  PictureBox(Control* parent, Design d) : Control(parent, Kind::PictureBox, std::move(d)) {}
  // As the image's: a run-time picture owned by the page that sets it.
  Platform::PictureHandle Picture() const { return picture_; }
  void SetPicture(Platform::PictureHandle picture);
  int BorderStyle() const { return borderStyle_; }  // 0 none, 1 a single line
  void SetBorderStyle(int style);

 private:
  Platform::PictureHandle picture_ = 0;
  int borderStyle_ = 0;
};

// The folder list: the folders from the drive's root down to Path, each one step further in,
// then the folders inside Path. Opening an entry (the user's double click) makes it the path.
class DirListBox : public ListBase {
 public:
  DirListBox(Control* parent, Design d, Platform& platform)
      : ListBase(parent, Kind::DirListBox, std::move(d)), p_(platform) {}
  const std::string& Path() const { return path_; }
  // Reads the folder afresh; a folder that isn't there is run-time error 76, the list unchanged.
  void SetPath(const std::string& path);
  void OpenItem(int index);
  // The full path of an entry.
  const std::string& ItemPath(int index) const { return paths_.at(static_cast<std::size_t>(index)); }
  std::function<void()> OnChange;

 private:
  Platform& p_;
  std::string path_;
  std::vector<std::string> paths_;
};

// The common dialog of files, which has no window of its own until it is shown: its open mode.
class CommonDialog {
 public:
  bool CancelError = false;
  std::string DialogTitle;
  std::string FileName;
  std::string Filter;
  std::int32_t Flags = 0;
  // On Open, FileName is the chosen file. On Cancel it stays as it was, and with CancelError
  // the Cancel is run-time error 32755.
  void ShowOpen(Platform& p, std::uint64_t owner);
};

// A top-level window. Its peer creates the window before Load runs and shows it after.
class Form : public Control {
 public:
  Form(Design d) : Control(nullptr, Kind::Form, std::move(d)) {}

  std::uint64_t hWnd = 0;  // set by the peer once the window exists

  // The unload modes a query is told: the window's close box, the program's code, the system's
  // end of session (log-off, shutdown).
  static constexpr int kUnloadByCloseBox = 0;
  static constexpr int kUnloadByCode = 1;
  static constexpr int kUnloadByEndOfSession = 2;

  bool Loaded() const { return loaded_; }
  void Unload(int mode = kUnloadByCode);
  // The system asks whether the session may end: the form's query runs with the system's mode,
  // and its Cancel refuses. Nothing is unloaded here; the system ends the process afterwards.
  bool QueryEndSession();
  int QueryUnloadMode() const { return unloadMode_; }  // during a query
  int WindowState() const { return windowState_; }  // 0 normal, 1 minimised
  void SetWindowState(int state);
  int MousePointer() const { return mousePointer_; }  // 0 default, 11 hourglass
  void SetMousePointer(int pointer);

  std::function<void()> OnLoad;
  void Load();

  // Every way out of a loaded form asks here first; a handler that sets cancel keeps it loaded.
  // An unload from within this handler goes through without asking again.
  std::function<void(bool& cancel)> OnQueryUnload;
  // The form became the active one of the program's windows (not on a return from another program).
  std::function<void()> OnActivate;
  void Activate();

 private:
  bool querying_ = false;
  int unloadMode_ = kUnloadByCode;
  bool loaded_ = false;
  int windowState_ = 0;
  int mousePointer_ = 0;
};

// Depth-first walk of a control tree, the container before its children.
void ForEachControl(Control& root, const std::function<void(Control&)>& visit);
Control* FindControl(Control& root, const std::string& name);

}  // namespace tamrix
