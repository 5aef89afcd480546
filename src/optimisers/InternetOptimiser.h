// The Internet optimiser: the connection type and the speed decide four values, every other row
// is fixed, and one click writes them all before a 28-second show of five speeds ends with a
// message that says the connection has been boosted, whatever happened to the writes.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "optimisers/Catalogue.h"
#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix::InternetOptimiser {

using catalogue::Data;
using catalogue::RegRow;

inline constexpr HKey HKCU = hive::CurrentUser;
inline constexpr HKey HKLM = hive::LocalMachine;
inline constexpr std::uint32_t Sz = regtype::Sz;
inline constexpr std::uint32_t Dword = regtype::Dword;

// The holes of the common catalogue, filled at each run.
enum Variable : std::int32_t { ConnectionTtl, SpeedWindow, TrueText };
inline constexpr Data kConnectionTtl = Data::Variable(ConnectionTtl);
inline constexpr Data kSpeedWindow = Data::Variable(SpeedWindow);
inline constexpr Data kTrue = Data::Variable(TrueText);  // the system's word for true

// The speed buttons, tested in this order, each by itself. A button counts as chosen only when
// its value is exactly -1, which the library's option button never reads (it reads 1), so the
// window stays empty and TcpWindowSize goes out as 0 whatever the user picked.
struct Speed {
  std::string_view button;
  std::int32_t window;
};
inline constexpr std::array<Speed, 6> kSpeeds = {{
    {"r33", 2048}, {"r56", 4096}, {"r64", 4096}, {"r128", 6144}, {"r512", 8192}, {"r1024", 12288},
}};
inline constexpr std::int32_t kChosenSpeed = -1;

inline constexpr std::int32_t kModemTtl = 64;
inline constexpr std::int32_t kAdslTtl = 128;

// Written at once for a local network (L1, L2) and for a modem (M1, M2); the high-speed choice
// leaves both values as they stood.
inline constexpr std::array<RegRow, 2> kLanRows = {{
    {HKLM, "system\\currentcontrolset\\services\\VxD\\Mstcp", "DefaultRcvWindow", Sz, "5840"},
    {HKLM, "System\\CurrentControlSet\\Services\\Class\\NetTrans\\0000", "MaxMTU", Sz, "1500"},
}};
inline constexpr std::array<RegRow, 2> kModemRows = {{
    {HKLM, "system\\currentcontrolset\\services\\VxD\\Mstcp", "DefaultRcvWindow", Sz, "2144"},
    {HKLM, "System\\CurrentControlSet\\Services\\Class\\NetTrans\\0000", "MaxMTU", Sz, "576"},
}};

// Written on every run after the connection rows. Capitals differ from row to row (VxD, VXD,
// MSTCP, Mstcp) and GlobalMaxTcpWindoSize is spelt so; MaxDupAcks, SackOpts and Tcp1323Opts go
// both to MSTCP and to its Parameters; Start is a number under MTRR but the text "00" under
// NDIS and NTKern.
inline constexpr std::array<RegRow, 35> kCommonRows = {{
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters", "DefaultTTL", Dword, kConnectionTtl},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\Tcpip\\Parameters", "TcpWindowSize", Dword, kSpeedWindow},
    {HKCU, "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings", "MaxConnectionsPer1_0Server", Dword, 8},
    {HKCU, "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings", "MaxConnectionsPerServer", Dword, 4},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\Dnscache\\Parameters", "CacheHashTableBucketSize", Dword, 1},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\Dnscache\\Parameters", "CacheHashTableSize", Dword, 384},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\Dnscache\\Parameters", "MaxCacheEntryTtlLimit", Dword, 64000},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\Dnscache\\Parameters", "MaxSOACacheEntryTtlLimit", Dword, 301},
    {HKLM, "System\\CurrentControlSet\\Services\\VXD\\MSTCP", "DefaultTTL", Sz, "128"},
    {HKLM, "System\\CurrentControlSet\\Services\\Class\\NetTrans\\0000", "MaxMSS", Sz, "1460"},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\LanmanWorkstation\\Parameters", "MaxCmds", Dword, 100},
    {HKLM, "SYSTEM\\CurrentControlSet\\Services\\LanmanWorkstation\\Parameters", "DMaxThreads", Dword, 100},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "MaxDupAcks", Dword, 3},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "PMTUBlackHoleDetect", Sz, "0"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "PMTUDiscovery", Sz, "1"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "ReadAheadAutoScrolling", Sz, kTrue},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "SackOpts", Sz, "1"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP", "Tcp1323Opts", Sz, "1"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP\\Parameters", "GlobalMaxTcpWindoSize", Sz, "8912"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP\\Parameters", "MaxDupAcks", Dword, 3},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP\\Parameters", "SackOpts", Sz, "1"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MSTCP\\Parameters", "Tcp1323Opts", Sz, "1"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MTRR", "Start", Dword, 0},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\MTRR", "StaticVxD", Sz, "*mtrr"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NDIS", "NetClean", Sz, "01"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NDIS", "Start", Sz, "00"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NTKern", "Start", Sz, "00"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NTKern", "StaticVxD", Sz, "*NTKERN"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params", "cachesize", Sz, "64"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params", "maxconnect", Sz, "64"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxconnect", "Max", Sz, "128"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxconnect", "Min", Sz, "2"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params", "maxsockets", Sz, "255"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxsockets", "max", Sz, "1020"},
    {HKLM, "System\\CurrentControlSet\\Services\\VxD\\NWLink\\Ndi\\params\\maxsockets", "min", Sz, "32"},
}};

// What the page says about the connection when the run starts.
struct Choice {
  // The value of a speed button, by its design name.
  std::function<double(std::string_view button)> speedValue;
  bool lan = false, modem = false, adsl = false;
};

// Steps 1 to 5 of the click: the two variables, the connection rows, the common catalogue.
// trueText is the system's word for true, for the one row whose source is a boolean.
void Apply(const Choice& choice, const std::string& trueText, const catalogue::RegWriter& write);

// The show: the bar rises by 1 a tick; a stage starts at the tick whose value is exactly its
// own, changes the pace and the caption; at 100 the window comes back and the message stands.
struct Stage {
  double value;
  int interval;  // ms from here on; 0 keeps the pace
  std::string_view caption;
};
inline constexpr std::array<Stage, 5> kStages = {{
    {1, 0, "Analyse de la configuration .."},
    {15, 1100, "Configuration de Windows .."},
    {25, 100, "Accélération du téléchargement .."},
    {40, 500, "Activation de la connexion haut débit .."},
    {60, 80, "Accélaration du chargement .."},
}};
inline constexpr double kEnd = 100;

inline constexpr const char* kDoneTitle = "Tamrix Utility 3.0 Pro - Opération Terminée";
inline constexpr const char* kDoneText =
    "Votre connexion Internet est maintenant Boostée\r"
    "Redémarrez Windows pour que les changements soient pris en compte.";

class Show {
 public:
  Show(Platform& p, TamrixPBar& bar, Label& caption, Timer& timer, Control& window)
      : p_(p), bar_(bar), caption_(caption), timer_(timer), window_(window) {}
  // Shuts the window, shows caption and bar and starts the ticks. Nothing is reset: a second
  // run starts where the first one ended, with the bar at 100 and the last pace.
  void Start();
  void Tick();

 private:
  Platform& p_;
  TamrixPBar& bar_;
  Label& caption_;
  Timer& timer_;
  Control& window_;
};

}  // namespace tamrix::InternetOptimiser
