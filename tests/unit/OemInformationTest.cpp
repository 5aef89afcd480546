#include <gtest/gtest.h>

#include "platform/FileFaults.h"
#include "platform/Ini.h"
#include "unit/ToolsFixture.h"

namespace tamrix {
namespace {

using Page = Form2::Page;

constexpr const char* kInfo = "C:\\WINDOWS\\system\\oeminfo.ini";
constexpr const char* kLogo = "C:\\WINDOWS\\system\\oemlogo.bmp";
constexpr const char* kFilter =
    "images supportées|*.jpg;*.jpeg;*.bmp|images Jpg (*.jpg)|*.jpg, *.jpeg|ImageBitmap (*.bmp)|*.bmp|Tous fichiers|*.*";

struct Oem : test::Tools {
  Oem() {
    p.AddFolder("C:\\WINDOWS");
    p.AddFolder("C:\\WINDOWS\\system");
    p.File("C:\\Images\\logo.jpg") = "\xFF\xD8\xFF\xE0 jpeg";
    p.File("C:\\Images\\logo.bmp") = "BM bitmap";
    p.File("C:\\Images\\notes.txt") = "not a picture";
    Open(Page::InformationOem);
    p.ClearCalls();
  }
  OemInformationPage& page() { return w().oem; }
  std::string Shown() { return p.pictures.count(page().Image1.Picture()) ? p.pictures[page().Image1.Picture()] : ""; }
};

TEST(OemInformation, ThePageStartsWithItsTextsAndTheBuiltInLogo) {
  Oem o;
  EXPECT_EQ(o.page().TamrixFrm2.Caption(), "Tamrix Information OEM :");
  EXPECT_EQ(o.page().Label1.Caption(), "&Organisation:");
  EXPECT_EQ(o.page().Label2.Caption(), "&Type du Pc:");
  EXPECT_EQ(o.page().Label3.Caption(), "Information du support technique:");
  EXPECT_EQ(o.page().Text1.Text(), "Tamrix Corporation");
  EXPECT_EQ(o.page().Text2.Text(), "Tamrix Pc");
  EXPECT_EQ(o.page().Text3.Text(), "Site Web : http://www.tamrix.example");
  EXPECT_EQ(o.page().fraLogo.Caption(), "Votre Logo");
  EXPECT_EQ(o.page().TamrixCmd2.Caption(), "&Ajouter Le Logo");
  EXPECT_EQ(o.page().TamrixCmd3.Caption(), "&Supprimer");
  EXPECT_EQ(o.page().TamrixCmd4.Caption(), "&Appliquer");
  EXPECT_EQ(o.page().TamrixCmd5.Caption(), "&Annuler");
  EXPECT_EQ(o.Shown(), "resource:OEMLOGO");
}

TEST(OemInformation, TheKeysTableReadsRowForRow) {
  const std::vector<std::tuple<std::string, std::string, OemValue, std::string>> expected{
      {"General", "Manufacturer", OemValue::Text1, ""},
      {"General", "Model", OemValue::Text2, ""},
      {"Support Information", "Line1", OemValue::Text3, ""},
      {"Support Information", "Line2", OemValue::Fixed, "  "},
      {"Support Information", "Line3", OemValue::Fixed, " "},
      {"Support Information", "Line4", OemValue::Fixed, "OEM créé avec Tamrix Utility 3.0 Pro"},
      {"Support Information", "Line5", OemValue::Download, "Téléchargez gratuitement "},
  };
  ASSERT_EQ(kOemKeys.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(kOemKeys[i].section, std::get<0>(expected[i])) << i;
    EXPECT_EQ(kOemKeys[i].key, std::get<1>(expected[i])) << i;
    EXPECT_EQ(kOemKeys[i].from, std::get<2>(expected[i])) << i;
    EXPECT_EQ(kOemKeys[i].text, std::get<3>(expected[i])) << i;
  }
}

TEST(OemInformation, AddingALogoShowsTheOpenDialogWithItsFilterAndFlags) {
  Oem o;
  o.p.openAnswers = {std::string("C:\\Images\\logo.jpg")};
  o.page().TamrixCmd2.Click();
  ASSERT_EQ(o.p.openRequests.size(), 1u);
  EXPECT_EQ(o.p.openRequests[0].filter, kFilter);
  EXPECT_EQ(o.p.openRequests[0].flags, 4096u);
  EXPECT_EQ(o.p.openRequests[0].fileName, "");
  EXPECT_TRUE(o.page().CommonDialog1.CancelError);
  EXPECT_EQ(o.Shown(), "file:C:\\Images\\logo.jpg");
}

TEST(OemInformation, ABitmapIsTakenAsWellAsAJpeg) {
  Oem o;
  o.p.openAnswers = {std::string("C:\\Images\\logo.bmp")};
  o.page().TamrixCmd2.Click();
  EXPECT_EQ(o.Shown(), "file:C:\\Images\\logo.bmp");
}

TEST(OemInformation, CancelInThePictureDialogEmptiesTheLogoAndApplyThenFailsAtTheSave) {
  Oem o;
  o.p.File(kInfo) = "[Other]\r\nKeep=1\r\n";
  o.p.openAnswers = {std::nullopt};
  o.page().TamrixCmd2.Click();
  EXPECT_EQ(o.page().Image1.Picture(), 0u);
  EXPECT_EQ(o.page().CommonDialog1.FileName, "");
  try {
    o.page().TamrixCmd4.Click();
    FAIL() << "the save of an empty picture must be a run-time fault";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 380);
  }
  // Nothing was written to oeminfo.ini, and no message came.
  EXPECT_EQ(o.p.File(kInfo), "[Other]\r\nKeep=1\r\n");
  EXPECT_FALSE(o.p.HasFile(kLogo));
  EXPECT_TRUE(o.p.boxes.empty());
  EXPECT_TRUE(o.form2.Loaded());
}

TEST(OemInformation, AFileThatIsNoPictureLeavesTheLogoAsItWas) {
  Oem o;
  o.p.openAnswers = {std::string("C:\\Images\\logo.bmp"), std::string("C:\\Images\\notes.txt")};
  o.page().TamrixCmd2.Click();
  o.page().TamrixCmd2.Click();
  EXPECT_EQ(o.Shown(), "file:C:\\Images\\logo.bmp");
  EXPECT_TRUE(o.p.boxes.empty());
}

TEST(OemInformation, DeletingTheLogoRemovesTheFileAndKeepsTheInformationAndThePicture) {
  Oem o;
  o.p.File(kLogo) = "BM old";
  o.p.File(kInfo) = "[General]\r\nModel=X\r\n";
  o.page().TamrixCmd3.Click();
  EXPECT_FALSE(o.p.HasFile(kLogo));
  EXPECT_TRUE(o.p.HasFile(kInfo));
  EXPECT_EQ(o.Shown(), "resource:OEMLOGO");
  ASSERT_EQ(o.p.boxes.size(), 1u);
  EXPECT_EQ(o.p.boxes[0].text, " Le Logo est supprimé avec succés ");
  EXPECT_EQ(o.p.boxes[0].title, " Tamrix OEM Maker");
  EXPECT_EQ(o.p.boxes[0].style, mb::Ok | mb::Information);
}

TEST(OemInformation, DeletingLeavesAReadOnlyLogoAndStillReportsSuccess) {
  Oem o;
  o.p.File(kLogo) = "BM old";
  o.p.Attributes(kLogo) = fake::FakePlatform::kReadOnly;
  o.page().TamrixCmd3.Click();
  EXPECT_TRUE(o.p.HasFile(kLogo));
  ASSERT_EQ(o.p.boxes.size(), 1u);
  EXPECT_EQ(o.p.boxes[0].text, " Le Logo est supprimé avec succés ");
}

TEST(OemInformation, DeletingWithNoLogoOnDiskStillReportsSuccess) {
  Oem o;
  o.page().TamrixCmd3.Click();
  ASSERT_EQ(o.p.boxes.size(), 1u);
  EXPECT_EQ(o.p.boxes[0].text, " Le Logo est supprimé avec succés ");
}

TEST(OemInformation, ApplySavesTheLogoThenWritesTheSevenKeysInOrderAndClosesTheWindow) {
  Oem o;
  o.page().Text1.SetText("Dupont SA");
  o.page().Text2.SetText("Tour 3000");
  o.page().Text3.SetText("Tél : 01 02 03 04 05");
  o.page().TamrixCmd4.Click();
  EXPECT_EQ(o.p.File(kLogo), "BM bitmap of resource:OEMLOGO");
  EXPECT_EQ(ini::ProfilePath, kInfo);
  // The save comes before the first key.
  std::vector<std::string> order;
  for (const auto& c : o.p.calls)
    if (c.rfind("SavePicture", 0) == 0 || c.rfind("WritePrivateProfileStringA", 0) == 0) order.push_back(c);
  // Line2 goes with two blanks and Line3 with one, to hold empty lines of the support text.
  const std::string info = std::string(",") + kInfo + ")";
  EXPECT_EQ(order, (std::vector<std::string>{
                       std::string("SavePicture(") + kLogo + ")",
                       "WritePrivateProfileStringA(General,Manufacturer,Dupont SA" + info,
                       "WritePrivateProfileStringA(General,Model,Tour 3000" + info,
                       "WritePrivateProfileStringA(Support Information,Line1,Tél : 01 02 03 04 05" + info,
                       "WritePrivateProfileStringA(Support Information,Line2,  " + info,
                       "WritePrivateProfileStringA(Support Information,Line3, " + info,
                       "WritePrivateProfileStringA(Support Information,Line4,OEM créé avec Tamrix Utility 3.0 Pro" + info,
                       "WritePrivateProfileStringA(Support Information,Line5,Téléchargez gratuitement "
                       "http://www.tamrix.example" + info,
                   }));
  // The profile writer lays the file out, and drops a value's leading blanks as it does.
  EXPECT_EQ(o.p.File(kInfo),
            "[General]\r\nManufacturer=Dupont SA\r\nModel=Tour 3000\r\n"
            "[Support Information]\r\nLine1=Tél : 01 02 03 04 05\r\nLine2=\r\nLine3=\r\n"
            "Line4=OEM créé avec Tamrix Utility 3.0 Pro\r\n"
            "Line5=Téléchargez gratuitement http://www.tamrix.example\r\n");
  // The message speaks of the logo only.
  ASSERT_EQ(o.p.boxes.size(), 1u);
  EXPECT_EQ(o.p.boxes[0].text, " Le Logo est créé avec succés ");
  EXPECT_EQ(o.p.boxes[0].title, " Tamrix OEM Maker");
  EXPECT_EQ(o.p.boxes[0].style, mb::Ok | mb::Information);
  // Then the window closes through the guard: the main window is back.
  EXPECT_FALSE(o.form2.Loaded());
  EXPECT_TRUE(o.form1.Visible());
}

TEST(OemInformation, ApplyRewritesEveryKeyAndAnOlderFileKeepsItsOtherKeys) {
  Oem o;
  o.p.File(kInfo) = "[General]\r\nManufacturer=Old\r\nSupportURL=http://old\r\n[Extra]\r\nA=1\r\n";
  o.page().TamrixCmd4.Click();
  EXPECT_EQ(o.p.File(kInfo),
            "[General]\r\nManufacturer=Tamrix Corporation\r\nSupportURL=http://old\r\nModel=Tamrix Pc\r\n"
            "[Extra]\r\nA=1\r\n"
            "[Support Information]\r\nLine1=Site Web : http://www.tamrix.example\r\nLine2=\r\nLine3=\r\n"
            "Line4=OEM créé avec Tamrix Utility 3.0 Pro\r\n"
            "Line5=Téléchargez gratuitement http://www.tamrix.example\r\n");
}

TEST(OemInformation, AnEditedWindowsFolderBoxMovesBothFiles) {
  Oem o;
  o.p.AddFolder("D:\\WIN");
  o.p.AddFolder("D:\\WIN\\system");
  o.w().dossiers.ChDos(19).SetText("D:\\WIN");
  o.page().TamrixCmd4.Click();
  EXPECT_TRUE(o.p.HasFile("D:\\WIN\\system\\oemlogo.bmp"));
  EXPECT_TRUE(o.p.HasFile("D:\\WIN\\system\\oeminfo.ini"));
  EXPECT_FALSE(o.p.HasFile(kInfo));
}

TEST(OemInformation, AMissingSystemFolderIsARunTimeFaultWithNothingWritten) {
  Oem o;
  o.p.folders.clear();
  try {
    o.page().TamrixCmd4.Click();
    FAIL() << "the save into a missing folder must be a run-time fault";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), 76);
  }
  EXPECT_FALSE(o.p.HasFile(kInfo));
  EXPECT_TRUE(o.p.boxes.empty());
}

TEST(OemInformation, FailedProfileWritesPassSilentlyAndTheMessageFollows) {
  Oem o;
  o.p.readOnlyFiles.insert(fake::FakePlatform::Lower(kInfo));
  o.page().TamrixCmd4.Click();
  EXPECT_FALSE(o.p.HasFile(kInfo));
  ASSERT_EQ(o.p.boxes.size(), 1u);
  EXPECT_EQ(o.p.boxes[0].text, " Le Logo est créé avec succés ");
}

}  // namespace
}  // namespace tamrix
