// Form1: the main window. A frameless, rounded, draggable window whose six pages share one area,
// one of them shown at a time; Test Lab holds six sub-pages of its own.
#pragma once

#include <initializer_list>
#include <utility>

#include "optimisers/InternetPage.h"
#include "optimisers/Protection.h"
#include "optimisers/WindowsPage.h"
#include "forms/Form2.h"
#include "platform/Platform.h"
#include "shell/AboutPage.h"
#include "shell/Controls.h"
#include "shell/HomePage.h"
#include "sysinfo/BiosPage.h"
#include "sysinfo/CpuPage.h"
#include "sysinfo/DrivesPage.h"
#include "sysinfo/InfoPcPage.h"
#include "sysinfo/InfoWindowsPage.h"
#include "sysinfo/CMixer.h"
#include "sysinfo/SoundPage.h"
#include "tools/VirtualDrives.h"

namespace tamrix {

class Form1 : public Form {
 public:
  // The host gives the tools window its windows; without one it stays windowless.
  explicit Form1(Platform& platform, FormHost* host = nullptr);

 private:
  Platform& p_;

 public:
  BiosCharacteristicsTable BiosCharacteristics;  // filled by the load, read by the BIOS page

  // Controls, front to back.
  Image Image7;
  Image Minimised;
  Image Closed;

  Timer Timer1;  // the memory monitor, all run long
  Timer Timer2;  // the clock, all run long
  Timer Timer3;  // the Internet optimiser's show
  Timer Timer4;  // the Windows optimiser's show

  HomePage homePage;
  WindowsPage windowsPage;
  InternetPage internetPage;
  TamrixFrm Frame3;  // Test Lab
  BiosPage biosPage;
  InfoWindowsPage infoWindows;
  InfoPcPage infoPc;
  DrivesPage drivesPage;
  CpuPage cpuPage;
  CMixer mixer;  // made with the window, and its mixers kept open as long as the program runs
  SoundPage soundPage;
  VirtualDrives virtualDrives;
  TamrixCmd TamrixCmd3, TamrixCmd11, TamrixCmd2, command2, TamrixCmd6, TamrixCmd4;  // the sub-page strip
  AboutPage aboutPage;
  ProtectionPage protection;

  // The pages and sub-pages by their design names.
  TamrixFrm &Frame4, &Frame1, &Frame2, &Propos, &frmprot;
  TamrixFrm &fwindows, &pc, &disque, &FrmBios, &FrmCpu, &Frmson;

  TamrixCmd command3;
  TamrixCmd win;
  TamrixCmd internet;
  TamrixCmd sys;
  TamrixCmd TamrixCmd7;
  TamrixCmd apro;
  TamrixCmd TamrixCmd1;

  Shape Shape1;
  Shape Shape2;

  Form2 form2;  // the tools window, for the life of the program

 private:
  void FormLoad();
  void DragWindow(int button);
  void WireNavigation();
  void WireTools();
  // Sets the visibility of frames in the order given: the order is part of the page switch.
  static void ShowPages(std::initializer_list<std::pair<Control*, bool>> rows);
};

}  // namespace tamrix
