#include "sysinfo/BiosPage.h"

#include "platform/Runtime.h"

namespace tamrix {

namespace {

// What Text1 says until the first report: a line break at the end of each line.
constexpr const char* kIntroduction =
    "      Tamrix Info Bios est une nouvelle technologie de teste du \r\n"
    "materiels informatiques se base sur le code QX0Y1B05 créé \r\n"
    "par Tamrix Corporation pour donner toutes les informations \r\n"
    "système du BIOS et de tester les supports technologiques \r\n"
    "supportées par le BIOS.\r\n"
    "\r\n"
    "  -  Pour afficher les informations concernant la version, \r\n"
    "langue, type .. du Bios cliquez sur Info Bios.\r\n"
    " \r\n"
    "   - Pour afficher les technologies supportées par le Bios \r\n"
    "cliquez \r\n"
    "sur Tech Support.\r\n";

}  // namespace

BiosPage::BiosPage(Control& testLab, Platform& platform, const BiosCharacteristicsTable& table)
    : p_(platform),
      BiosCharacteristics(table),
      FrmBios(&testLab, {.name = "FrmBios", .caption = "Information sur votre BIOS :", .rect = {120, 240, 7215, 3255}}),
      Text1(&FrmBios, {.name = "Text1", .caption = kIntroduction, .rect = {150, 375, 6915, 2010}, .multiLine = true}),
      List1(&FrmBios, {.name = "List1", .rect = {150, 375, 6915, 2010}, .visible = false}),
      Image5(&FrmBios, {.name = "Image5", .rect = {390, 2445, 720, 720}, .picture = "bios_chip"}),
      TamrixCmd9(&FrmBios, {.name = "TamrixCmd9", .caption = "&Info Bios", .rect = {1950, 2595, 1560, 420}}),
      TamrixCmd10(&FrmBios, {.name = "TamrixCmd10", .caption = "&Tech Support", .rect = {3705, 2595, 1560, 420}}),
      Image6(&FrmBios, {.name = "Image6", .rect = {6105, 2445, 720, 720}, .picture = "bios_chip"}) {
  TamrixCmd9.OnClick = [this] { InfoBios(); };
  TamrixCmd10.OnClick = [this] { TechSupport(); };
}

namespace {

// The query stands in one piece, the same for both buttons.
// clang-format off
constexpr const char* kQuery = "SELECT Name,BiosCharacteristics,SMBIOSPresent,SMBIOSMajorVersion,SMBIOSMinorVersion,Version,SMBIOSBIOSVersion,ListOfLanguages,Description,CurrentLanguage,Manufacturer,Status FROM Win32_BIOS";
// clang-format on
constexpr const char* kCrLf = "\r\n";
const std::string kRule = std::string(58, '-') + kCrLf;

std::string Heading() { return std::string("System BIOS Details : ") + kCrLf + "---------------------" + kCrLf; }

}  // namespace

void BiosPage::BindAndQuery() {
  service_ = p_.WmiGetObject("Winmgmts:");  // no impersonation clause here, unlike the processor page
  result_ = service_->ExecQuery(kQuery);
}

std::string BiosPage::Text(const char* property) { return rt::JoinText(object_->Get(property), p_); }

void BiosPage::InfoBios() {
  List1.SetVisible(false);
  Text1.SetVisible(true);
  BindAndQuery();
  report_ = Heading();
  for (const auto& object : result_) {
    object_ = object;
    report_ += "Manufacturer" ":\t" + Text("Manufacturer") + kCrLf;
    report_ += "Description" ":\t" + Text("Description") + kCrLf;
    // The query has no release date: it is cut out of the version string, and a text that
    // reads as no date passes the pattern unchanged.
    report_ += "Release Date" ":\t" + rt::FormatDateText(rt::Left(Text("Version"), 8), "DD - mmmm - YYYY", p_) + kCrLf;
    report_ += "Status" "\t:\t" + Text("Status") + kCrLf;
    report_ += "BIOS Version" ":\t" + Text("SMBIOSBIOSVersion") + kCrLf;
    report_ += "Language Courrent" "\t:\t" + Text("CurrentLanguage") + kCrLf;
    report_ += kRule;
    report_ += "SM BIOS Present" "\t\t:\t" + Text("SMBIOSPresent") + kCrLf;
    // The two version lines are crossed, as the users have always seen them.
    report_ += "SM BIOS Version majeure" "\t:\t" + Text("SMBIOSMinorVersion") + kCrLf;
    report_ += "SM BIOS Version mineure" "\t:\t" + Text("SMBIOSMajorVersion") + kCrLf;
    report_ += kRule;
    // The first and the last language are left out: with one or two nothing is listed.
    WmiValue languages = object_->Get("ListOfLanguages");
    std::int32_t upper = rt::UBound(languages);
    for (i_ = 1; i_ <= upper - 1; ++i_) {
      std::string language = rt::JoinText(languages.items[static_cast<std::size_t>(i_)], p_);
      if (language.find_first_not_of(' ') != std::string::npos)
        report_ += std::string("BIOS Installable Languages") + "\t" + " : " + "\t" + language + kCrLf;
    }
    report_ += kRule;
  }
  Text1.SetText(report_);
}

void BiosPage::TechSupport() {
  List1.SetVisible(true);
  Text1.SetVisible(false);
  List1.Clear();
  BindAndQuery();
  report_ = Heading();  // built as for the report; nothing shows it here
  for (const auto& object : result_) {
    object_ = object;
    // The last value is left out, the first kept; WMI's order stands, doubles and all.
    WmiValue values = object_->Get("BiosCharacteristics");
    std::int32_t upper = rt::UBound(values);
    for (i_ = 0; i_ <= upper - 1; ++i_) {
      const WmiValue& v = values.items[static_cast<std::size_t>(i_)];
      std::int64_t code = v.type == WmiValue::Type::Double ? static_cast<std::int64_t>(rt::RoundHalfEven(v.number)) : v.integer;
      if (v.type != WmiValue::Type::Integer && v.type != WmiValue::Type::Double) throw rt::TypeMismatch();
      // A number beyond the table shows as its digits rather than failing.
      List1.AddItem(code >= 0 && code < 40 ? BiosCharacteristics[static_cast<std::size_t>(code)] : rt::IntToText(code));
    }
  }
}

}  // namespace tamrix
