#include "forms/Form1.h"

#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr bool S = true;   // shown
constexpr bool H = false;  // hidden

// The corners of the window are cut by an ellipse of this size, whatever the client area.
constexpr long kCornerEllipse = 50;

constexpr unsigned kWmNcLButtonDown = 161;
constexpr unsigned kHtCaption = 2;

Design Nav(const char* name, const char* caption, int left, int width, const char* tip) {
  return {.name = name, .caption = caption, .rect = {left, 5650, width, 460}, .tip = tip};
}

// The sub-page strip of Test Lab: flat buttons on the skin's beige, blue under the pointer.
Design Strip(const char* name, const char* caption, int left, int width, const char* picture = "") {
  return {.name = name, .caption = caption, .rect = {left, 3525, width, 375}, .backColor = colors::Beige,
          .picture = picture, .buttonType = 1, .officeOverColor = colors::HoverBlue, .centerPicture = false};
}

}  // namespace

Form1::Form1(Platform& platform)
    : Form({.name = "Form1",
            .caption = " Tamrix Utility 3.0 Pro (Win 9.x - NT4.0 - 2000 - Xp - 2003)",
            .rect = {0, 0, 7860, 6240},
            .picture = "background"}),
      p_(platform),
      Image7(this, {.name = "Image7", .rect = {240, 180, 6600, 1080}, .picture = "title"}),
      Minimised(this, {.name = "Minimised", .rect = {7080, 330, 240, 240}, .tip = "Réduire", .picture = "minimise"}),
      Closed(this, {.name = "Closed", .rect = {7380, 330, 240, 240}, .tip = "Fermer", .picture = "close"}),
      Timer1(this, {.name = "Timer1", .enabled = true, .interval = 200}),
      Timer2(this, {.name = "Timer2", .enabled = true, .interval = 1000}),
      Timer3(this, {.name = "Timer3", .enabled = false, .interval = 150}),
      Timer4(this, {.name = "Timer4", .enabled = false, .interval = 500}),
      homePage(*this, platform),
      windowsPage(*this, platform, Timer4),
      internetPage(*this, platform, Timer3),
      Frame3(this, {.name = "Frame3", .caption = "Information  Système", .rect = {240, 1440, 7455, 3975}}),
      biosPage(Frame3, platform),
      infoWindows(Frame3, platform),
      infoPc(Frame3, platform),
      drivesPage(Frame3, platform),
      cpuPage(Frame3, platform),
      soundPage(Frame3, platform),
      TamrixCmd3(&Frame3, Strip("TamrixCmd3", "Info Lecteurs", 120, 1215)),
      TamrixCmd11(&Frame3, Strip("TamrixCmd11", "Info Son", 1440, 1095)),
      TamrixCmd2(&Frame3, Strip("TamrixCmd2", "Info Windows", 2640, 1215)),
      command2(&Frame3, Strip("command2", "Info  PC", 3960, 975)),
      TamrixCmd6(&Frame3, Strip("TamrixCmd6", "Info BIOS", 5040, 975, "bios")),
      TamrixCmd4(&Frame3, Strip("TamrixCmd4", "Test du CPU", 6120, 1215)),
      aboutPage(*this),
      protection(*this, platform),
      Frame4(homePage.Frame4),
      Frame1(windowsPage.Frame1),
      Frame2(internetPage.Frame2),
      Propos(aboutPage.Propos),
      frmprot(protection.frmprot),
      fwindows(infoWindows.fwindows),
      pc(infoPc.pc),
      disque(drivesPage.disque),
      FrmBios(biosPage.FrmBios),
      FrmCpu(cpuPage.FrmCpu),
      Frmson(soundPage.Frmson),
      command3(this, Nav("command3", "Accueil", 240, 735, ".. Retour à la page de démarrage ..")),
      win(this, Nav("win", "&Windows", 1080, 975, ".. Optimisez votre Windows ..")),
      internet(this, Nav("internet", "&Internet", 2160, 975, ".. Optimisez votre connexion internet ..")),
      sys(this, Nav("sys", "Test &Lab", 3240, 1215, ".. Testez votre materiels ..")),
      TamrixCmd7(this, {.name = "TamrixCmd7", .caption = "&Protection", .rect = {4560, 5640, 1095, 465},
                        .tip = ".. Protégez votre système ..", .picture = "protect", .centerPicture = false}),
      apro(this, Nav("apro", "&A propos", 5760, 975, ".. Pour savoir plus sur Tamrix Utility 3.0 Pro ..")),
      TamrixCmd1(this, {.name = "TamrixCmd1", .caption = "&Quitter", .rect = {6840, 5650, 735, 460}, .font = {"Arial", 8.25},
                        .picture = "quit", .centerPicture = false}),
      Shape1(this, {.name = "Shape1", .rect = {150, 1350, 7560, 4155}, .borderColor = colors::LightGrey}),
      Shape2(this, {.name = "Shape2", .rect = {150, 5580, 7560, 600}, .borderColor = colors::LightGrey}) {
  OnLoad = [this] { FormLoad(); };
  Timer1.OnTimer = [this] { homePage.Timer1Tick(); };
  Timer2.OnTimer = [this] { homePage.Timer2Tick(); };
  Timer3.OnTimer = [this] { internetPage.Timer3Tick(); };
  Timer4.OnTimer = [this] { windowsPage.Timer4Tick(); };

  auto drag = [this](int button, int, int, int) { DragWindow(button); };
  OnMouseDown = drag;
  Image7.OnMouseDown = drag;

  Minimised.OnClick = [this] { SetWindowState(1); };
  TamrixCmd1.OnClick = [this] { Unload(); };
  Closed.OnClick = [this] { TamrixCmd1.Click(); };  // the two ways out stay one

  WireNavigation();
}

// Each button switches its frames in its own order, then starts its page's entry. Note that
// sys doesn't touch pc: a PC sub-page left open stays visible behind fwindows, which lies in
// front and is what the user sees.
void Form1::WireNavigation() {
  command3.OnClick = [this] {
    ShowPages({{&Frame4, S}, {&Frame3, H}, {&Frame2, H}, {&Frame1, H}, {&Propos, H}, {&frmprot, H}});
  };
  win.OnClick = [this] {
    ShowPages({{&Frame1, S}, {&Propos, H}, {&Frame2, H}, {&Frame3, H}, {&Frame4, H}, {&frmprot, H}});
    windowsPage.LoadTicks();
  };
  internet.OnClick = [this] {
    ShowPages({{&Frame1, H}, {&Propos, H}, {&Frame2, S}, {&Frame3, H}, {&Frame4, H}, {&frmprot, H}});
    internetPage.Modem1.SetValue(true);  // the choice of an earlier visit is dropped
  };
  sys.OnClick = [this] {
    ShowPages({{&Frame3, S}, {&Frame1, H}, {&Frame4, H}, {&Frame2, H}, {&FrmBios, H}, {&Propos, H}, {&FrmCpu, H},
               {&fwindows, S}, {&frmprot, H}, {&Frmson, H}, {&disque, H}});
    infoWindows.InfoWindows();
  };
  TamrixCmd7.OnClick = [this] {
    ShowPages({{&Frame1, H}, {&Propos, H}, {&Frame2, H}, {&Frame3, H}, {&Frame4, H}, {&frmprot, S}});
    protection.LoadRestrictions();
  };
  apro.OnClick = [this] {
    // The text is set before the other pages are hidden, so Propos may paint over the old page
    // for a moment.
    Propos.SetVisible(true);
    aboutPage.SetText();
    ShowPages({{&Frame4, H}, {&Frame3, H}, {&Frame2, H}, {&Frame1, H}, {&frmprot, H}});
    aboutPage.SetScrollRange();
  };

  command2.OnClick = [this] {
    ShowPages({{&pc, S}, {&fwindows, H}, {&disque, H}, {&FrmBios, H}, {&FrmCpu, H}, {&Frmson, H}});
    infoPc.InfoPc();
  };
  TamrixCmd2.OnClick = [this] {
    ShowPages({{&pc, H}, {&fwindows, S}, {&disque, H}, {&FrmBios, H}, {&FrmCpu, H}, {&Frmson, H}});
    infoWindows.InfoWindows();
  };
  TamrixCmd3.OnClick = [this] {
    ShowPages({{&disque, S}, {&fwindows, H}, {&pc, H}, {&FrmBios, H}, {&FrmCpu, H}, {&Frmson, H}});
    drivesPage.InfoLecteur();
  };
  TamrixCmd6.OnClick = [this] {
    ShowPages({{&FrmBios, S}, {&pc, H}, {&fwindows, H}, {&disque, H}, {&FrmCpu, H}, {&Frmson, H}});
  };
  TamrixCmd11.OnClick = [this] {
    ShowPages({{&pc, H}, {&fwindows, H}, {&disque, H}, {&FrmBios, H}, {&FrmCpu, H}, {&Frmson, S}});
  };
  TamrixCmd4.OnClick = [this] {
    ShowPages({{&FrmBios, H}, {&pc, H}, {&fwindows, H}, {&disque, H}, {&FrmCpu, S}, {&Frmson, H}});
    cpuPage.FillProcessorLabels();
  };
}

void Form1::FormLoad() {
  // A second start leaves in silence: no message, no window, the first one untouched.
  if (p_.EarlierInstanceRunning()) {
    Unload();
    return;
  }

  RectPx r = p_.GetClientRect(hWnd);
  GdiHandle region = p_.CreateRoundRectRgn(r.left, r.top, r.right, r.bottom, kCornerEllipse, kCornerEllipse);
  p_.SetWindowRgn(hWnd, region, true);
  p_.DeleteObject(region);  // after the window has taken it; the result isn't looked at

  // The home page first, whatever the last run showed.
  Frame4.SetVisible(true);
  Frame1.SetVisible(false);
  Propos.SetVisible(false);
  frmprot.SetVisible(false);
  Timer3.SetEnabled(false);
  Timer4.SetEnabled(false);
  Frame3.SetVisible(false);
  Frame2.SetVisible(false);

  // The BIOS characteristics table, the mixer slice and the drive lists join the load here, in
  // that order, with the pages that show them.
}

void Form1::DragWindow(int button) {
  if (button != 1) return;  // only the left button moves the window
  p_.ReleaseCapture();
  p_.SendMessageA(hWnd, kWmNcLButtonDown, kHtCaption, 0);
}

void Form1::ShowPages(std::initializer_list<std::pair<Control*, bool>> rows) {
  for (const auto& [frame, visible] : rows) frame->SetVisible(visible);
}

}  // namespace tamrix
