#include <exception>

#include <tavo/AdNetworkClasses.h>

#include "ErrorHandler/ExtendNSLog.h"
#include "Runtime/Environment.h"
#include "Runtime/LivingEnvironment.h"
#include "Services/AdNetworkLibrary.h"

namespace tavo {

namespace {

// More classes than any version has; a count above it is no count.
constexpr std::uint32_t plausibleClasses = 64;

// Nothing that the network throws goes further. Null, then.
template <typename Call>
auto guarded(const Call& call) -> decltype(call()) {
  try {
    return call();
  } catch (const std::exception& exception) {
    platformLog(std::string{"The ad network raised an exception: "} + exception.what(),
                LogLevel::error);
  } catch (...) {
    platformLog("The ad network raised an exception.", LogLevel::error);
  }
  return {};
}

const AdNetworkExports* openLibrary(AdNetworkLibrary& service) {
  void* const address = service.find(adNetworkEntryName);
  if (address == nullptr) return nullptr;
  const AdNetworkExports* exports = guarded(reinterpret_cast<AdNetworkEntry>(address));
  if (exports == nullptr) return nullptr;
  if (exports->version != adNetworkVersion) {
    platformLog("The ad network's library is of version " + std::to_string(exports->version) +
                    ", not " + std::to_string(adNetworkVersion) + ".",
                LogLevel::error);
    return nullptr;
  }
  const bool usable = exports->classes != nullptr && exports->classCount <= plausibleClasses;
  return usable ? exports : nullptr;
}

}  // namespace

AdNetworkClasses& AdNetworkClasses::sharedInstance() {
  return livingEnvironment()->shared<AdNetworkClasses>();
}

AdNetworkClasses::AdNetworkClasses(Environment& environment)
    : service_{environment.platform().adNetwork} {}

void AdNetworkClasses::registerClass(const std::string& name, Factory factory) {
  if (factory) {
    registered_[name] = std::move(factory);
  } else {
    registered_.erase(name);
  }
}

const AdNetworkExports* AdNetworkClasses::library() {
  if (!lookedForLibrary_) {
    lookedForLibrary_ = true;
    library_ = openLibrary(*service_);
  }
  return library_;
}

AdNetworkClasses::Factory AdNetworkClasses::find(std::string_view name) {
  if (const auto found = registered_.find(name); found != registered_.end()) return found->second;
  const AdNetworkExports* exports = library();
  for (std::uint32_t index = 0; exports != nullptr && index < exports->classCount; ++index) {
    const AdNetworkClass& offered = exports->classes[index];
    if (offered.name == nullptr || offered.make == nullptr || offered.name != name) continue;
    return [make = offered.make] { return std::shared_ptr<CVAd>{make()}; };
  }
  return {};
}

std::shared_ptr<CVAd> AdNetworkClasses::makeNamed(std::string_view name) {
  const Factory factory = find(name);
  return factory ? guarded(factory) : nullptr;
}

}  // namespace tavo
