// The profile expectations against the fake's files.
#include "contract/ProfileContract.h"
#include "fake/FakePlatform.h"

namespace tamrix::test {

namespace {

class FakeProfileBench : public ProfileBench {
 public:
  Platform& platform() override { return p_; }
  std::string Path(const std::string& name) override { return "C:\\Tamrix Tests\\" + name; }
  void Put(const std::string& path, const std::string& text) override { p_.File(path) = text; }
  std::optional<std::string> Get(const std::string& path) override {
    if (!p_.HasFile(path)) return std::nullopt;
    return p_.File(path);
  }

 private:
  fake::FakePlatform p_;
};

}  // namespace

std::unique_ptr<ProfileBench> MakeProfileBench() { return std::make_unique<FakeProfileBench>(); }

}  // namespace tamrix::test
