#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include <tavo/AdNetworkExports.h>
#include <tavo/CVAd.h>
#include <tavo/Export.h>

namespace tavo {

class AdNetworkLibrary;
class Environment;

// Finds the classes of the external ad network by their names: first among those that the host has
// registered, then in the library that the platform was configured with. The SDK needs neither; an
// ad that would be mediated then fails with error 1008. One per process; main thread only.
class TAVO_EXPORT AdNetworkClasses {
 public:
  // Makes one ad of a class; null or an exception: there is none.
  using Factory = std::function<std::shared_ptr<CVAd>()>;

  [[nodiscard]] static AdNetworkClasses& sharedInstance();

  explicit AdNetworkClasses(Environment& environment);

  // Offers a class of the host's own under `name`, in place of an earlier one and of the library's.
  // An empty factory takes it back.
  void registerClass(const std::string& name, Factory factory);

  // A new ad of the class, or null when nobody offers it. What a factory makes must be a `Class`.
  template <typename Class>
  [[nodiscard]] std::shared_ptr<Class> make() {
    return std::dynamic_pointer_cast<Class>(makeNamed(Class::className));
  }

 private:
  [[nodiscard]] std::shared_ptr<CVAd> makeNamed(std::string_view name);
  [[nodiscard]] Factory find(std::string_view name);
  // The library's exports, looked for once; null when there is no library to be used.
  [[nodiscard]] const AdNetworkExports* library();

  const std::shared_ptr<AdNetworkLibrary> service_;
  std::map<std::string, Factory, std::less<>> registered_;
  bool lookedForLibrary_ = false;
  const AdNetworkExports* library_ = nullptr;
};

}  // namespace tavo
