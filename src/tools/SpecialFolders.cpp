#include "tools/SpecialFolders.h"

#include <algorithm>

namespace tamrix {

namespace {

// Two columns; each row is a label with its box right under it. Twips, relative to TamrixFrm1.
constexpr int kColumnLeft[2] = {105, 3225};
constexpr int kColumnWidth[2] = {3060, 2895};
constexpr int kFirstRow = 360, kRowPitch = 510, kLabelH = 210, kBoxH = 270;

int RowTop(int row) { return kFirstRow + (row - 1) * kRowPitch; }

constexpr std::uint32_t kDirectoryBuffer = 128;

}  // namespace

// clang-format off
const std::array<SpecialFoldersPage::Row, 19> SpecialFoldersPage::kRows = {{
    // box label caption                              column row source
    {1,  1,  "Bureau :",                              0, 1,  0},   // CSIDL_DESKTOP
    {2,  0,  "Démarrer\\Programmes :",                0, 2,  2},   // CSIDL_PROGRAMS
    {3,  4,  "Mes Documents :",                       0, 3,  5},   // CSIDL_PERSONAL
    {4,  6,  "Favoris :",                             0, 4,  6},   // CSIDL_FAVORITES
    {5,  8,  "Démarrer\\Programmes\\Démarrer :",      0, 5,  7},   // CSIDL_STARTUP
    {6,  10, "Recents :",                             0, 6,  8},   // CSIDL_RECENT
    {7,  12, "SendTo :",                              0, 7,  9},   // CSIDL_SENDTO
    {8,  14, "Menu Démarrer :",                       0, 8,  11},  // CSIDL_STARTMENU
    {19, 17, "Windows :",                             0, 9,  kWindowsDirectory},
    {20, 19, "Windows\\System",                       0, 10, kSystemDirectory},
    {11, 2,  "Fonts :",                               1, 1,  20},  // CSIDL_FONTS
    {12, 3,  "ShellNew :",                            1, 2,  21},  // CSIDL_TEMPLATES
    {13, 5,  "All users\\Bureau :",                   1, 3,  25},  // CSIDL_COMMON_DESKTOPDIRECTORY
    {14, 7,  "Application Data :",                    1, 4,  26},  // CSIDL_APPDATA
    {15, 9,  "PrintHood :",                           1, 5,  27},  // CSIDL_PRINTHOOD
    {16, 11, "Cache Internet :",                      1, 6,  32},  // CSIDL_INTERNET_CACHE
    {17, 13, "Cookies :",                             1, 7,  33},  // CSIDL_COOKIES
    {18, 15, "Historique :",                          1, 8,  34},  // CSIDL_HISTORY
    {10, 18, "Voisinnage Réseau :",                   1, 9,  19},  // CSIDL_NETHOOD
}};
// clang-format on

SpecialFoldersPage::SpecialFoldersPage(Form& form, Platform& platform, const Form& mainWindow)
    : TamrixFrm1(&form, {.name = "TamrixFrm1", .caption = "Dossiers spéciaux de windows :",
                         .rect = {60, 60, 6165, 5610}, .backColor = colors::ButtonFace}),
      TamrixCmd1(&TamrixFrm1, {.name = "TamrixCmd1", .caption = "&Quitter",
                               .rect = {kColumnLeft[1] + kColumnWidth[1] - 1215, RowTop(10) + 60, 1215, 375},
                               .font = {"Arial", 8.25}, .picture = "quit", .centerPicture = false}),
      mainWindow_(mainWindow),
      p_(platform) {
  for (const Row& r : kRows) {
    const int left = kColumnLeft[r.column], top = RowTop(r.row);
    label2_[static_cast<std::size_t>(r.label)] = std::make_unique<Label>(
        &TamrixFrm1, Design{.name = "Label2(" + std::to_string(r.label) + ")", .caption = r.caption,
                            .rect = {left, top, kColumnWidth[r.column], kLabelH}, .backColor = colors::ButtonFace,
                            .wordWrap = false});
    chDos_[static_cast<std::size_t>(r.box)] = std::make_unique<TextBox>(
        &TamrixFrm1, Design{.name = "ChDos(" + std::to_string(r.box) + ")",
                            .rect = {left, top + kLabelH, kColumnWidth[r.column], kBoxH}});
  }
}

std::string SpecialFoldersPage::DossierSpecial(std::int32_t csidl) {
  std::uint64_t itemList = 0;
  if (p_.SHGetSpecialFolderLocation(mainWindow_.hWnd, csidl, &itemList) != 0) return "";
  // The list isn't given back: the program never frees it.
  std::string path;
  if (!p_.SHGetPathFromIDListA(itemList, &path)) return "";
  return path.substr(0, path.find('\0'));
}

void SpecialFoldersPage::Fill() {
  std::vector<Row> byBox(kRows.begin(), kRows.end());
  std::sort(byBox.begin(), byBox.end(), [](const Row& a, const Row& b) { return a.box < b.box; });
  for (const Row& r : byBox) {
    std::string text;
    if (r.source == kWindowsDirectory || r.source == kSystemDirectory) {
      // A path longer than the buffer gives the size it needs; the box takes what the buffer holds.
      std::string buffer;
      std::uint32_t n = r.source == kWindowsDirectory ? p_.GetWindowsDirectoryA(&buffer, kDirectoryBuffer)
                                                      : p_.GetSystemDirectoryA(&buffer, kDirectoryBuffer);
      text = buffer.substr(0, n);
    } else {
      text = DossierSpecial(r.source);
    }
    ChDos(r.box).SetText(text);
  }
}

}  // namespace tamrix
