// The Windows optimiser: one click writes a fixed catalogue of 21 registry values and 45
// system.ini keys, all at once, and then a timer plays a seventeen-second show of stages that do
// no work at all. Nothing is read first, nothing is checked, nothing is saved for undoing; the
// same rows go out on every system, and a row whose key is missing is lost in silence.
#pragma once

#include <array>
#include <functional>
#include <string_view>

#include "optimisers/Catalogue.h"
#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix::WindowsOptimiser {

using catalogue::ProfileRow;
using catalogue::RegRow;

inline constexpr HKey HKCU = hive::CurrentUser;
inline constexpr HKey HKLM = hive::LocalMachine;
inline constexpr std::uint32_t Sz = regtype::Sz;
inline constexpr std::uint32_t Dword = regtype::Dword;

// In writing order. The paths are the system's own to the letter: the same key stands with
// different capitals, and "Memory Managment", "SessionManager", "UpDateMode" and the lower-case
// "control" of the CDFS key are misspelt on purpose, so those rows land only where exactly
// such a key exists. SmoothScroll is a number beside MinAnimate, a text, in the same key.
inline constexpr std::array<RegRow, 21> kRegistryRows = {{
    {HKCU, "Control Panel\\Desktop", "WaitToKillAppTimeout", Sz, "1000"},
    {HKLM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", Sz, "1000"},
    {HKCU, "Control Panel\\Desktop", "AutoEndTasks", Sz, "1"},
    {HKCU, "Control Panel\\Desktop", "HungAppTimeOut", Sz, "1000"},
    {HKLM, "SYSTEM\\CurrentControlSet\\Control", "HungAppTimeOut", Sz, "1000"},
    {HKCU, "Control Panel\\Desktop", "MenuShowDelay", Sz, "0"},
    {HKCU, "Control Panel\\Desktop", "WaitToKillServiceTimeOut", Sz, "1"},
    {HKLM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillServiceTimeOut", Sz, "1"},
    {HKLM, "SYSTEM\\CurrentControlSet\\Control\\Update", "UpDateMode", Dword, 7},
    {HKLM, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer", "AlwaysUnloadDll", Dword, 1},
    {HKCU, "Control Panel\\Desktop", "MinAnimate", Sz, "0"},
    {HKCU, "Control Panel\\Desktop", "SmoothScroll", Dword, 0},
    {HKCU, "Control Panel\\Desktop\\WindowMetrics", "Shell Icon BPP", Sz, "16"},
    {HKLM, "System\\CurrentControlSet\\Control\\SessionManager\\Memory Managment", "SecondLevelDataCache", Dword, 512},
    {HKLM, "System\\CurrentControlSet\\Control\\FileSystem", "ContigFileAllocSize", Dword, 512},
    {HKLM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MaxApps", Dword, 120},
    {HKLM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "CacheSize", Dword, 2476},
    {HKLM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "Prefetch", Dword, 1792},
    {HKLM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MaxNoUseDays", Dword, 90},
    {HKLM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MinLogSize", Dword, 500},
    {HKLM, "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction", "Enable", Sz, "Y"},
}};

// system.ini, written before the show's timer is switched on. WindowUpdateTime and VGAMonoText
// stand twice with the same values, and both writes are made.
inline constexpr std::array<ProfileRow, 26> kProfileRowsBeforeTimer = {{
    {"386Enh", "32BitDiskAccess", "on"},
    {"386Enh", "32BitFileAccess", "on"},
    {"386Enh", "WindowUpdateTime", "200"},
    {"386Enh", "VGAMonoText", "off"},
    {"386Enh", "COM1Buffer", "2048"},
    {"386Enh", "Com1Irq4Buffer", "2048"},
    {"386Enh", "Com2Buffer", "2048"},
    {"386Enh", "Com2Irq4Buffer", "2048"},
    {"386Enh", "COMBoostTime", "1"},
    {"386Enh", "DMABufferSize", "64"},
    {"386Enh", "DualDisplay", "on"},
    {"386Enh", "MaxBps", "65530"},
    {"386Enh", "MinSPs", "128"},
    {"386Enh", "MinTimeSlice", "40"},
    {"386Enh", "PageBuffers", "32"},
    {"386Enh", "WindowUpdateTime", "200"},
    {"386Enh", "VGAMonoText", "off"},
    {"display", "BlockWrite", "1"},
    {"display", "DDC", "1"},
    {"display", "DevBmp", "1"},
    {"display", "Five6Five", "1"},
    {"display", "OutEngine", "1"},
    {"display", "VAD", "0"},
    {"vcache", "CHUNKSIZE", "4096"},
    {"vcache", "MaxFileCache", "16384"},
    {"vcache", "MinFileCache", "16384"},
}};

// system.ini, written after the timer is on (still inside the click, before any tick). DINPUT's
// value is the text "0x00", unlike its neighbours; the Ports keys keep their colons.
inline constexpr std::array<ProfileRow, 19> kProfileRowsAfterTimer = {{
    {"Debug", "DINPUT", "0x00"},
    {"Debug", "DMBAND", "0"},
    {"Debug", "DMCOMPOS", "0"},
    {"Debug", "DMIME", "0"},
    {"Debug", "DMLOADER", "0"},
    {"Debug", "DMSTYLE", "0"},
    {"Debug", "DMSYNTH", "0"},
    {"Debug", "DMUSIC", "0"},
    {"Direct3D", "debug", "0"},
    {"DirectDraw", "debug", "0"},
    {"DirectDraw", "nohwblt", "0"},
    {"DirectDraw", "nohwfill", "0"},
    {"DirectDraw", "nohwtrans", "0"},
    {"DirectPlay", "debug", "0"},
    {"DirectPlay", "BreakOnAssert", "1"},
    {"Ports", "COM1:", "921600,n,8,1,x"},
    {"Ports", "COM2:", "921600,n,8,1,x"},
    {"Ports", "COM3:", "921600,n,8,1,x"},
    {"Ports", "COM4:", "921600,n,8,1,x"},
}};

// The show. Each caption describes work that was finished before the show began.
struct Stage {
  double atLeast;  // the bar's value from which the caption stands
  std::string_view caption;
};
inline constexpr std::array<Stage, 8> kStages = {{
    {5, "Règlage : Boot.."},
    {22, "Règlage : Démarrage.."},
    {35, "Règlage : Stabilité.."},
    {48, "Règlage : Rapidité.."},
    {55, "Règlage : Ports.."},
    {65, "Règlage : Materiels.."},
    {85, "Règlage : Defragmentation.."},
    {90, "Règlage : Configuration.."},
}};
inline constexpr double kStep = 3;    // what each tick adds to the bar
inline constexpr double kEnd = 100;   // the value at which the show ends
inline constexpr const char* kFirstCaption = "Patientez ..";  // the caption's design text

// Steps 3 to 6 of the click: the registry rows, the first profile block, the timer switched on,
// the second profile block. The writers are the caller's.
void Run(const catalogue::RegWriter& writeRegistry, const catalogue::ProfileWriter& writeProfile,
         const std::function<void()>& startTimer);

// The click on "&Optimisez votre windows": points ProfilePath at system.ini in the Windows
// directory, writes everything and switches the show's timer on.
void Optimise(Platform& p, Timer& timer);

// The show: one tick raises the bar, shuts the window and sets the caption of the highest
// stage reached; at 100 everything goes back, without a word. Between two runs the caption
// keeps its last text, so a second run opens on "Règlage : Configuration..".
class Show {
 public:
  Show(TamrixPBar& bar, Label& caption, Timer& timer, Control& window)
      : bar_(bar), caption_(caption), timer_(timer), window_(window) {}
  void Tick();

 private:
  TamrixPBar& bar_;
  Label& caption_;
  Timer& timer_;
  Control& window_;
};

}  // namespace tamrix::WindowsOptimiser
