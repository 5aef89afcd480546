#include "shell/Controls.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "platform/FileFaults.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

Color DefaultBackColor(Kind kind) {
  switch (kind) {
    case Kind::TamrixFrm:
    case Kind::TamrixOpButton:
    case Kind::OptionButton:
      return colors::Beige;
    case Kind::Form:
    case Kind::Frame:
    case Kind::Label:
    case Kind::PictureBox:
    case Kind::VScrollBar:
      return colors::ButtonFace;
    default:
      return colors::White;
  }
}

}  // namespace

Control::Control(Control* parent, Kind kind, Design design) : d_(std::move(design)), parent_(parent), kind_(kind) {
  if (d_.backColor == colors::Default) d_.backColor = DefaultBackColor(kind);
  if (d_.borderColor == colors::Default) d_.borderColor = colors::LightGrey;
  if (parent_) parent_->children_.push_back(this);
}

Form* Control::ParentForm() {
  Control* c = this;
  while (c->parent_) c = c->parent_;
  return c->kind_ == Kind::Form ? static_cast<Form*>(c) : nullptr;
}

void Control::Changed() {
  if (peer) peer->Refresh(*this);
}

void Control::SetCaption(const std::string& caption) {
  d_.caption = caption;
  Changed();
}

void Control::SetVisible(bool visible) {
  d_.visible = visible;
  Changed();
}

void Control::SetEnabled(bool enabled) {
  d_.enabled = enabled;
  Changed();
}

void Control::SetBackColor(Color c) {
  d_.backColor = c;
  Changed();
}

void Control::SetForeColor(Color c) {
  d_.foreColor = c;
  Changed();
}

void Control::Move(Twips rect) {
  d_.rect = rect;
  Changed();
}

void Control::Click() {
  if (OnClick) OnClick();
}

void Control::MouseDown(int button, int shift, int x, int y) {
  if (OnMouseDown) OnMouseDown(button, shift, x, y);
}

Color TamrixCmd::FaceColor() const {
  return hovered_ && d_.buttonType == 1 ? d_.officeOverColor : d_.backColor;
}

void TamrixCmd::SetHovered(bool hovered) {
  if (hovered_ == hovered) return;
  hovered_ = hovered;
  Changed();
}

void TamrixCB::SetValue(std::int32_t v) {
  value_ = v;
  Changed();
}

void TamrixCB::Click() {
  value_ = value_ == 1 ? 0 : 1;
  Changed();
  Control::Click();
}

void OptionBase::Select(bool selected) {
  if (!selected) {
    selected_ = false;
    Changed();
    return;
  }
  bool wasSelected = selected_;
  if (Parent()) {
    for (Control* sibling : Parent()->Children()) {
      if (sibling != this && sibling->kind() == kind()) {
        auto* other = static_cast<OptionBase*>(sibling);
        if (other->selected_) {
          other->selected_ = false;
          other->Changed();
        }
      }
    }
  }
  selected_ = true;
  Changed();
  if (!wasSelected) Control::Click();
}

void OptionBase::Click() {
  if (selected_) {
    Control::Click();  // a click on the chosen option still raises its event
    return;
  }
  Select(true);
}

void TamrixPBar::SetValue(double v) {
  value_ = v;
  Changed();
}

double TamrixPBar::Shown() const {
  if (std::isnan(value_) || value_ < 0) return 0;
  return value_ > 100 ? 100 : value_;
}

void Timer::SetInterval(int ms) {
  d_.interval = ms;
  Changed();
}

void Timer::Tick() {
  if (OnTimer) OnTimer();
}

void TextBox::SetText(const std::string& text) {
  if (text == Caption()) return;
  SetCaption(text);
  if (OnChange) OnChange();
}

void TextBox::KeyPress(int& keyAscii) {
  if (OnKeyPress) OnKeyPress(keyAscii);
}

void ListBase::AddItem(const std::string& item) {
  items_.push_back(item);
  Changed();
}

void ListBase::Clear() {
  items_.clear();
  listIndex_ = -1;
  Changed();
}

void ListBase::SetListIndex(int index) {
  if (index < -1 || index >= ListCount()) throw RuntimeError(380, "Invalid property value");
  if (index == listIndex_) return;
  listIndex_ = index;
  Changed();
  ChoiceChanged();
}

void Label::SetCaption(const std::string& caption) {
  bool changed = caption != Caption();
  Control::SetCaption(caption);
  if (changed && OnChange) OnChange();
}

namespace {

constexpr std::uint32_t kRemovable = 2;

std::string RootOf(char letter) { return std::string(1, letter) + ":\\"; }

}  // namespace

void DriveListBox::Refresh() {
  filled_ = true;
  quiet_ = true;
  Clear();
  std::string current = p_.GetCurrentDirectoryA();
  char currentLetter = current.empty() ? '\0' : static_cast<char>(std::toupper(static_cast<unsigned char>(current[0])));
  int currentIndex = -1;
  for (char letter : p_.LogicalDriveLetters()) {
    std::string entry = std::string(1, static_cast<char>(std::tolower(static_cast<unsigned char>(letter)))) + ":";
    std::string label, fileSystem;
    std::uint32_t serial = 0;
    if (p_.GetDriveTypeA(RootOf(letter)) != kRemovable && p_.GetVolumeInformationA(RootOf(letter), &label, &serial, &fileSystem) &&
        !label.empty())
      entry += " [" + label + "]";
    if (letter == currentLetter) currentIndex = ListCount();
    AddItem(entry);
  }
  if (currentIndex < 0 && ListCount() > 0) currentIndex = 0;
  SetListIndex(currentIndex);
  quiet_ = false;
}

std::string DriveListBox::Drive() {
  if (!filled_) Refresh();
  return Text();
}

void DriveListBox::SetDrive(const std::string& drive) {
  if (!filled_) Refresh();
  char letter = drive.empty() ? '\0' : static_cast<char>(std::tolower(static_cast<unsigned char>(drive[0])));
  for (int i = 0; i < ListCount(); ++i) {
    if (List(i)[0] == letter) {
      SetListIndex(i);
      return;
    }
  }
  throw RuntimeError(68, "Device unavailable");
}

void DriveListBox::ChoiceChanged() {
  if (!quiet_ && OnChange) OnChange();
}

DrvFact::DrvFact(Control* parent, Design d, Platform& platform)
    : Control(parent, Kind::DrvFact, std::move(d)), p_(platform) {}

std::string DrvFact::Root() const {
  for (char c : drive_)
    if (std::isalpha(static_cast<unsigned char>(c))) return RootOf(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
  return drive_;
}

void DrvFact::ReadVolume(std::string* name, std::uint32_t* serial, std::string* fileSystem) {
  if (!p_.GetVolumeInformationA(Root(), name, serial, fileSystem)) throw RuntimeError(68, "Device unavailable");
}

std::string DrvFact::volumename() {
  std::string name, fileSystem;
  std::uint32_t serial = 0;
  ReadVolume(&name, &serial, &fileSystem);
  return name;
}

std::string DrvFact::filesystem() {
  std::string name, fileSystem;
  std::uint32_t serial = 0;
  ReadVolume(&name, &serial, &fileSystem);
  return fileSystem;
}

std::string DrvFact::serialnumber() {
  std::string name, fileSystem;
  std::uint32_t serial = 0;
  ReadVolume(&name, &serial, &fileSystem);
  char buf[16];
  std::snprintf(buf, sizeof buf, "%04X-%04X", static_cast<unsigned>(serial >> 16), static_cast<unsigned>(serial & 0xFFFF));
  return buf;
}

namespace {

double Megabytes(std::uint64_t bytes) { return std::round(static_cast<double>(bytes) / 1048576.0 * 1000.0) / 1000.0; }

}  // namespace

double DrvFact::totalsize() {
  std::uint64_t caller = 0, total = 0, free = 0;
  return p_.GetDiskFreeSpaceExA(Root(), &caller, &total, &free) ? Megabytes(total) : 0.0;
}

// The free space is the caller's share, what a user can still write.
double DrvFact::freesize() {
  std::uint64_t caller = 0, total = 0, free = 0;
  return p_.GetDiskFreeSpaceExA(Root(), &caller, &total, &free) ? Megabytes(caller) : 0.0;
}

std::int32_t DrvFact::drivetype() { return static_cast<std::int32_t>(p_.GetDriveTypeA(Root())); }

void VScrollBar::SetMin(int v) {
  min_ = v;
  if (value_ < min_) SetValue(min_);
  Changed();
}

void VScrollBar::SetMax(int v) {
  max_ = v;
  if (value_ > max_) SetValue(max_);
  Changed();
}

void VScrollBar::SetValue(int v) {
  v = std::clamp(v, std::min(min_, max_), std::max(min_, max_));
  if (v == value_) return;
  value_ = v;
  Changed();
  if (OnChange) OnChange();
}

namespace {

// The form's question before it goes: while the handler runs the form knows why it is asked, and
// a fault in the handler leaves it able to be asked again. True when the handler cancelled.
bool RaiseQuery(const std::function<void(bool& cancel)>& query, bool& querying, int& modeNow, int mode) {
  querying = true;
  modeNow = mode;
  bool cancel = false;
  try {
    query(cancel);
  } catch (...) {
    querying = false;
    throw;
  }
  querying = false;
  return cancel;
}

}  // namespace

void Form::Unload(int mode) {
  if (OnQueryUnload && !querying_ && loaded_) {
    bool cancel = RaiseQuery(OnQueryUnload, querying_, unloadMode_, mode);
    if (cancel || !loaded_) return;  // kept, or already unloaded by the handler itself
  }
  loaded_ = false;
  Changed();
}

bool Form::QueryEndSession() {
  if (!OnQueryUnload || !loaded_) return true;
  // The form's own question already stands: the session waits for the user's answer to it.
  if (querying_) return false;
  return !RaiseQuery(OnQueryUnload, querying_, unloadMode_, kUnloadByEndOfSession);
}

void Form::Activate() {
  if (OnActivate) OnActivate();
}

void Form::SetWindowState(int state) {
  windowState_ = state;
  Changed();
}

void Control::SetToolTipText(const std::string& tip) {
  d_.tip = tip;
  Changed();
}

void Form::SetMousePointer(int pointer) {
  mousePointer_ = pointer;
  Changed();
}

void Form::Load() {
  loaded_ = true;
  if (OnLoad) OnLoad();
}

void ForEachControl(Control& root, const std::function<void(Control&)>& visit) {
  visit(root);
  for (Control* child : root.Children()) ForEachControl(*child, visit);
}

Control* FindControl(Control& root, const std::string& name) {
  Control* found = nullptr;
  ForEachControl(root, [&](Control& c) {
    if (!found && c.Name() == name) found = &c;
  });
  return found;
}

}  // namespace tamrix

namespace tamrix {

void Image::SetPicture(Platform::PictureHandle picture) {
  picture_ = picture;
  Changed();
}

void PictureBox::SetPicture(Platform::PictureHandle picture) {
  picture_ = picture;
  Changed();
}

void PictureBox::SetBorderStyle(int style) {
  borderStyle_ = style;
  Changed();
}

void DirListBox::SetPath(const std::string& path) {
  // A folder keeps no separator at its end, a drive's root keeps its own.
  std::string folder = path;
  while (folder.size() > 3 && folder.back() == '\\') folder.pop_back();
  if (folder.size() == 2 && folder[1] == ':') folder += '\\';
  if (!p_.FolderExists(folder)) throw rt::PathNotFound();
  const bool changed = folder != path_;
  path_ = folder;
  Clear();
  paths_.clear();
  // From the root down to the folder itself, one step further in at each level.
  std::string indent;
  std::size_t start = 0;
  while (start < folder.size()) {
    std::size_t slash = folder.find('\\', start);
    std::size_t end = slash == std::string::npos ? folder.size() : slash + 1;
    std::string name = folder.substr(start, end - start);
    if (start > 0 && !name.empty() && name.back() == '\\') name.pop_back();
    paths_.push_back(start == 0 ? folder.substr(0, end) : folder.substr(0, start + name.size()));
    AddItem(indent + name);
    indent += "  ";
    start = end;
  }
  const std::string base = folder.back() == '\\' ? folder : folder + "\\";
  for (const auto& sub : p_.ListFolders(folder)) {
    paths_.push_back(base + sub);
    AddItem(indent + sub);
  }
  if (changed && OnChange) OnChange();
}

void DirListBox::OpenItem(int index) { SetPath(ItemPath(index)); }

}  // namespace tamrix

namespace tamrix {

void CommonDialog::ShowOpen(Platform& p, std::uint64_t owner) {
  Platform::OpenFileRequest request{DialogTitle, Filter, static_cast<std::uint32_t>(Flags), FileName};
  if (p.GetOpenFileNameA(owner, &request)) {
    FileName = request.fileName;
  } else if (CancelError) {
    throw rt::DialogCancelled();
  }
}

}  // namespace tamrix
