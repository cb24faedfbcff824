#include "Gtk/Web/NativeWebView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Gtk/ForeignText.h"
#include "Gtk/Guarded.h"
#include "Gtk/Web/PageErrors.h"
#include "Gtk/Web/PageRefusals.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

// The engine keeps the local storage of an origin for all pages of a session. A creative gets that
// of its own view instead, which no other page sees.
constexpr const char* storageOfThePage =
    "Object.defineProperty(window, 'localStorage', {get: () => sessionStorage})";

constexpr GdkRGBA clear{0, 0, 0, 0};
constexpr GdkRGBA almostClear{0, 0, 0, 0.002F};

GPtr<WebKitWebView> makeView(WebEngine& engine, PageKind kind, WebKitUserContentManager* content,
                             const NativeWebView* related) {
  const auto settings = engine.makeSettings(kind);
  const auto policies = engine.makePolicies(kind);
  auto* view =
      related != nullptr
          ? g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", related->webKit(),
                         "user-content-manager", content, "settings", settings.get(),
                         "website-policies", policies.get(), nullptr)
          : g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", engine.context(), "network-session",
                         engine.session(kind), "user-content-manager", content, "settings",
                         settings.get(), "website-policies", policies.get(), nullptr);
  webkit_web_view_set_background_color(WEBKIT_WEB_VIEW(view), &clear);
  return GPtr<WebKitWebView>::sink(WEBKIT_WEB_VIEW(view));
}

// The place where it stands, hidden, would keep it. In a turn of its own: the engine may be in the
// middle of something with it.
void unparentLater(const GPtr<WebKitWebView>& view) {
  g_idle_add_full(
      G_PRIORITY_HIGH_IDLE,
      [](gpointer widget) -> gboolean {
        if (gtk_widget_get_parent(GTK_WIDGET(widget)) != nullptr) {
          gtk_widget_unparent(GTK_WIDGET(widget));
        }
        return G_SOURCE_REMOVE;
      },
      g_object_ref(view.get()), g_object_unref);
}

Error processGone(WebKitWebProcessTerminationReason reason) {
  const char* text = "The page's process has ended.";
  if (reason == WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT) text = "The page used too much memory.";
  if (reason == WEBKIT_WEB_PROCESS_TERMINATED_BY_API) text = "The page no longer answered.";
  return {std::string{webErrorDomain}, webProcessGoneError, text};
}

}  // namespace

std::shared_ptr<NativeWebView> NativeWebView::create(std::shared_ptr<WebEngine> engine,
                                                     PageKind kind, const NativeWebView* related,
                                                     std::shared_ptr<int> pages) {
  return std::shared_ptr<NativeWebView>{
      new NativeWebView{std::move(engine), kind, related, std::move(pages)}};
}

NativeWebView::NativeWebView(std::shared_ptr<WebEngine> engine, PageKind kind,
                             const NativeWebView* related, std::shared_ptr<int> pages)
    : engine_{std::move(engine)},
      kind_{kind},
      pages_{std::move(pages)},
      content_{GPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())},
      view_{makeView(*engine_, kind, content_.get(), related)},
      evaluations_{webKit(), engine_->services().runLoop, engine_->services().limits.webProcessPing,
                   [this] { endProcess(); }},
      turnover_{webKit(), engine_, [this] { endProcess(); }},
      policy_{webKit(), evaluations_, loads_, engine_->services().limits.pageRefreshes},
      commands_{content_.get(), [this] { ++requests_; },
                [this](const Url& command) { noteCommand(command); }},
      taps_{widget(), [this] { noteTap(); }},
      focusExit_{webKit()} {
  connectSignals();
  if (!engine_->canForgetHistory()) turnover_.begin();
}

NativeWebView::~NativeWebView() {
  inspected_.reset();
  connections_.disconnect();
  visited_.reset();
  unparentLater(view_);
}

void NativeWebView::connectSignals() {
  if (kind_ == PageKind::browser) {
    // While it waits for the person its silence means nothing.
    visited_ = std::make_unique<VisitedPage>(
        webKit(), connections_, [this](bool waits) { evaluations_.setProcessRuns(!waits); });
  } else {
    connections_.connect(webKit(), "create", fenced<&NativeWebView::onCreate>, this);
    fetched_.emplace(webKit(), connections_, engine_->network(),
                     engine_->services().limits.pageBytes, [this] { fetchedTooMuch(); });
  }
  refuseQuestionsOfPage(webKit(), connections_);
  connections_.connect(webKit(), "decide-policy", onDecidePolicy, this);
  connections_.connect(webKit(), "load-changed", fenced<&NativeWebView::onLoadChanged>, this);
  connections_.connect(webKit(), "load-failed", onLoadFailed, this);
  connections_.connect(webKit(), "realize", fenced<&NativeWebView::onRealized>, this);
  connections_.connect(webKit(), "web-process-terminated",
                       fenced<&NativeWebView::onProcessTerminated>, this);
}

void NativeWebView::take(PageOwner& owner, const void* slot) {
  owner_ = &owner;
  inspection_ = {engine_->services().inspection, slot};
  policy_.setInspection(inspection_);
  if (inspection_.isOn()) {
    inspected_ =
        std::make_shared<PageInspection>(webKit(), content_.get(), slot, engine_->services());
    if (inspection_.inspection->allowsPageTools) inspection_.inspection->enter(inspected_);
  }
  requests_ = 0;
  // Nobody asks a page anything once it is there, and its timers may still begin to loop.
  watched_ = engine_->processes().pageBegins(kind_, [this] { evaluations_.ping(); });
  policy_.setJudge(&owner);
  commands_.open();
  if (kind_ == PageKind::creative) {
    addScript(storageOfThePage, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES);
  }
}

void NativeWebView::release() {
  evaluations_.flush();
  inspected_.reset();
  owner_ = nullptr;
  watched_.reset();
  policy_.setJudge(nullptr);
  turnover_.dropWaiting();
  loads_.dropped();
  webkit_user_content_manager_remove_all_scripts(content_.get());
  commands_.close();
  turnover_.leave();
}

void NativeWebView::load(const Url& url, const std::function<void()>& start) {
  evaluations_.flush();
  ++*pages_;
  loads_.requested();
  engine_->processes().pageLoads();
  endedFor_.reset();
  if (fetched_) fetched_->beginPage();
  policy_.expect(url);
  start();
}

void NativeWebView::loadHtml(const std::string& html, const Url& baseUrl) {
  const bool isGivenOne = baseUrl.empty() && inspection_.isOn();
  const Url address = isGivenOne ? Url::fromText(inspection_.inspection->pageAddress) : baseUrl;
  turnover_.whenThere([this, html = validUtf8(html), base = address] {
    load(base.empty() ? Url::parse(blankPage) : base, [&] {
      webkit_web_view_load_html(webKit(), html.c_str(),
                                base.empty() ? nullptr : base.text().c_str());
    });
  });
}

void NativeWebView::loadUrl(const Url& url, CachePolicy policy) {
  turnover_.whenThere([this, url, policy] {
    const auto request = GPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(url.text().c_str()));
    // The engine has no switch for one load; it follows what the request itself says.
    auto* headers = webkit_uri_request_get_http_headers(request.get());
    if (policy == CachePolicy::reloadIgnoringLocalCacheData && headers != nullptr) {
      soup_message_headers_replace(headers, "Cache-Control", "no-cache");
    }
    load(url, [&] { webkit_web_view_load_request(webKit(), request.get()); });
  });
}

void NativeWebView::reload() {
  turnover_.whenThere([this] {
    const char* text = webkit_web_view_get_uri(webKit());
    load(Url::fromText(text == nullptr ? blankPage : text),
         [&] { webkit_web_view_reload(webKit()); });
  });
}

bool NativeWebView::stopLoading() {
  const bool wasLoading = isLoading();
  turnover_.dropWaiting();
  loads_.stopped();
  if (!turnover_.isUnderWay()) webkit_web_view_stop_loading(webKit());
  return wasLoading;
}

bool NativeWebView::isLoading() const {
  return turnover_.isSomethingWaiting() || loads_.isLoading();
}

void NativeWebView::addDocumentStartScript(const std::string& script) {
  addScript(validUtf8(script), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME);
}

void NativeWebView::addScript(const std::string& script, WebKitUserContentInjectedFrames frames) {
  auto* added = webkit_user_script_new(
      script.c_str(), frames, WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
  webkit_user_content_manager_add_script(content_.get(), added);
  webkit_user_script_unref(added);
}

void NativeWebView::evaluate(const std::string& script,
                             const EvaluationQueue::Completion& completion) {
  turnover_.whenThere(
      [this, script, completion] {
        evaluations_.evaluate(script, EvaluationQueue::World::page, completion);
      },
      [completion] {
        if (completion) completion({});
      });
}

void NativeWebView::endProcess() {
  if (!isDead()) webkit_web_view_terminate_web_process(webKit());
}

void NativeWebView::resize(Size size) {
  if (gtk_widget_get_mapped(widget()) != FALSE) return;
  const double longest = engine_->services().limits.widgetSide;
  const auto side = [longest](double length) {
    return std::isnan(length) ? 1 : static_cast<int>(std::clamp(length, 1.0, longest));
  };
  gtk_widget_allocate(widget(), side(size.width), side(size.height), -1, nullptr);
}

void NativeWebView::stayInHistory() {
  engine_->services().runLoop->post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (self && self->listener() != nullptr && self->turnover_.isBlankPage()) {
      webkit_web_view_go_forward(self->webKit());
    }
  });
}

PageOwner* NativeWebView::listener() const { return turnover_.isUnderWay() ? nullptr : owner_; }

gboolean NativeWebView::onDecidePolicy(WebKitWebView* /*view*/, WebKitPolicyDecision* decision,
                                       WebKitPolicyDecisionType type, NativeWebView* self) {
  const auto held = self->shared_from_this();
  const bool decided = guarded([&] {
    ++self->requests_;
    if (self->turnover_.isUnderWay() && type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
      self->turnover_.decide(decision);
    } else {
      self->policy_.decide(decision, type);
    }
    return true;
  });
  // What nobody has allowed does not happen.
  if (!decided) webkit_policy_decision_ignore(decision);
  return TRUE;
}

GtkWidget* NativeWebView::onCreate(WebKitWebView* /*view*/, WebKitNavigationAction* action,
                                   NativeWebView* self) {
  const auto held = self->shared_from_this();
  ++self->requests_;
  auto* request = webkit_navigation_action_get_request(action);
  if (!self->turnover_.isUnderWay()) {
    self->policy_.askForWindow(Url::fromText(textOf(webkit_uri_request_get_uri(request))));
  }
  return nullptr;
}

void NativeWebView::onLoadChanged(WebKitWebView* /*view*/, WebKitLoadEvent event,
                                  NativeWebView* self) {
  const auto held = self->shared_from_this();
  self->evaluations_.setProcessRuns(true);
  self->turnover_.noteProcessRuns();
  if (event == WEBKIT_LOAD_STARTED) self->engine_->processes().pageMoves();
  if (self->turnover_.isUnderWay()) return self->turnover_.noteLoad(event);
  if (self->owner_ != nullptr) self->tellLoad(event);
}

void NativeWebView::tellLoad(WebKitLoadEvent event) {
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      if (loads_.started() == LoadTracker::Report::tell) owner_->pageStarted();
      break;
    case WEBKIT_LOAD_REDIRECTED:
      break;
    case WEBKIT_LOAD_COMMITTED:
      loads_.committed();
      break;
    case WEBKIT_LOAD_FINISHED:
      if (loads_.finished() == LoadTracker::Report::tell) owner_->pageFinished();
      break;
  }
}

// Always handled: the engine would put a page of its own in the place of the creative.
gboolean NativeWebView::onLoadFailed(WebKitWebView* /*view*/, WebKitLoadEvent /*event*/,
                                     const char* /*url*/, GError* error, NativeWebView* self) {
  const auto held = self->shared_from_this();
  PageOwner* const listener = self->listener();
  if (listener == nullptr) return TRUE;
  const bool tell = self->loads_.failed() == LoadTracker::Report::tell;
  if (tell && !isInterruption(*error)) {
    guarded([&] { listener->pageFailed(pageError(*error)); });
  }
  return TRUE;
}

// A view that comes to another surface, as when the window gets its layer, has lost its picture,
// and the engine makes none while nothing on the page changes.
void NativeWebView::onRealized(WebKitWebView* view, NativeWebView* /*self*/) {
  webkit_web_view_set_background_color(view, &almostClear);
  webkit_web_view_set_background_color(view, &clear);
}

void NativeWebView::onProcessTerminated(WebKitWebView* /*view*/,
                                        WebKitWebProcessTerminationReason reason,
                                        NativeWebView* self) {
  const PageOwner* const owner = self->listener();
  self->evaluations_.setProcessRuns(false);
  self->turnover_.noteProcessEnded();
  self->loads_.dropped();
  auto error = std::exchange(self->endedFor_, std::nullopt);
  if (!error) error = self->engine_->processes().reason();
  if (!error) error = processGone(reason);
  if (owner != nullptr && self->inspection_.isOn()) {
    self->inspection_.tell(InspectionKind::process, error->description,
                           {{"why", error->description}});
  }
  // In a turn of its own: the engine also calls this from inside the call that ends the process.
  self->engine_->services().runLoop->post([weak = self->weak_from_this(), error, owner] {
    const auto held = weak.lock();
    if (!held) return;
    if (held->turnover_.isUnderWay()) return held->turnover_.finishWithoutProcess();
    if (owner != nullptr && held->owner_ == owner) held->owner_->pageProcessEnded(*error);
  });
}

void NativeWebView::noteCommand(const Url& command) {
  const auto held = shared_from_this();
  PageOwner* const told = listener();
  if (told == nullptr) return;
  const char* document = webkit_web_view_get_uri(webKit());
  told->pageShouldStart(
      {command, Url::fromText(document == nullptr ? blankPage : document), NavigationType::other});
}

bool NativeWebView::isBlank() const { return owner_ == nullptr && !turnover_.isUnderWay(); }

bool NativeWebView::isClogged() const {
  const bool isLeaving = turnover_.isUnderWay();
  const bool hasPage = owner_ != nullptr || isLeaving;
  return (hasPage && std::cmp_greater(requests_, engine_->services().limits.commandBurst)) ||
         (isLeaving && evaluations_.outstanding() > 0);
}

void NativeWebView::fetchedTooMuch() {
  constexpr std::size_t megabyte = std::size_t{1024} * 1024;
  const auto& services = engine_->services();
  endedFor_ =
      Error{std::string{webErrorDomain}, webPageNetworkError,
            "The page fetched more than " + std::to_string(services.limits.pageBytes / megabyte) +
                " MB, and nobody had touched it."};
  services.log->write(LogLevel::warning, "Ended: " + endedFor_->description);
  // Not from inside the engine's report.
  services.runLoop->post([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->endProcess();
  });
}

void NativeWebView::noteTap() {
  const auto held = shared_from_this();
  engine_->processes().touched();
  if (fetched_) fetched_->startAnew();
  if (PageOwner* const told = listener()) told->pageTapped();
}

}  // namespace tavo::gtk
