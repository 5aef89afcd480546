#include <memory>

#include "contract/RegistryBench.h"
#include "fake/FakePlatform.h"

namespace tamrix::test {

namespace {

class FakeBench : public RegistryBench {
 public:
  Platform& platform() override { return fake_; }
  std::string Scratch() override { return "Software\\TamrixTest\\Case"; }
  void CreateKey(HKey hive, const std::string& path) override { fake_.CreateKey(hive, path); }
  bool KeyExists(HKey hive, const std::string& path) override { return fake_.KeyExists(hive, path); }
  void SetRaw(HKey hive, const std::string& path, const std::string& name, std::uint32_t type,
              const std::string& data) override {
    fake_.SetValue(hive, path, name, type, data);
  }
  RawValue GetRaw(HKey hive, const std::string& path, const std::string& name) override {
    const auto* v = fake_.GetValue(hive, path, name);
    if (!v) return {};
    return {true, v->type, v->data, fake::FakePlatform::SizeOf(*v)};
  }
  bool DenyWrite(HKey hive, const std::string& path) override {
    fake_.DenyWrite(hive, path);
    return true;
  }

 private:
  fake::FakePlatform fake_;
};

}  // namespace

std::unique_ptr<RegistryBench> MakeRegistryBench() { return std::make_unique<FakeBench>(); }

}  // namespace tamrix::test
