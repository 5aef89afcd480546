// The special folders page (TamrixFrm1): the real paths of seventeen shell folders, the Windows
// directory and the system directory, each box under its label. It only shows.
#pragma once

#include <array>
#include <memory>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class SpecialFoldersPage {
 public:
  // What fills a box: a shell folder's number, or one of the two directories.
  static constexpr int kWindowsDirectory = -1;
  static constexpr int kSystemDirectory = -2;

  // One box and the label above it. The indexes of the two arrays don't agree: the pairing is by
  // place alone.
  struct Row {
    int box;          // index in ChDos
    int label;        // index in Label2
    const char* caption;
    int column;       // 0 left, 1 right
    int row;          // from 1, top to bottom
    int source;       // a CSIDL number, or kWindowsDirectory / kSystemDirectory
  };
  static const std::array<Row, 19> kRows;

  // The shell is asked on behalf of the main window, whose handle it is given.
  SpecialFoldersPage(Form& form, Platform& platform, const Form& mainWindow);

  // The path of a shell folder, or "" when the system has none.
  std::string DossierSpecial(std::int32_t csidl);
  // Fills every box, in the order of their indexes.
  void Fill();

  TamrixFrm TamrixFrm1;
  TamrixCmd TamrixCmd1;  // "&Quitter"
  // The control arrays; ChDos(0), ChDos(9) and Label2(16) don't exist.
  TextBox& ChDos(int index) { return *chDos_.at(static_cast<std::size_t>(index)); }
  Label& Label2(int index) { return *label2_.at(static_cast<std::size_t>(index)); }
  bool HasChDos(int index) const { return index >= 0 && index < 21 && chDos_[static_cast<std::size_t>(index)]; }
  bool HasLabel2(int index) const { return index >= 0 && index < 20 && label2_[static_cast<std::size_t>(index)]; }

 private:
  const Form& mainWindow_;
  Platform& p_;
  std::array<std::unique_ptr<TextBox>, 21> chDos_;
  std::array<std::unique_ptr<Label>, 20> label2_;
};

}  // namespace tamrix
