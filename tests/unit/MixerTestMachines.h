// Scripted sound cards for the mixer tests: fixed text fields padded the way the platform fills
// them, with something after the NUL so that a name that isn't cut shows it.
#pragma once

#include <string>
#include <vector>

#include "fake/FakePlatform.h"

namespace tamrix::test {

using FakeMixer = fake::FakePlatform::FakeMixer;
using FakeDestination = fake::FakePlatform::FakeDestination;

inline std::string Field(const std::string& text, std::size_t length) {
  std::string f = text + std::string(1, '\0') + "junk";
  f.resize(length, '\0');
  return f;
}

inline MixerLine Line(const std::string& shortName, const std::string& name, std::uint32_t type = 4104,
                      std::uint32_t target = 1, std::uint32_t connections = 0) {
  MixerLine l;
  l.fdwLine = 1;
  l.dwComponentType = type;
  l.cChannels = 2;
  l.cControls = 3;
  l.cConnections = connections;
  l.szShortName = Field(shortName, mixerline::kShortNameLength);
  l.szName = Field(name, mixerline::kNameLength);
  l.Target.dwType = target;
  return l;
}

// A destination that claims as many connections as it lists sources.
inline FakeDestination Destination(const std::string& shortName, const std::string& name, std::vector<MixerLine> sources,
                                   std::uint32_t type = 4, std::uint32_t target = 1) {
  FakeDestination d;
  d.line = Line(shortName, name, type, target, static_cast<std::uint32_t>(sources.size()));
  d.sources = std::move(sources);
  return d;
}

// A mixer that claims as many destinations as it lists.
inline FakeMixer Mixer(const std::string& name, std::vector<FakeDestination> destinations,
                       std::uint32_t version = 0x0100) {
  FakeMixer m;
  m.caps.szPname = Field(name, mixerline::kPnameLength);
  m.caps.vDriverVersion = version;
  m.caps.cDestinations = static_cast<std::uint32_t>(destinations.size());
  m.destinations = std::move(destinations);
  return m;
}

}  // namespace tamrix::test
