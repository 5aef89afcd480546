#include "sysinfo/SoundPage.h"

#include <cstdint>
#include <string>

#include "sysinfo/Module2.h"

namespace tamrix {

SoundPage::SoundPage(Control& testLab, Platform& platform, CMixer& mixer)
    : p_(platform),
      mixer_(mixer),
      Frmson(&testLab, {.name = "Frmson", .caption = "Information sur le materiel de son :", .rect = {120, 240, 7215, 3255}}),
      lblMxList(&Frmson, {.name = "lblMxList", .caption = "Carte Son :", .rect = {180, 420, 1080, 255}, .backStyle = 0}),
      cbMixerList(&Frmson, {.name = "cbMixerList", .rect = {1260, 375, 5760, 315}}),
      framDestInfo(&Frmson, {.name = "framDestInfo", .caption = "Information sur les entrées :", .rect = {120, 810, 3420, 2325},
                             .backColor = colors::Beige}),
      Label23(&framDestInfo, {.name = "Label23", .caption = "Entrées:", .rect = {120, 330, 780, 255}, .backColor = colors::Beige}),
      cbDstLineList(&framDestInfo, {.name = "cbDstLineList", .rect = {900, 285, 2400, 315}}),
      lstDstLineInfo(&framDestInfo, {.name = "lstDstLineInfo", .rect = {120, 690, 3180, 1515}, .font = {"Lucida Sans Unicode"}}),
      framSrcInfo(&Frmson, {.name = "framSrcInfo", .caption = "Source Line Info", .rect = {3675, 810, 3420, 2325},
                            .backColor = colors::Beige}),
      Label24(&framSrcInfo, {.name = "Label24", .caption = "Entrées:", .rect = {120, 330, 780, 255}, .backColor = colors::Beige}),
      cbSrcLineList(&framSrcInfo, {.name = "cbSrcLineList", .rect = {900, 285, 2400, 315}}),
      lstSrcLineInfo(&framSrcInfo, {.name = "lstSrcLineInfo", .rect = {120, 690, 3180, 1515}, .font = {"Lucida Sans Unicode"}}) {
  cbMixerList.OnClick = [this] { MixerListClick(); };
  cbDstLineList.OnClick = [this] { DstLineListClick(); };
  cbSrcLineList.OnClick = [this] { SrcLineListClick(); };
  // A row too long for the box can be read whole in the tip.
  lstDstLineInfo.OnClick = [this] { lstDstLineInfo.SetToolTipText(lstDstLineInfo.Text()); };
  lstSrcLineInfo.OnClick = [this] { lstSrcLineInfo.SetToolTipText(lstSrcLineInfo.Text()); };
}

namespace {

constexpr int kHourglass = 11;
constexpr int kDefaultPointer = 0;

std::string Num(std::int64_t n) { return rt::IntToText(n); }

}  // namespace

void SoundPage::ShowError(const ErrObject& err) {
  p_.MessageBoxA(err.Description() + " src: " + err.Source(), mb::Ok, rt::kAppTitle);
}

// Every statement from Create on runs with errors ignored; the pending error is looked at where
// the slice chooses to.
bool SoundPage::LoadMixers(Form& form) {
  form.SetMousePointer(kHourglass);
  ErrObject err;
  std::int32_t count = 0;
  bool answered = false;
  err.Run([&] {
    count = mixer_.Create(static_cast<std::int32_t>(form.hWnd));
    answered = true;
  });
  // A fault in Create lands on the box too, as the statement after the failed test: a mixer
  // that won't open looks like no mixer at all. The hourglass stays, and so do empty lists.
  if (!answered || count == 0) {
    p_.MessageBoxA("No Audio Mixers Detected!", mb::Ok | mb::Critical, rt::kAppTitle);
    return false;
  }
  if (err.Pending()) ShowError(err);
  for (std::int32_t i = 0; i <= mixer_.NumMixerDevs() - 1; ++i) {
    err.Run([&] { mixer_.SetMixerID(i); });
    if (err.Pending()) {
      ShowError(err);
      err.Run([&] { cbMixerList.SetListIndex(0); });
      form.SetMousePointer(kDefaultPointer);
      return false;
    }
    err.Run([&] { cbMixerList.AddItem(mixer_.MixerName()); });
  }
  err.Run([&] { cbMixerList.SetListIndex(0); });  // the cascade fills the rest of the page
  form.SetMousePointer(kDefaultPointer);
  return true;
}

void SoundPage::MixerListClick() {
  ErrObject err;
  err.Run([&] { mixer_.SetMixerID(cbMixerList.ListIndex()); });
  if (err.Pending()) {
    ShowError(err);
    err.Run([&] { cbDstLineList.SetListIndex(0); });
    return;
  }
  cbDstLineList.Clear();
  std::int32_t destinations = 0;
  err.Run([&] { destinations = mixer_.numDestinations(); });
  for (std::int32_t i = 0; i <= destinations - 1; ++i) {
    err.Run([&] { mixer_.SetDstLineID(i); });
    if (err.Pending()) {
      ShowError(err);
      err.Run([&] { cbDstLineList.SetListIndex(0); });
      return;
    }
    err.Run([&] { cbDstLineList.AddItem(mixer_.DstLineName(true)); });
  }
  // Always destination 0 again, though the class remembers a line per mixer.
  err.Run([&] { cbDstLineList.SetListIndex(0); });
}

void SoundPage::DstLineListClick() {
  ErrObject err;
  err.Run([&] { mixer_.SetDstLineID(cbDstLineList.ListIndex()); });
  ShowDstLineInfo();
  if (err.Pending()) ShowError(err);  // and on all the same
  cbSrcLineList.Clear();
  std::int32_t connections = 0;
  err.Run([&] { connections = mixer_.numDstLineConnections(); });
  if (connections < 1) {
    cbSrcLineList.AddItem("<none>");
  } else {
    for (std::int32_t i = 0; i <= connections - 1; ++i) {
      err.Run([&] { mixer_.SetSrcLineID(i); });  // a fresh read of that line
      if (err.Pending()) {
        cbSrcLineList.AddItem("<error>");
        err.Clear();  // so that the other lines are still listed
      } else {
        err.Run([&] { cbSrcLineList.AddItem(mixer_.SrcLineName(true)); });
      }
    }
  }
  err.Run([&] { cbSrcLineList.SetListIndex(0); });
}

// "<none>" is picked like any line: the class refuses source 0 of a destination without
// sources, the box says so, and the source report keeps what it showed before.
void SoundPage::SrcLineListClick() {
  ErrObject err;
  err.Run([&] { mixer_.SetSrcLineID(cbSrcLineList.ListIndex()); });
  if (err.Pending()) {
    ShowError(err);
  } else {
    ShowSrcLineInfo();
  }
}

void SoundPage::ShowDstLineInfo() {
  ErrObject err;
  const std::string rule = "=========================";
  lstDstLineInfo.Clear();
  auto row = [&](auto text) { err.Run([&] { lstDstLineInfo.AddItem(text()); }); };
  row([&] { return rule; });
  row([&] { return mixer_.DstLineName(true); });
  row([&] { return rule; });
  row([&] { return "Line ID: " + Num(mixer_.DstLineID()); });
  row([&] { return "Line is disconnected: " + p_.BooleanText(mixer_.DstLineDisconnected()); });
  row([&] { return "Line is active: " + p_.BooleanText(mixer_.DstLineActive()); });
  row([&] { return "Nombres de Canneaux: " + Num(mixer_.numDstLineChannels()); });
  row([&] { return "Nombres de Controls: " + Num(mixer_.numDstLineControls()); });
  row([&] { return "Nombres de Connections: " + Num(mixer_.numDstLineConnections()); });
  row([&] { return "Audio Line Type: " + Module2::LineTypeText(mixer_.DstLineType()); });
  row([&] { return "Line Target Type: " + Module2::LineTargetText(mixer_.DstLineTarget()); });
}

// The same report on the source line; its connections row has two colons.
void SoundPage::ShowSrcLineInfo() {
  ErrObject err;
  const std::string rule = "=========================";
  lstSrcLineInfo.Clear();
  auto row = [&](auto text) { err.Run([&] { lstSrcLineInfo.AddItem(text()); }); };
  row([&] { return rule; });
  row([&] { return mixer_.SrcLineName(true); });
  row([&] { return rule; });
  row([&] { return "Line ID: " + Num(mixer_.SrcLineID()); });
  row([&] { return "Line is disconnected: " + p_.BooleanText(mixer_.SrcLineDisconnected()); });
  row([&] { return "Line is active: " + p_.BooleanText(mixer_.SrcLineActive()); });
  row([&] { return "Nombres de Canneaux: " + Num(mixer_.numSrcLineChannels()); });
  row([&] { return "Nombres de Controls: " + Num(mixer_.numSrcLineControls()); });
  row([&] { return "Nombres de Connections:: " + Num(mixer_.numSrcLineConnections()); });
  row([&] { return "Audio Line Type: " + Module2::LineTypeText(mixer_.SrcLineType()); });
  row([&] { return "Line Target Type: " + Module2::LineTargetText(mixer_.SrcLineTarget()); });
}

}  // namespace tamrix
