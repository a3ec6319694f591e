#include "output/OutputGuard.h"

namespace KTX::VORTIME {
namespace {

constexpr int STANDARD_INPUT = 0;

FileIdentityC identityOfInput(std::string const& name) {
  return name == "-" ? identityOfDescriptor(STANDARD_INPUT) : identityOfFile(name);
}

}  // namespace

OutputGuardC::OutputGuardC(std::vector<std::string> const& inputs,
                           int resultDescriptor,
                           bool isForced)
    : mayReplaceAll(isForced) {
  for (std::string const& input : inputs) {
    known.push_back(KnownC{"this run reads it as " + input, identityOfInput(input)});
  }
  known.push_back(KnownC{"standard output goes there", identityOfDescriptor(resultDescriptor)});
}

bool OutputGuardC::fail(std::string const& name, std::string const& reason) {
  error = "cannot write " + name + ": " + reason;
  return false;
}

bool OutputGuardC::open(ReplacedFileC& file, std::string const& name, FileMarkC const& mark) {
  if (!file.claim(name)) {
    return fail(name, file.errorText());
  }
  FileIdentityC const identity = file.identity();
  for (KnownC const& other : known) {
    if (identity.isSameFile(other.identity)) {
      return fail(name, other.description);
    }
  }
  if (!mayReplaceAll && !file.isReplaceable(mark)) {
    return fail(name, "no run of vortime wrote what is there; --force replaces it");
  }
  if (!file.begin()) {
    return fail(name, file.errorText());
  }
  known.push_back(KnownC{"this run writes it as " + name, identity});
  return true;
}

}  // namespace KTX::VORTIME
