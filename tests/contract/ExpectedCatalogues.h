// The rows the optimisers and the shell toggles must write, written out by hand row for row, in
// writing order, so that a slip in the program's own tables shows up as a difference. Never
// build these from the program's tables: that would check the data against itself.
// Shared by the native tests and the end-to-end tests under Wine, so it speaks only in the
// platform's portable constants; the end-to-end side turns a hive into an HKEY where it needs one.
#pragma once

#include <cstdint>

#include "platform/Platform.h"

namespace tamrix::expected {

inline constexpr HKey CU = hive::CurrentUser, LM = hive::LocalMachine;
inline constexpr std::uint32_t SZ = regtype::Sz, DW = regtype::Dword;

struct RegExpect {
  HKey hive;
  const char* path;
  const char* name;
  std::uint32_t type;
  // As the registry holds it: the text, or the number in decimal. In the Internet rows "TTL"
  // and "SPEED" stand for the run's two variables, the connection's TTL and the speed's window.
  const char* data;
};

struct ProfileExpect {
  const char* section;
  const char* key;
  const char* value;
};

// --- the Internet optimiser ---------------------------------------------------------------
namespace internet {

inline constexpr const char* kMstcpLower = "system\\currentcontrolset\\services\\VxD\\Mstcp";
inline constexpr const char* kNetTrans = "System\\CurrentControlSet\\Services\\Class\\NetTrans\\0000";
inline constexpr RegExpect kLan[2] = {{LM, kMstcpLower, "DefaultRcvWindow", SZ, "5840"},
                                      {LM, kNetTrans, "MaxMTU", SZ, "1500"}};
inline constexpr RegExpect kModem[2] = {{LM, kMstcpLower, "DefaultRcvWindow", SZ, "2144"},
                                        {LM, kNetTrans, "MaxMTU", SZ, "576"}};

inline constexpr const char* kTcpip = "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters";
inline constexpr const char* kInet = "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings";
inline constexpr const char* kDns = "SYSTEM\\CurrentControlSet\\Services\\Dnscache\\Parameters";
inline constexpr const char* kLanman = "SYSTEM\\CurrentControlSet\\Services\\LanmanWorkstation\\Parameters";
inline constexpr const char* kMstcp = "System\\CurrentControlSet\\Services\\VxD\\MSTCP";
inline constexpr const char* kMstcpParams = "System\\CurrentControlSet\\Services\\VxD\\MSTCP\\Parameters";
inline constexpr const char* kParams = "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params";
// The same MSTCP key as kMstcp, spelt with VXD in capitals where the TTL text goes.
inline constexpr const char* kVxdMstcp = "System\\CurrentControlSet\\Services\\VXD\\MSTCP";
inline constexpr RegExpect kCommon[35] = {
    {LM, kTcpip, "DefaultTTL", DW, "TTL"},
    {LM, kTcpip, "TcpWindowSize", DW, "SPEED"},
    {CU, kInet, "MaxConnectionsPer1_0Server", DW, "8"},
    {CU, kInet, "MaxConnectionsPerServer", DW, "4"},
    {LM, kDns, "CacheHashTableBucketSize", DW, "1"},
    {LM, kDns, "CacheHashTableSize", DW, "384"},
    {LM, kDns, "MaxCacheEntryTtlLimit", DW, "64000"},
    {LM, kDns, "MaxSOACacheEntryTtlLimit", DW, "301"},
    {LM, kVxdMstcp, "DefaultTTL", SZ, "128"},
    {LM, kNetTrans, "MaxMSS", SZ, "1460"},
    {LM, kLanman, "MaxCmds", DW, "100"},
    {LM, kLanman, "DMaxThreads", DW, "100"},
    {LM, kMstcp, "MaxDupAcks", DW, "3"},
    {LM, kMstcp, "PMTUBlackHoleDetect", SZ, "0"},
    {LM, kMstcp, "PMTUDiscovery", SZ, "1"},
    {LM, kMstcp, "ReadAheadAutoScrolling", SZ, "Vrai"},
    {LM, kMstcp, "SackOpts", SZ, "1"},
    {LM, kMstcp, "Tcp1323Opts", SZ, "1"},
    {LM, kMstcpParams, "GlobalMaxTcpWindoSize", SZ, "8912"},
    {LM, kMstcpParams, "MaxDupAcks", DW, "3"},
    {LM, kMstcpParams, "SackOpts", SZ, "1"},
    {LM, kMstcpParams, "Tcp1323Opts", SZ, "1"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\MTRR", "Start", DW, "0"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\MTRR", "StaticVxD", SZ, "*mtrr"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NDIS", "NetClean", SZ, "01"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NDIS", "Start", SZ, "00"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NTKern", "Start", SZ, "00"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NTKern", "StaticVxD", SZ, "*NTKERN"},
    {LM, kParams, "cachesize", SZ, "64"},
    {LM, kParams, "maxconnect", SZ, "64"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxconnect", "Max", SZ, "128"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxconnect", "Min", SZ, "2"},
    {LM, kParams, "maxsockets", SZ, "255"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxsockets", "max", SZ, "1020"},
    {LM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxsockets", "min", SZ, "32"},
};

}  // namespace internet

// --- the Windows optimiser ----------------------------------------------------------------
namespace windows {

inline constexpr RegExpect kRegistry[21] = {
    {CU, "Control Panel\\Desktop", "WaitToKillAppTimeout", SZ, "1000"},
    {LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillAppTimeout", SZ, "1000"},
    {CU, "Control Panel\\Desktop", "AutoEndTasks", SZ, "1"},
    {CU, "Control Panel\\Desktop", "HungAppTimeOut", SZ, "1000"},
    {LM, "SYSTEM\\CurrentControlSet\\Control", "HungAppTimeOut", SZ, "1000"},
    {CU, "Control Panel\\Desktop", "MenuShowDelay", SZ, "0"},
    {CU, "Control Panel\\Desktop", "WaitToKillServiceTimeOut", SZ, "1"},
    {LM, "SYSTEM\\CurrentControlSet\\Control", "WaitToKillServiceTimeOut", SZ, "1"},
    {LM, "SYSTEM\\CurrentControlSet\\Control\\Update", "UpDateMode", DW, "7"},
    {LM, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer", "AlwaysUnloadDll", DW, "1"},
    {CU, "Control Panel\\Desktop", "MinAnimate", SZ, "0"},
    {CU, "Control Panel\\Desktop", "SmoothScroll", DW, "0"},
    {CU, "Control Panel\\Desktop\\WindowMetrics", "Shell Icon BPP", SZ, "16"},
    {LM, "System\\CurrentControlSet\\Control\\SessionManager\\Memory Managment", "SecondLevelDataCache", DW, "512"},
    {LM, "System\\CurrentControlSet\\Control\\FileSystem", "ContigFileAllocSize", DW, "512"},
    {LM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MaxApps", DW, "120"},
    {LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "CacheSize", DW, "2476"},
    {LM, "System\\CurrentControlSet\\control\\FileSystem\\CDFS", "Prefetch", DW, "1792"},
    {LM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MaxNoUseDays", DW, "90"},
    {LM, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Defrag\\AppStartParams", "MinLogSize", DW, "500"},
    {LM, "SOFTWARE\\Microsoft\\Dfrg\\BootOptimizeFunction", "Enable", SZ, "Y"},
};

inline constexpr ProfileExpect kBeforeTimer[26] = {
    {"386Enh", "32BitDiskAccess", "on"},  {"386Enh", "32BitFileAccess", "on"}, {"386Enh", "WindowUpdateTime", "200"},
    {"386Enh", "VGAMonoText", "off"},     {"386Enh", "COM1Buffer", "2048"},    {"386Enh", "Com1Irq4Buffer", "2048"},
    {"386Enh", "Com2Buffer", "2048"},     {"386Enh", "Com2Irq4Buffer", "2048"}, {"386Enh", "COMBoostTime", "1"},
    {"386Enh", "DMABufferSize", "64"},    {"386Enh", "DualDisplay", "on"},     {"386Enh", "MaxBps", "65530"},
    {"386Enh", "MinSPs", "128"},          {"386Enh", "MinTimeSlice", "40"},    {"386Enh", "PageBuffers", "32"},
    {"386Enh", "WindowUpdateTime", "200"}, {"386Enh", "VGAMonoText", "off"},    {"display", "BlockWrite", "1"},
    {"display", "DDC", "1"},              {"display", "DevBmp", "1"},          {"display", "Five6Five", "1"},
    {"display", "OutEngine", "1"},        {"display", "VAD", "0"},             {"vcache", "CHUNKSIZE", "4096"},
    {"vcache", "MaxFileCache", "16384"},  {"vcache", "MinFileCache", "16384"},
};
inline constexpr ProfileExpect kAfterTimer[19] = {
    {"Debug", "DINPUT", "0x00"},       {"Debug", "DMBAND", "0"},         {"Debug", "DMCOMPOS", "0"},
    {"Debug", "DMIME", "0"},           {"Debug", "DMLOADER", "0"},       {"Debug", "DMSTYLE", "0"},
    {"Debug", "DMSYNTH", "0"},         {"Debug", "DMUSIC", "0"},         {"Direct3D", "debug", "0"},
    {"DirectDraw", "debug", "0"},      {"DirectDraw", "nohwblt", "0"},   {"DirectDraw", "nohwfill", "0"},
    {"DirectDraw", "nohwtrans", "0"},  {"DirectPlay", "debug", "0"},     {"DirectPlay", "BreakOnAssert", "1"},
    {"Ports", "COM1:", "921600,n,8,1,x"}, {"Ports", "COM2:", "921600,n,8,1,x"}, {"Ports", "COM3:", "921600,n,8,1,x"},
    {"Ports", "COM4:", "921600,n,8,1,x"},
};

// system.ini as a run leaves it when there was none: the eight sections in the order in which
// the rows first name them, the doubled keys written twice into one line each.
inline constexpr const char* kFreshSystemIni =
    "[386Enh]\r\n32BitDiskAccess=on\r\n32BitFileAccess=on\r\nWindowUpdateTime=200\r\nVGAMonoText=off\r\n"
    "COM1Buffer=2048\r\nCom1Irq4Buffer=2048\r\nCom2Buffer=2048\r\nCom2Irq4Buffer=2048\r\nCOMBoostTime=1\r\n"
    "DMABufferSize=64\r\nDualDisplay=on\r\nMaxBps=65530\r\nMinSPs=128\r\nMinTimeSlice=40\r\nPageBuffers=32\r\n"
    "[display]\r\nBlockWrite=1\r\nDDC=1\r\nDevBmp=1\r\nFive6Five=1\r\nOutEngine=1\r\nVAD=0\r\n"
    "[vcache]\r\nCHUNKSIZE=4096\r\nMaxFileCache=16384\r\nMinFileCache=16384\r\n"
    "[Debug]\r\nDINPUT=0x00\r\nDMBAND=0\r\nDMCOMPOS=0\r\nDMIME=0\r\nDMLOADER=0\r\nDMSTYLE=0\r\nDMSYNTH=0\r\nDMUSIC=0\r\n"
    "[Direct3D]\r\ndebug=0\r\n"
    "[DirectDraw]\r\ndebug=0\r\nnohwblt=0\r\nnohwfill=0\r\nnohwtrans=0\r\n"
    "[DirectPlay]\r\ndebug=0\r\nBreakOnAssert=1\r\n"
    "[Ports]\r\nCOM1:=921600,n,8,1,x\r\nCOM2:=921600,n,8,1,x\r\nCOM3:=921600,n,8,1,x\r\nCOM4:=921600,n,8,1,x\r\n";

}  // namespace windows

// --- the shell toggles of the Windows page ----------------------------------------------------
namespace toggles {

// Ticking writes one REG_SZ value; unticking deletes a key, or writes the same value again with
// other data. box5 and box8 delete a key, never the value they wrote.
struct ToggleExpect {
  const char* box;        // the box's design name
  const char* configKey;  // its key in the section "opti" of config.dll
  HKey hive;
  const char* path;
  const char* name;
  const char* tickedData;
  bool untickDeletesKey;
  const char* untickTarget;  // the key deleted, or the data written
  bool dvdNotice;
};

inline constexpr const char* kPaint = "Software\\CLASSES\\Paint.Picture";
inline constexpr const char* kPaintIcon = "Software\\CLASSES\\Paint.Picture\\DefaultIcon";
inline constexpr const char* kPlayer = "Software\\Microsoft\\MediaPlayer\\Player\\Settings";
inline constexpr const char* kOpenAs = "*\\shell\\openas";
inline constexpr const char* kOpenAsCommand = "rundll32.exe shell32.dll,OpenAs_RunDLL %1";
// The key box8 deletes: named after the value and its data run together.
inline constexpr const char* kOpenAsOdd = "*\\shell\\openas\\command\\rundll32.exe shell32.dll,OpenAs_RunDLL %1";

inline constexpr ToggleExpect kToggles[3] = {
    {"box5", "bmp", LM, kPaint, "DefaultIcon", "%1", true, kPaintIcon, false},
    {"box7", "dvd", CU, kPlayer, "EnableDVDUI", "yes", false, "no", true},
    {"box8", "open", CU, kOpenAs, "command", kOpenAsCommand, true, kOpenAsOdd, false},
};

inline constexpr const char* kDvdTitle = " Tamrix Corporation 2004";
inline constexpr const char* kDvdText =
    "Le lecteur Windows Media Player dans sa version 6\r"
    "ne peut pas lire les DVD, mais avec Tamrix votre \r"
    "lecteur Media est dopté avec cette option .\r"
    "\r"
    "Pour voir le changement : \r"
    "Ouvrez Windows Media Player puis Cliquer sur \r"
    "fichier et un menu est ajouté : Ouvrir DVD\r"
    "   _____________________________________\r"
    "                     Orvane Interactive 2004";

}  // namespace toggles

}  // namespace tamrix::expected
