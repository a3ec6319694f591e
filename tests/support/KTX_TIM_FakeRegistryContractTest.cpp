#include "common/KTX_TIM_FakeSystemCalls.h"
#include "support/KTX_TIM_RegistryContract.h"

namespace KTX::TIM::TEST {
namespace {

class FakeHostC {
 public:
  SystemCallsI& calls() { return fake; }
  void addKey(std::u16string const& path) { fake.addKey(path); }
  void removeKey(std::u16string const& path) { fake.removeKey(path); }
  void setValue(std::u16string const& path,
                std::u16string const& name,
                std::vector<std::uint8_t> const& bytes) {
    fake.setValue(path, name, bytes);
  }

 private:
  FakeSystemCallsC fake;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, RegistryContract, FakeHostC, );

}  // namespace
}  // namespace KTX::TIM::TEST
