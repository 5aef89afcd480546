#include "sysinfo/InfoPcPage.h"

#include "platform/Module1.h"
#include "platform/Registre.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr const char* kCpu0 = "hardware\\Description\\system\\CentralProcessor\\0";
constexpr const char* kComputerName = "System\\CurrentControlSet\\Control\\ComputerName\\ComputerName";
constexpr const char* kCurrentVersionNt = "software\\microsoft\\windows nt\\currentversion";
constexpr const char* kSystem = "hardware\\Description\\system";
constexpr const char* kSystemBoard = "enum\\root\\*PNP0C01\\0000";

constexpr const char* kMegaOctets = "   Méga Octets";
constexpr std::uint32_t kMemoryStatusLength = 32;

using S = InfoPcPage::Source;

Design Box(const char* name, Twips rect, const char* text) {
  return {.name = name, .caption = text, .rect = rect, .locked = true};
}

}  // namespace

// On NT the boxes born for the BIOS show other facts: t12 the processor type under a second
// "Type du Processeur" label one blank shorter than t1's, t13 the memory, t15 the video BIOS
// date.
const std::array<InfoPcPage::Row, 9> InfoPcPage::kNtRows = {{
    {&InfoPcPage::t1, "Type du Processeur:                 ", S::Value, kCpu0, "Identifier"},
    {&InfoPcPage::t2, "Constructeur du Processeur:      ", S::Value, kCpu0, "VendorIdentifier"},
    {nullptr, "Nom du processeur :                 ", S::Value, kCpu0, "VendorIdentifier"},
    {&InfoPcPage::freq, "Fréquence du processeur en MHz :   ", S::Value, kCpu0, "~Mhz"},
    {&InfoPcPage::t5, "Nom de la machine:                   ", S::Value, kComputerName, "ComputerName"},
    {&InfoPcPage::t12, "Type du Processeur:                ", S::Value, kCurrentVersionNt, "CurrentType"},
    {&InfoPcPage::t13, "La mémoire physique:               ", S::Memory, nullptr, nullptr},
    {&InfoPcPage::t14, "La date du Bios :                      ", S::Value, kSystem, "SystemBiosDate"},
    {&InfoPcPage::t15, "Carte Video Date:                      ", S::Value, kSystem, "VideoBiosDate"},
}};

// On the 9x family (and any family that isn't NT) the line under the frequency label holds no
// frequency: only the processor's maker and the machine's identifier.
const std::array<InfoPcPage::Row, 9> InfoPcPage::kOtherRows = {{
    {&InfoPcPage::t1, "Type du Processeur:                 ", S::Value, kCpu0, "Identifier"},
    {&InfoPcPage::t2, "Constructeur du Processeur:      ", S::Value, kCpu0, "VendorIdentifier"},
    {nullptr, "Nom du processeur :                 ", S::Composite, nullptr, nullptr},
    {&InfoPcPage::freq, "Fréquence du processeur en MHz :   ", S::Composite, nullptr, nullptr},
    {&InfoPcPage::t5, "Nom de la machine:                   ", S::Value, kComputerName, "ComputerName"},
    {&InfoPcPage::t12, "Nom du Bios:                           ", S::Value, kSystemBoard, "BIOSName"},
    {&InfoPcPage::t13, "Version du Bios:                       ", S::Value, kSystemBoard, "BIOSVersion"},
    {&InfoPcPage::t14, "La date du Bios:                      ", S::Value, kSystemBoard, "BIOSdate"},
    {&InfoPcPage::t15, "Type du BUS:                          ", S::Value, kSystemBoard, "Bustype"},
}};

// The boxes stand in the order a reader looks for them: the processor, the machine, the BIOS.
InfoPcPage::InfoPcPage(Control& testLab, Platform& platform)
    : p_(platform),
      pc(&testLab, {.name = "pc", .caption = "Information sur votre PC :", .rect = {240, 360, 6975, 3135}}),
      t1(&pc, Box("t1", Place(0), "Type du Processeur :                 Inconnu")),
      t2(&pc, Box("t2", Place(1), "Constructeur du Processeur :    Inconnu")),
      freq(&pc, Box("freq", Place(2), "Fréquence du Processeur en MHz :  Inconnu")),
      t5(&pc, Box("t5", Place(3), "Nom de la machine :                     Inconnu")),
      t12(&pc, Box("t12", Place(4), "Nom du Bios :                            Inconnu")),
      t13(&pc, Box("t13", Place(5), "Version du Bios  :                       Inconnu")),
      t14(&pc, Box("t14", Place(6), "Date du Bios :                             Inconnu")),
      t15(&pc, Box("t15", Place(7), "Type du Bus :                              Inconnu")) {}

const std::array<InfoPcPage::Row, 9>& InfoPcPage::TableFor(const std::string& family) {
  return family == Module1::kWindowsNT ? kNtRows : kOtherRows;
}

std::int16_t InfoPcPage::MemoryFigureOf(double megabytesPlusOne, char decimalSign) {
  std::int16_t m = 0;
  ResumeNext([&] { m = rt::ToInt16(rt::TextToDouble(rt::FormatNumber(megabytesPlusOne, "#0", decimalSign), decimalSign)); });
  return m;
}

std::int16_t InfoPcPage::MemoryFigure(std::uint32_t totalPhysBytes, char decimalSign) {
  // Signed on purpose: 2 GB or more gives a negative figure. The added one is part of the rule.
  double megabytes = static_cast<std::int32_t>(totalPhysBytes) / 1024.0 / 1024.0;
  return MemoryFigureOf(megabytes + 1, decimalSign);
}

// A REG_SZ value keeps its stored NUL, so in the composite the text behind the maker stands
// after a NUL, and a box that stops there shows the label and the maker alone.
std::string InfoPcPage::Line(const Row& row, std::int16_t memoryFigure) {
  auto read = [this](const char* key, const char* name) {
    return Registre::ReadRegValue(p_, hive::LocalMachine, key, name).ToText();
  };
  switch (row.source) {
    case Source::Memory:
      return row.label + rt::IntToText(memoryFigure) + kMegaOctets;
    case Source::Composite: {
      // The maker is read before the identifier.
      std::string line = row.label + read(kCpu0, "VendorIdentifier");
      line += " (";
      line += read(kSystemBoard, "Identifier");
      return line + " )";
    }
    case Source::Value:
    default:
      return row.label + read(row.key, row.valueName);
  }
}

void InfoPcPage::InfoPc() {
  // The memory is read first, before errors are ignored; the call has no failure road.
  const MemoryStatus memory = p_.GlobalMemoryStatus(kMemoryStatusLength);

  // From here on, errors are ignored. The figure is made on both families and shown on NT alone.
  std::int16_t m = 0;
  ResumeNext([&] { m = MemoryFigure(memory.dwTotalPhys, p_.DecimalSign()); });
  std::string family;
  ResumeNext([&] { family = Module1::GetOsFamily(p_); });
  const auto& rows = TableFor(family);

  std::string processorName;  // built with its reads, and shown nowhere
  for (const Row& row : rows) {
    ResumeNext([&] {
      std::string line = Line(row, m);
      if (row.box)
        (this->*row.box).SetText(line);
      else
        processorName = line;
    });
  }
}

}  // namespace tamrix
