#include "sysinfo/CMixer.h"

#include <algorithm>

#include "platform/Runtime.h"
#include "sysinfo/Module2.h"

namespace tamrix {

namespace {

constexpr int kInvalidPropertyValue = 380;
constexpr int kSubscriptOutOfRange = 9;
constexpr std::uint32_t kLineActive = 0x1;           // MIXERLINE_LINEF_ACTIVE
constexpr std::uint32_t kLineDisconnected = 0x8000;  // MIXERLINE_LINEF_DISCONNECTED

template <class T>
const T& At(const std::vector<T>& v, std::int64_t i) {
  if (i < 0 || i >= static_cast<std::int64_t>(v.size())) throw RuntimeError(kSubscriptOutOfRange, "Subscript out of range");
  return v[static_cast<std::size_t>(i)];
}

template <class T>
T& At(std::vector<T>& v, std::int64_t i) {
  return const_cast<T&>(At(static_cast<const std::vector<T>&>(v), i));
}

// A fixed text field ends at its first NUL.
std::string CutAtNul(const std::string& field) { return field.substr(0, field.find('\0')); }

std::string Num(std::int64_t n) { return rt::IntToText(n); }

}  // namespace

CMixer::~CMixer() { CloseMixers(); }

std::int32_t CMixer::Create(std::int32_t /*parentHwnd*/) {
  if (NumMixerDevs_ != 0) CloseMixers();  // a second Create starts clean
  NumMixerDevs_ = static_cast<std::int32_t>(p_.mixerGetNumDevs());
  if (NumMixerDevs_ == 0) return 0;
  dstLineIDs_.assign(static_cast<std::size_t>(NumMixerDevs_), 0);
  mixerCaps_.assign(static_cast<std::size_t>(NumMixerDevs_), MixerCaps{});
  for (std::int32_t i = 0; i < NumMixerDevs_; ++i) {
    auto code = static_cast<std::int32_t>(p_.mixerGetDevCapsA(static_cast<std::uint32_t>(i), &At(mixerCaps_, i),
                                                              mixerline::kCapsSize));
    if (code != 0) throw RuntimeError(code, Module2::MixerErrorText(code), "CMixer:Create");
  }
  OpenMixers();
  InitializeDestLines();
  InitializeSrcLine();
  return NumMixerDevs_;
}

MixerHandle CMixer::OpenMixers() {
  if (NumMixerDevs_ >= 1) hMixers_.resize(static_cast<std::size_t>(NumMixerDevs_), 0);  // contents kept
  for (MixerHandle& h : hMixers_) {
    if (h != 0) p_.mixerClose(h);
    h = 0;
  }
  for (std::int32_t i = 0; i < NumMixerDevs_; ++i) {
    auto code = static_cast<std::int32_t>(p_.mixerOpen(&At(hMixers_, i), static_cast<std::uint32_t>(i), 0, 0, 0));
    // The name is the picked mixer's, whichever failed to open.
    if (code != 0)
      throw RuntimeError(code, "Could not open " + GetMixerName(i) + "\r\nError: " + Module2::MixerErrorText(code),
                         "CMixer:OpenMixers");
  }
  return At(hMixers_, MixerID_);
}

std::int32_t CMixer::InitializeDestLines() {
  std::uint32_t most = 1;
  for (const MixerCaps& caps : mixerCaps_) most = std::max(most, caps.cDestinations);
  dstLines_.assign(most, std::vector<MixerLine>(static_cast<std::size_t>(NumMixerDevs_)));
  for (std::int32_t i = 0; i < NumMixerDevs_; ++i) {
    for (std::uint32_t d = 0; d < At(mixerCaps_, i).cDestinations; ++d) {
      MixerLine& line = At(At(dstLines_, d), i);
      line.cbStruct = mixerline::kSize;
      line.dwDestination = d;
      auto code = static_cast<std::int32_t>(p_.mixerGetLineInfoA(At(hMixers_, i), &line, mixerline::GetDestination));
      if (code != 0)
        throw RuntimeError(code,
                           "Could not retrieve line info for " + GetMixerName(i) + "\r\nError: " +
                               Module2::MixerErrorText(code),
                           "CMixer:InitializeDestLines");
    }
  }
  return static_cast<std::int32_t>(DstLine().cControls);
}

// Doesn't look at cConnections: a destination without sources gets the platform's refusal,
// raised like any other.
std::int32_t CMixer::InitializeSrcLine() {
  srcLine_.cbStruct = mixerline::kSize;
  srcLine_.dwDestination = static_cast<std::uint32_t>(DstLineID());
  srcLine_.dwSource = static_cast<std::uint32_t>(SrcLineID_);
  auto code = static_cast<std::int32_t>(p_.mixerGetLineInfoA(hMixer(), &srcLine_, mixerline::GetSource));
  if (code != 0)
    throw RuntimeError(code,
                       "Could not retrieve line info for " + GetMixerName(MixerID_) + "\r\nError: " +
                           Module2::MixerErrorText(code),
                       "CMixer:InitializeSrcLine");
  return static_cast<std::int32_t>(srcLine_.cControls);
}

void CMixer::SetMixerID(std::int32_t value) {
  if (value == MixerID_) return;
  if (value < 0 || value > NumMixerDevs_ - 1) {
    // The class raises this one and swallows it itself: the caller sees nothing, and the pick
    // stays as it was.
    ResumeNext([&] {
      throw RuntimeError(kInvalidPropertyValue, "There are only " + Num(NumMixerDevs_) + "mixers on this system.",
                         "CMixer:MixerID[LET]");
    });
    return;
  }
  MixerID_ = value;  // the source line isn't read again, and SrcLineID keeps its value
}

std::int32_t CMixer::DstLineID() const { return At(dstLineIDs_, MixerID_); }

void CMixer::SetDstLineID(std::int32_t value) {
  if (value < 0 || value > numDestinations() - 1)
    throw RuntimeError(kInvalidPropertyValue,
                       "There are only " + Num(numDestinations()) + " destination lines on this mixer.",
                       "CMixer:DstLineID[LET]");
  At(dstLineIDs_, MixerID_) = value;  // the source line stays as it was read until SrcLineID is set
}

void CMixer::SetSrcLineID(std::int32_t value) {
  if (value < 0 || value > numDstLineConnections() - 1)
    throw RuntimeError(kInvalidPropertyValue,
                       "There are only " + Num(numDstLineConnections()) +
                           " source lines associated with the current destination line ( " + DstLineName(false) + " )",
                       "CMixer:SrcLineID[LET]");
  const std::int32_t keptID = SrcLineID_;
  const MixerLine keptLine = srcLine_;
  SrcLineID_ = value;
  try {
    InitializeSrcLine();  // each setting is a fresh read
  } catch (const RuntimeError&) {
    SrcLineID_ = keptID;
    srcLine_ = keptLine;
    throw;
  }
}

std::string CMixer::MixerName() const { return GetMixerName(MixerID_); }
MixerHandle CMixer::hMixer() const { return At(hMixers_, MixerID_); }
std::int32_t CMixer::numDestinations() const { return static_cast<std::int32_t>(At(mixerCaps_, MixerID_).cDestinations); }
std::int32_t CMixer::MixerVerMajor() const {
  return Module2::HiByte(Module2::LoWord(At(mixerCaps_, MixerID_).vDriverVersion));
}
std::int32_t CMixer::MixerVerMinor() const {
  return Module2::LoByte(Module2::LoWord(At(mixerCaps_, MixerID_).vDriverVersion));
}

std::string CMixer::DstLineName(bool LongName) const { return GetDstLineName(LongName); }
std::string CMixer::SrcLineName(bool LongName) const { return GetSrcLineName(LongName); }

std::int32_t CMixer::numDstLineChannels() const { return static_cast<std::int32_t>(DstLine().cChannels); }
std::int32_t CMixer::numDstLineControls() const { return static_cast<std::int32_t>(DstLine().cControls); }
std::int32_t CMixer::numDstLineConnections() const { return static_cast<std::int32_t>(DstLine().cConnections); }
bool CMixer::DstLineActive() const { return (DstLine().fdwLine & kLineActive) != 0; }
bool CMixer::DstLineDisconnected() const { return (DstLine().fdwLine & kLineDisconnected) != 0; }
std::int32_t CMixer::DstLineType() const { return static_cast<std::int32_t>(DstLine().dwComponentType); }
std::int32_t CMixer::DstLineTarget() const { return static_cast<std::int32_t>(DstLine().Target.dwType); }

std::int32_t CMixer::numSrcLineChannels() const { return static_cast<std::int32_t>(srcLine_.cChannels); }
std::int32_t CMixer::numSrcLineControls() const { return static_cast<std::int32_t>(srcLine_.cControls); }
std::int32_t CMixer::numSrcLineConnections() const { return static_cast<std::int32_t>(srcLine_.cConnections); }
bool CMixer::SrcLineActive() const { return (srcLine_.fdwLine & kLineActive) != 0; }
bool CMixer::SrcLineDisconnected() const { return (srcLine_.fdwLine & kLineDisconnected) != 0; }
std::int32_t CMixer::SrcLineType() const { return static_cast<std::int32_t>(srcLine_.dwComponentType); }
std::int32_t CMixer::SrcLineTarget() const { return static_cast<std::int32_t>(srcLine_.Target.dwType); }

// The index is ignored: the name is always the picked mixer's.
std::string CMixer::GetMixerName(std::int32_t /*index*/) const { return CutAtNul(At(mixerCaps_, MixerID_).szPname); }

std::string CMixer::GetDstLineName(bool LongName) const {
  return CutAtNul(LongName ? DstLine().szName : DstLine().szShortName);
}

std::string CMixer::GetSrcLineName(bool LongName) const {
  return CutAtNul(LongName ? srcLine_.szName : srcLine_.szShortName);
}

void CMixer::CloseMixers() {
  for (MixerHandle& h : hMixers_) {
    p_.mixerClose(h);  // its result isn't read
    h = 0;
  }
  NumMixerDevs_ = 0;
  MixerID_ = 0;
  SrcLineID_ = 0;
  mixerCaps_.assign(1, MixerCaps{});
  hMixers_.assign(1, 0);
  dstLines_.assign(1, std::vector<MixerLine>(1));
  dstLineIDs_.assign(1, 0);
}

const MixerLine& CMixer::DstLine() const { return At(At(dstLines_, DstLineID()), MixerID_); }

}  // namespace tamrix
