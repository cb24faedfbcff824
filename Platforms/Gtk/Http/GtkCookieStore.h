#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <tavo/Limits.h>

#include "Services/CookieStore.h"
#include "Services/RunLoop.h"

namespace tavo::gtk {

class HttpCookieJar;

// What happened to one cookie: added (no `previous`), replaced, or removed (no `current`).
struct CookieChange {
  std::optional<Cookie> previous;
  std::optional<Cookie> current;
};

// The application's one cookie jar, on disk, behind a lock. Two jars on one file do not see each
// other's writes, so a web engine keeps a copy that is fed from the change listener and reports its
// own cookies through `adopt` and `discard`.
//
// What may be set, and for how long, is in CookieRules; how many are kept, in HttpCookieJar.
class GtkCookieStore : public CookieStore {
 public:
  using Listener = std::function<void(const CookieChange&)>;

  // The file is opened at the first use. One that cannot be written costs the persistence only.
  GtkCookieStore(std::shared_ptr<RunLoop> runLoop, std::string path, const Limits& limits = {});
  ~GtkCookieStore() override;
  GtkCookieStore(const GtkCookieStore&) = delete;
  GtkCookieStore& operator=(const GtkCookieStore&) = delete;

  // "<user data dir>/<application>/cookies.sqlite".
  [[nodiscard]] static std::string defaultPath(const std::string& applicationId);

  [[nodiscard]] std::vector<Cookie> cookiesFor(const Url& url) const override;
  void store(const Cookie& cookie, const Url& url) override;
  void storeFromHeaders(const std::vector<HttpHeader>& headers, const Url& url) override;
  [[nodiscard]] bool isPublicSuffix(std::string_view domain) const override;

  // Every cookie there is. Any thread.
  [[nodiscard]] std::vector<Cookie> all() const;

  // Takes over what a web engine's page has set or removed. The engine has checked it, and the
  // listener does not hear of it. Any thread.
  void adopt(const Cookie& cookie);
  void discard(const Cookie& cookie);

  // Calls `listener` on the main thread, in order, once for every later change that did not come
  // from the engine. An empty one ends that. Main thread only.
  void setListener(Listener listener);

 private:
  // Whose change is under way: the engine is not told of its own.
  enum class Origin { requests, engine };

  [[nodiscard]] HttpCookieJar& jar() const;  // the lock is held
  void put(const std::vector<Cookie>& cookies, const Url& url);
  [[nodiscard]] bool mayReplaceStored(const Cookie& cookie, const Url& url) const;
  void announce(CookieChange change) const;

  const std::shared_ptr<RunLoop> runLoop_;
  const std::string path_;
  const Limits limits_;
  mutable std::mutex mutex_;
  mutable std::unique_ptr<HttpCookieJar> jar_;
  std::shared_ptr<const Listener> listener_;
  Origin origin_ = Origin::requests;
};

}  // namespace tavo::gtk
