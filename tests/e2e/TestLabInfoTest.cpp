// The Windows and PC pages of Test Lab in the real tamrix.exe, against Wine's registry: on the NT
// family Wine reports by default, and on the 9x family with the prefix's Windows version set to
// win98 and the system board's enumeration key made for the scenario.
#include <gtest/gtest.h>

#include <algorithm>

#include <cmath>
#include <cstdint>
#include <vector>

#include "e2e/Driver.h"
#include "e2e/Registry.h"

namespace tamrix::e2e {
namespace {

const char* const kCv9x = "software\\microsoft\\windows\\currentversion";
const char* const kCvNt = "software\\microsoft\\windows nt\\currentversion";
const char* const kTz = "system\\currentcontrolset\\control\\TimeZoneInformation";
const char* const kDx = "software\\microsoft\\directx";
const char* const kIe = "software\\microsoft\\internet explorer";
const char* const kCpu0 = "hardware\\Description\\system\\CentralProcessor\\0";
const char* const kName = "System\\CurrentControlSet\\Control\\ComputerName\\ComputerName";
const char* const kSystem = "hardware\\Description\\system";
const char* const kBoard = "enum\\root\\*PNP0C01\\0000";
const char* const kWine = "Software\\Wine";

struct Line {
  const char* box;
  const char* label;
  const char* key;
  const char* value;
};

const std::vector<Line> kWindowsNt = {
    {"t3", "Système d'exploitation:            ", kCvNt, "productname"},
    {"t4", "Version du Windows:                 ", kCvNt, "currentversion"},
    {"t6", "Nom de l'organisation:              ", kCvNt, "RegisteredOrganization"},
    {"t7", "ID de Windows:                      ", kCvNt, "productid"},
    {"t8", "Nom d'utilisateur:                     ", kCvNt, "RegisteredOwner"},
    {"t9", "La zone géographique:               ", kTz, "StandardName"},
    {"t10", "La version de DirectX:               ", kDx, "version"},
    {"t11", "La version d'internet Explorer:  ", kIe, "version"},
};
const std::vector<Line> kWindows9x = {
    {"t3", "Système d'exploitation:            ", kCv9x, "productname"},
    {"t4", "Version du Windows:                 ", kCv9x, "versionnumber"},
    {"t6", "Nom de l'organisation:              ", kCv9x, "RegisteredOrganization"},
    {"t7", "ID de Windows:                      ", kCv9x, "productid"},
    {"t8", "Clé de Windows:                     ", kCv9x, "productkey"},
    {"t9", "La zone géographique:               ", kTz, "StandardName"},
    {"t10", "La version de DirectX:               ", kDx, "version"},
    {"t11", "La version d'internet Explorer:  ", kIe, "version"},
};
const std::vector<Line> kPcNt = {
    {"t1", "Type du Processeur:                 ", kCpu0, "Identifier"},
    {"t2", "Constructeur du Processeur:      ", kCpu0, "VendorIdentifier"},
    {"freq", "Fréquence du processeur en MHz :   ", kCpu0, "~Mhz"},
    {"t5", "Nom de la machine:                   ", kName, "ComputerName"},
    {"t12", "Type du Processeur:                ", kCvNt, "CurrentType"},
    {"t14", "La date du Bios :                      ", kSystem, "SystemBiosDate"},
    {"t15", "Carte Video Date:                      ", kSystem, "VideoBiosDate"},
};
const std::vector<Line> kPc9x = {
    {"t1", "Type du Processeur:                 ", kCpu0, "Identifier"},
    {"t2", "Constructeur du Processeur:      ", kCpu0, "VendorIdentifier"},
    {"freq", "Fréquence du processeur en MHz :   ", kCpu0, "VendorIdentifier"},  // the text stops at the maker
    {"t5", "Nom de la machine:                   ", kName, "ComputerName"},
    {"t12", "Nom du Bios:                           ", kBoard, "BIOSName"},
    {"t13", "Version du Bios:                       ", kBoard, "BIOSVersion"},
    {"t14", "La date du Bios:                      ", kBoard, "BIOSdate"},
    {"t15", "Type du BUS:                          ", kBoard, "Bustype"},
};

// What a line shows of a value: a text up to its NUL, a number in decimal, nothing otherwise.
std::string Shown(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExW(hive, Wide(path).c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return "";
  std::vector<BYTE> data(4096);
  DWORD type = 0, size = static_cast<DWORD>(data.size());
  LONG s = RegQueryValueExW(k, Wide(name).c_str(), nullptr, &type, data.data(), &size);
  RegCloseKey(k);
  if (s != ERROR_SUCCESS) return "";
  if (type == REG_DWORD) return std::to_string(*reinterpret_cast<DWORD*>(data.data()));
  if (type != REG_SZ) return "";
  std::wstring w(reinterpret_cast<wchar_t*>(data.data()), size / sizeof(wchar_t));
  return Utf8(w.substr(0, w.find(L'\0')));
}

std::optional<std::string> Text(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExW(hive, Wide(path).c_str(), 0, KEY_QUERY_VALUE, &k) != ERROR_SUCCESS) return std::nullopt;
  LONG s = RegQueryValueExW(k, Wide(name).c_str(), nullptr, nullptr, nullptr, nullptr);
  RegCloseKey(k);
  if (s != ERROR_SUCCESS) return std::nullopt;
  return Shown(hive, path, name);
}

void SetText(HKEY hive, const std::string& path, const std::string& name, const std::string& text) {
  HKEY k;
  if (RegCreateKeyExW(hive, Wide(path).c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &k, nullptr) != ERROR_SUCCESS)
    return;
  std::wstring w = Wide(text);
  RegSetValueExW(k, Wide(name).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(w.c_str()),
                 static_cast<DWORD>((w.size() + 1) * sizeof(wchar_t)));
  RegCloseKey(k);
}

void DeleteValue(HKEY hive, const std::string& path, const std::string& name) {
  HKEY k;
  if (RegOpenKeyExA(hive, path.c_str(), 0, KEY_SET_VALUE, &k) != ERROR_SUCCESS) return;
  RegDeleteValueA(k, name.c_str());
  RegCloseKey(k);
}

// The memory figure of the PC page for this machine, from the total a 32-bit program that is
// not large-address-aware is given: the real one, capped at 2 GB - 1.
int MemoryFigure() {
  MEMORYSTATUSEX m{};
  m.dwLength = sizeof m;
  GlobalMemoryStatusEx(&m);
  std::uint32_t total = static_cast<std::uint32_t>(std::min<DWORDLONG>(m.ullTotalPhys, 0x7FFFFFFF));
  double v = static_cast<std::int32_t>(total) / 1048576.0 + 1;
  return static_cast<int>(std::copysign(std::floor(std::fabs(v) + 0.5), v));
}

class TestLabInfo : public ::testing::Test {
 protected:
  void TearDown() override {
    if (app.Running()) {
      app.Click("TamrixCmd1");
      app.WaitExit();
    }
  }
  void OpenTestLab() {
    ASSERT_TRUE(app.Start());
    app.Click("sys");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("fwindows") && app.Shown("Frame3"); }));
    ASSERT_TRUE(WaitUntil([&] { return app.Text("t3").find("Inconnu") == std::string::npos; }, 5000))
        << app.Text("t3");
  }
  void OpenPcPage() {
    OpenTestLab();
    app.Click("command2");
    ASSERT_TRUE(WaitUntil([&] { return app.Shown("pc") && !app.Shown("fwindows"); }));
    ASSERT_TRUE(WaitUntil([&] { return app.Text("t1").find("Inconnu") == std::string::npos; }, 5000))
        << app.Text("t1");
  }
  void CheckLines(const std::vector<Line>& lines) {
    for (const Line& l : lines)
      EXPECT_EQ(app.Text(l.box), l.label + Shown(HKEY_LOCAL_MACHINE, l.key, l.value)) << l.box;
  }
  App app;
};

TEST_F(TestLabInfo, TestLabOpensOnTheWindowsPageFilledOnNt) {
  OpenTestLab();
  EXPECT_FALSE(app.Shown("FrmBios"));
  EXPECT_FALSE(app.Shown("disque"));
  CheckLines(kWindowsNt);
  EXPECT_NE(Shown(HKEY_LOCAL_MACHINE, kCvNt, "productname"), "") << "Wine names its product";
  EXPECT_EQ(app.Text("t3"), "Système d'exploitation:            " + Shown(HKEY_LOCAL_MACHINE, kCvNt, "productname"));
  Screenshot("testlab-windows-nt");
}

TEST_F(TestLabInfo, PcPageFilledOnNt) {
  OpenPcPage();
  CheckLines(kPcNt);
  EXPECT_EQ(app.Text("t13"), "La mémoire physique:               " + std::to_string(MemoryFigure()) + "   Méga Octets");
  // The frequency is a number of the registry, shown in decimal.
  EXPECT_NE(Shown(HKEY_LOCAL_MACHINE, kCpu0, "~Mhz"), "");
  Screenshot("testlab-pc-nt");
}

// The 9x family: the prefix reports Windows 98, and the values that only a 9x system has are
// made for the scenario and taken away again.
class TestLabInfo9x : public TestLabInfo {
 protected:
  // Only what the scenario made is taken away: a branch or a value that was there before it is
  // a reason to stop, not something to delete.
  void SetUp() override {
    wineVersion_ = Text(HKEY_CURRENT_USER, kWine, "Version");
    SetText(HKEY_CURRENT_USER, kWine, "Version", "win98");
    versionSet_ = true;
    ASSERT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, "enum")) << "the enumeration branch is the scenario's own";
    boardMade_ = true;
    SetText(HKEY_LOCAL_MACHINE, kBoard, "Identifier", "Carte mère PnP");
    SetText(HKEY_LOCAL_MACHINE, kBoard, "BIOSName", "Award Modular BIOS");
    SetText(HKEY_LOCAL_MACHINE, kBoard, "BIOSVersion", "4.51 PG");
    SetText(HKEY_LOCAL_MACHINE, kBoard, "BIOSdate", "07/15/98");
    SetText(HKEY_LOCAL_MACHINE, kBoard, "Bustype", "ISA");
    for (const auto& [name, text] : k9xValues) {
      ASSERT_FALSE(Text(HKEY_LOCAL_MACHINE, kCv9x, name)) << name << " is the scenario's own";
      SetText(HKEY_LOCAL_MACHINE, kCv9x, name, text);
      made_.push_back(name);
    }
  }
  void TearDown() override {
    TestLabInfo::TearDown();
    for (const char* name : made_) DeleteValue(HKEY_LOCAL_MACHINE, kCv9x, name);
    if (boardMade_) DeleteTree(HKEY_LOCAL_MACHINE, "enum");
    if (versionSet_) {
      if (wineVersion_)
        SetText(HKEY_CURRENT_USER, kWine, "Version", *wineVersion_);
      else
        DeleteValue(HKEY_CURRENT_USER, kWine, "Version");
    }
  }
  const std::vector<std::pair<const char*, const char*>> k9xValues = {
      {"productname", "Microsoft Windows 98"},
      {"versionnumber", "4.10.2222"},
      {"productkey", "RW9MG-QR4G3-2WRR9-TG7BH-33GXB"},
  };
  std::optional<std::string> wineVersion_;
  bool versionSet_ = false, boardMade_ = false;
  std::vector<const char*> made_;
};

TEST_F(TestLabInfo9x, WindowsPageFilledOnThe9xFamily) {
  OpenTestLab();
  CheckLines(kWindows9x);
  EXPECT_EQ(app.Text("t3"), "Système d'exploitation:            Microsoft Windows 98");
  EXPECT_EQ(app.Text("t4"), "Version du Windows:                 4.10.2222");
  EXPECT_EQ(app.Text("t8"), "Clé de Windows:                     RW9MG-QR4G3-2WRR9-TG7BH-33GXB");
  Screenshot("testlab-windows-9x");
}

TEST_F(TestLabInfo9x, PcPageFilledOnThe9xFamily) {
  OpenPcPage();
  CheckLines(kPc9x);
  EXPECT_EQ(app.Text("t12"), "Nom du Bios:                           Award Modular BIOS");
  EXPECT_EQ(app.Text("t15"), "Type du BUS:                          ISA");
  // No frequency and no memory on this family: the maker alone stands before the NUL.
  EXPECT_EQ(app.Text("freq"),
            "Fréquence du processeur en MHz :   " + Shown(HKEY_LOCAL_MACHINE, kCpu0, "VendorIdentifier"));
  EXPECT_EQ(app.Text("t13").find("Méga Octets"), std::string::npos);
  Screenshot("testlab-pc-9x");
}

}  // namespace
}  // namespace tamrix::e2e
