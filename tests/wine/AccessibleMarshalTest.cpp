// What a screen reader meets when it asks a window of ours for its object from another process:
// the system hands the object over as an LRESULT made by LresultFromObject, which marshals it
// through the COM servers registered in the system's half of the program's width. Where those
// are missing, the marshalling fails and a reader outside hears the system's default object
// instead of the control's own.
#include <windows.h>
#include <oleacc.h>

#include <gtest/gtest.h>

#include <string>

namespace {

// The interface's real identity: mingw's uuid library carries another value for IID_IAccessible.
constexpr GUID kIidAccessible = {0x618736E0, 0x3C3D, 0x11CF, {0x81, 0x0C, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

// A push button of the system's own, named as one of ours.
class AccessibleHandOver : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    button = CreateWindowExA(0, "BUTTON", "Appliquer", WS_POPUP | BS_PUSHBUTTON, 0, 0, 80, 24, nullptr, nullptr,
                             GetModuleHandleA(nullptr), nullptr);
    ASSERT_TRUE(button);
  }
  void TearDown() override {
    if (button) DestroyWindow(button);
    CoUninitialize();
  }
  HWND button = nullptr;
};

struct Read {
  long role = 0;
  std::string name;
};

Read ReadOf(IAccessible* acc) {
  Read r;
  VARIANT self{};
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  VARIANT role{};
  if (SUCCEEDED(acc->get_accRole(self, &role)) && role.vt == VT_I4) r.role = role.lVal;
  BSTR name = nullptr;
  if (SUCCEEDED(acc->get_accName(self, &name)) && name) {
    for (UINT i = 0; i < SysStringLen(name); ++i) r.name += static_cast<char>(name[i]);
    SysFreeString(name);
  }
  return r;
}

// A window answers WM_GETOBJECT with the LRESULT that LresultFromObject makes, and the reader
// gets the object back by ObjectFromLresult: what it reads is what the object says.
TEST_F(AccessibleHandOver, AnObjectMarshalledByLresultFromObjectIsReadBackByObjectFromLresultAsItIs) {
  IAccessible* own = nullptr;
  ASSERT_TRUE(SUCCEEDED(CreateStdAccessibleObject(button, OBJID_CLIENT, kIidAccessible, reinterpret_cast<void**>(&own))));
  ASSERT_TRUE(own);
  Read direct = ReadOf(own);
  LRESULT handed = LresultFromObject(kIidAccessible, 0, own);
  own->Release();
  ASSERT_GT(handed, 0) << "LresultFromObject could not marshal the object: error " << std::hex
                       << static_cast<unsigned long>(handed)
                       << " (the interface's proxy and stub classes are not registered in this half of the system)";
  IAccessible* back = nullptr;
  ASSERT_TRUE(SUCCEEDED(ObjectFromLresult(handed, kIidAccessible, 0, reinterpret_cast<void**>(&back))));
  ASSERT_TRUE(back);
  Read read = ReadOf(back);
  back->Release();
  EXPECT_EQ(direct.name, "Appliquer");
  EXPECT_EQ(read.name, direct.name);
  EXPECT_EQ(read.role, direct.role);
  EXPECT_NE(read.role, 0);
}

}  // namespace
