// The design of the Windows and Internet pages: every control of the Windows page by its design
// name and words, and every control of both pages inside its container, clear of the title
// band, and clear of its siblings.
#include <gtest/gtest.h>

#include "fake/FakePlatform.h"
#include "fake/LayoutCheck.h"
#include "forms/Form1.h"

namespace tamrix {
namespace {

using test::ExpectTidy;

struct Layout : ::testing::Test {
  fake::FakePlatform p;
  Form1 form{p};
};

TEST_F(Layout, WindowsPageControlsStandInsideTheirPanelsWithoutOverlapping) { ExpectTidy(form.windowsPage.Frame1); }

TEST_F(Layout, InternetPageControlsStandInsideTheirPanelsWithoutOverlapping) { ExpectTidy(form.internetPage.Frame2); }

TEST_F(Layout, WindowsPageHoldsTheToolButtonsAndTheVirtualDriveControlsByTheirDesignNames) {
  struct Named {
    const char* name;
    Kind kind;
    const char* caption;
    const char* parent;
  };
  const Named controls[] = {
      {"TamrixCmd12", Kind::TamrixCmd, "&Dossiers spéciales", "Frame1"},
      {"TamrixCmd13", Kind::TamrixCmd, "&Information OEM", "Frame1"},
      {"TamrixCmd14", Kind::TamrixCmd, "&Résolution Ecran", "Frame1"},
      {"TamrixCmd15", Kind::TamrixCmd, "&Arrêter le Pc", "Frame1"},
      {"TamrixCmd5", Kind::TamrixCmd, "&Personnalisez Dossier", "Frame1"},
      {"TamrixFrm2", Kind::TamrixFrm, "Créer un nouveau lecteur virtuel", "Frame1"},
      {"lblLettreDispo(0)", Kind::Label, "Lettre de lecteur disponibles:", "TamrixFrm2"},
      {"cmbLecteurDispo(0)", Kind::ComboBox, "", "TamrixFrm2"},
      {"lblLettreDispo(1)", Kind::Label, "Choisir le dossier:", "TamrixFrm2"},
      {"txtChemLecteur", Kind::TextBox, "", "TamrixFrm2"},
      {"cmdCheminVirtuel(0)", Kind::TamrixCmd, "...", "TamrixFrm2"},
      {"cmdCheminVirtuel(1)", Kind::TamrixCmd, "&Créer lecteur", "TamrixFrm2"},
      {"chkCreerLecteurVirtuel", Kind::TamrixCB, "Lecteur permanant", "TamrixFrm2"},
      {"lblGuil", Kind::Label, "\"", "TamrixFrm2"},
      {"TamrixFrm3", Kind::TamrixFrm, "Supprimer un lecteur virtuel", "Frame1"},
      {"cmbLecteurDispo(1)", Kind::ComboBox, "", "TamrixFrm3"},
      {"cmdCheminVirtuel(2)", Kind::TamrixCmd, "&Supprimer", "TamrixFrm3"},
      {"TamrixCB1", Kind::TamrixCB, "Démarrage", "TamrixFrm3"},
      {"Label1", Kind::Label, nullptr, "Frame1"},
      {"command6", Kind::TamrixCmd, "&Optimisez votre windows", "Frame1"},
      {"Label16", Kind::Label, "Patientez ..", "Frame1"},
      {"TamrixPBar1", Kind::TamrixPBar, "", "Frame1"},
      {"box5", Kind::TamrixCB, "Visualiser *.bmp", "Frame1"},
      {"box7", Kind::TamrixCB, "Lecture de DVD", "Frame1"},
      {"box8", Kind::TamrixCB, "Activer Ouvrir avec ..", "Frame1"},
  };
  for (const auto& n : controls) {
    Control* c = FindControl(form.windowsPage.Frame1, n.name);
    ASSERT_NE(c, nullptr) << n.name;
    EXPECT_EQ(c->kind(), n.kind) << n.name;
    if (n.caption) {
      EXPECT_EQ(c->Caption(), n.caption) << n.name;
    }
    EXPECT_EQ(c->Parent()->Name(), n.parent) << n.name;
  }
  int count = 0;
  ForEachControl(form.windowsPage.Frame1, [&](Control&) { ++count; });
  EXPECT_EQ(count, 1 + static_cast<int>(std::size(controls)));
}

TEST_F(Layout, QuoteLabelServesOnlyForItsCaption) {
  EXPECT_FALSE(form.windowsPage.lblGuil.Visible());
}

}  // namespace
}  // namespace tamrix
