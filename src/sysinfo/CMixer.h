// CMixer: a read-only model of the machine's audio mixers. Create opens every mixer and reads
// every mixer's capabilities and every destination line once; a caller then picks a mixer, a
// destination and a source by number, in that order, and reads the picked lines' facts. The
// platform's refusals come back as raised errors whose description is a sentence for the user.
// It sets no volume and touches no control of a line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix {

class CMixer {
 public:
  explicit CMixer(Platform& platform) : p_(platform) {}
  ~CMixer();  // the handles go back however the object goes
  CMixer(const CMixer&) = delete;
  CMixer& operator=(const CMixer&) = delete;

  // The number of mixers; 0, with nothing raised, when the machine has none. The window handle
  // isn't used.
  std::int32_t Create(std::int32_t parentHwnd);
  // Reads every destination line of every mixer; gives cControls of the picked destination.
  std::int32_t InitializeDestLines();

  std::int32_t MixerID() const { return MixerID_; }
  void SetMixerID(std::int32_t value);
  std::int32_t DstLineID() const;
  void SetDstLineID(std::int32_t value);
  std::int32_t SrcLineID() const { return SrcLineID_; }
  void SetSrcLineID(std::int32_t value);

  std::string MixerName() const;
  std::int32_t NumMixerDevs() const { return NumMixerDevs_; }
  MixerHandle hMixer() const;
  std::int32_t numDestinations() const;
  std::int32_t MixerVerMajor() const;
  std::int32_t MixerVerMinor() const;

  std::string DstLineName(bool LongName = false) const;
  std::string SrcLineName(bool LongName = false) const;
  std::int32_t numDstLineChannels() const;
  std::int32_t numDstLineControls() const;
  std::int32_t numDstLineConnections() const;
  bool DstLineActive() const;
  bool DstLineDisconnected() const;
  std::int32_t DstLineType() const;
  std::int32_t DstLineTarget() const;
  std::int32_t numSrcLineChannels() const;
  std::int32_t numSrcLineControls() const;
  std::int32_t numSrcLineConnections() const;
  bool SrcLineActive() const;
  bool SrcLineDisconnected() const;
  std::int32_t SrcLineType() const;
  std::int32_t SrcLineTarget() const;

 private:
  MixerHandle OpenMixers();
  std::int32_t InitializeSrcLine();
  std::string GetMixerName(std::int32_t index) const;
  std::string GetDstLineName(bool LongName) const;
  std::string GetSrcLineName(bool LongName) const;
  void CloseMixers();

  const MixerLine& DstLine() const;

  Platform& p_;

  // The state, in its order. A vector left empty is an array not yet sized: reading it is a
  // subscript fault, as reading a getter before Create is the caller's mistake.
  std::int32_t NumMixerDevs_ = 0;
  std::int32_t MixerID_ = 0;
  std::vector<MixerHandle> hMixers_;
  std::vector<MixerCaps> mixerCaps_;
  std::vector<std::vector<MixerLine>> dstLines_;  // by destination, then by mixer
  std::vector<std::int32_t> dstLineIDs_;          // the picked destination of each mixer
  MixerLine srcLine_;
  std::int32_t SrcLineID_ = 0;  // one for the whole object, not one per mixer
};

}  // namespace tamrix
