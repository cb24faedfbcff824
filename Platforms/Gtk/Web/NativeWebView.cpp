#include "Gtk/Web/NativeWebView.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "Gtk/Web/PageErrors.h"
#include "Gtk/Web/PageRefusals.h"
#include "Values/Text.h"

namespace tavo::gtk {
namespace {

// The channel for pages whose content policy forbids the frames that carry commands.
constexpr const char* commandChannel = "mraid";
constexpr std::size_t longestCommand = std::size_t{4} << 20U;

GPtr<WebKitWebView> makeView(const WebEngine& engine, WebKitUserContentManager* content,
                             WebKitWebView* related) {
  const auto settings = engine.makeSettings();
  auto* view =
      related != nullptr
          ? g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", related, "user-content-manager",
                         content, "settings", settings.get(), nullptr)
          : g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", engine.context(), "network-session",
                         engine.session(), "user-content-manager", content, "settings",
                         settings.get(), nullptr);
  constexpr GdkRGBA clear{0, 0, 0, 0};
  webkit_web_view_set_background_color(WEBKIT_WEB_VIEW(view), &clear);
  return GPtr<WebKitWebView>::sink(WEBKIT_WEB_VIEW(view));
}

std::string reasonText(WebKitWebProcessTerminationReason reason) {
  switch (reason) {
    case WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT:
      return "The page used too much memory.";
    case WEBKIT_WEB_PROCESS_TERMINATED_BY_API:
      return "The page no longer answered.";
    case WEBKIT_WEB_PROCESS_CRASHED:
      break;
  }
  return "The page's process has ended.";
}

}  // namespace

std::shared_ptr<NativeWebView> NativeWebView::create(std::shared_ptr<WebEngine> engine,
                                                     const NativeWebView* related) {
  return std::shared_ptr<NativeWebView>{new NativeWebView{std::move(engine), related}};
}

NativeWebView::NativeWebView(std::shared_ptr<WebEngine> engine, const NativeWebView* related)
    : engine_{std::move(engine)},
      content_{GPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())},
      view_{makeView(*engine_, content_.get(), related == nullptr ? nullptr : related->webKit())},
      evaluations_{webKit(), engine_->services().runLoop, engine_->services().limits.webProcessPing,
                   [this] { endProcess(); }},
      policy_{webKit(), evaluations_, loads_, engine_->services().limits.pageRefreshes},
      taps_{widget(), [this] { noteTap(); }} {
  connectSignals();
  if (!engine_->canForgetHistory()) beginBlank();
}

NativeWebView::~NativeWebView() {
  connections_.disconnect();
  dropWaiting();
}

void NativeWebView::connectSignals() {
  refuseQuestionsOfPage(webKit(), connections_);
  connections_.connect(webKit(), "decide-policy", onDecidePolicy, this);
  connections_.connect(webKit(), "load-changed", onLoadChanged, this);
  connections_.connect(webKit(), "load-failed", onLoadFailed, this);
  connections_.connect(webKit(), "web-process-terminated", onProcessTerminated, this);
  connections_.connect(content_.get(), "script-message-received::mraid", onMessage, this);
}

void NativeWebView::take(PageOwner& owner) {
  owner_ = &owner;
  policy_.setJudge(&owner);
  webkit_user_content_manager_register_script_message_handler(content_.get(), commandChannel,
                                                              nullptr);
  // Nobody asks a page anything once it is there, and its timers may still begin to loop.
  heartbeat_ = engine_->services().runLoop->every(engine_->services().limits.webProcessWatch,
                                                  [this] { evaluations_.ping(); });
}

void NativeWebView::release() {
  evaluations_.flush();
  heartbeat_.invalidate();
  owner_ = nullptr;
  policy_.setJudge(nullptr);
  dropWaiting();
  loads_.dropped();
  webkit_user_content_manager_remove_all_scripts(content_.get());
  webkit_user_content_manager_unregister_script_message_handler(content_.get(), commandChannel,
                                                                nullptr);
  // The rest in a turn of its own: this may be one of the engine's signals.
  blanking_ = true;
  engine_->services().runLoop->post([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->beginBlank();
  });
}

// Without scripts first: a page whose timers keep going somewhere else would stop every load that
// is to replace it.
void NativeWebView::beginBlank() {
  blanking_ = true;
  if (dead_) return becomeClean();
  webkit_settings_set_enable_javascript(settings(), FALSE);
  webkit_web_view_stop_loading(webKit());
  webkit_web_view_load_uri(webKit(), blankPage);
  // A script that loops keeps the blank page away for ever.
  blankDeadline_ = engine_->services().runLoop->after(engine_->services().limits.webProcessPing,
                                                      [this] { endProcess(); });
}

// Reports of the page before may still be on their way; those of the blank one follow the question
// whether it may load.
void NativeWebView::noteBlankLoad(WebKitLoadEvent event) {
  if (blankBegins_ && event == WEBKIT_LOAD_FINISHED) becomeClean();
}

void NativeWebView::becomeClean() {
  if (!dead_) engine_->forgetHistory(webKit());
  blankItem_ = GPtr<WebKitBackForwardListItem>::share(
      webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(webKit())));
  blanking_ = false;
  blankBegins_ = false;
  requests_ = 0;
  blankDeadline_.invalidate();
  webkit_settings_set_enable_javascript(settings(), TRUE);
  for (const auto& waiting : std::exchange(waiting_, {})) waiting.run();
}

void NativeWebView::whenClean(std::function<void()> run, std::function<void()> drop) {
  if (!blanking_) return run();
  waiting_.push_back({std::move(run), std::move(drop)});
}

void NativeWebView::dropWaiting() {
  for (const auto& waiting : std::exchange(waiting_, {})) {
    if (waiting.drop) engine_->services().runLoop->post(waiting.drop);
  }
}

void NativeWebView::loadHtml(const std::string& html, const Url& baseUrl) {
  whenClean([this, html = validUtf8(html), base = baseUrl] {
    evaluations_.flush();
    loads_.requested();
    policy_.expect(base.empty() ? Url::parse(blankPage) : base);
    webkit_web_view_load_html(webKit(), html.c_str(), base.empty() ? nullptr : base.text().c_str());
  });
}

void NativeWebView::loadUrl(const Url& url, CachePolicy policy) {
  whenClean([this, url, policy] {
    evaluations_.flush();
    loads_.requested();
    policy_.expect(url);
    const auto request = GPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(url.text().c_str()));
    // The engine has no switch for one load; it follows what the request itself says.
    auto* headers = webkit_uri_request_get_http_headers(request.get());
    if (policy == CachePolicy::reloadIgnoringLocalCacheData && headers != nullptr) {
      soup_message_headers_replace(headers, "Cache-Control", "no-cache");
    }
    webkit_web_view_load_request(webKit(), request.get());
  });
}

void NativeWebView::reload() {
  whenClean([this] {
    evaluations_.flush();
    const char* text = webkit_web_view_get_uri(webKit());
    loads_.requested();
    policy_.expect(Url::fromText(text == nullptr ? blankPage : text));
    webkit_web_view_reload(webKit());
  });
}

bool NativeWebView::stopLoading() {
  const bool wasLoading = isLoading();
  dropWaiting();
  loads_.stopped();
  if (!blanking_) webkit_web_view_stop_loading(webKit());
  return wasLoading;
}

void NativeWebView::addDocumentStartScript(const std::string& script) {
  auto* added =
      webkit_user_script_new(validUtf8(script).c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                             WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
  webkit_user_content_manager_add_script(content_.get(), added);
  webkit_user_script_unref(added);
}

void NativeWebView::evaluate(const std::string& script,
                             const EvaluationQueue::Completion& completion) {
  whenClean(
      [this, script, completion] {
        evaluations_.evaluate(script, EvaluationQueue::World::page, completion);
      },
      [completion] {
        if (completion) completion({});
      });
}

void NativeWebView::endProcess() {
  if (!dead_) webkit_web_view_terminate_web_process(webKit());
}

void NativeWebView::resize(Size size) {
  if (gtk_widget_get_parent(widget()) != nullptr) return;
  const double longest = engine_->services().limits.widgetSide;
  const auto side = [longest](double length) {
    return std::isnan(length) ? 1 : static_cast<int>(std::clamp(length, 1.0, longest));
  };
  gtk_widget_allocate(widget(), side(size.width), side(size.height), -1, nullptr);
}

bool NativeWebView::canGoBack() const {
  auto* const before =
      webkit_back_forward_list_get_back_item(webkit_web_view_get_back_forward_list(webKit()));
  return before != nullptr && before != blankItem_.get();
}

void NativeWebView::stayInHistory() {
  engine_->services().runLoop->post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self || self->owner_ == nullptr || self->blanking_) return;
    auto* const list = webkit_web_view_get_back_forward_list(self->webKit());
    if (webkit_back_forward_list_get_current_item(list) == self->blankItem_.get()) {
      webkit_web_view_go_forward(self->webKit());
    }
  });
}

gboolean NativeWebView::onDecidePolicy(WebKitWebView* /*view*/, WebKitPolicyDecision* decision,
                                       WebKitPolicyDecisionType type, NativeWebView* self) {
  const auto held = self->shared_from_this();
  self->noteSignOfLife();
  if (self->blanking_ && type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
    self->blankBegins_ = self->policy_.allowBlankPage(decision);
  } else {
    self->policy_.decide(decision, type);
  }
  return TRUE;
}

void NativeWebView::onLoadChanged(WebKitWebView* /*view*/, WebKitLoadEvent event,
                                  NativeWebView* self) {
  const auto held = self->shared_from_this();
  self->dead_ = false;
  self->evaluations_.setProcessRuns(true);
  if (self->blanking_) return self->noteBlankLoad(event);
  if (self->owner_ == nullptr) return;
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      if (self->loads_.started() == LoadTracker::Report::tell) self->owner_->pageStarted();
      break;
    case WEBKIT_LOAD_REDIRECTED:
      break;
    case WEBKIT_LOAD_COMMITTED:
      self->loads_.committed();
      break;
    case WEBKIT_LOAD_FINISHED:
      if (self->loads_.finished() == LoadTracker::Report::tell) self->owner_->pageFinished();
      break;
  }
}

// Always handled: the engine would put a page of its own in the place of the creative.
gboolean NativeWebView::onLoadFailed(WebKitWebView* /*view*/, WebKitLoadEvent /*event*/,
                                     const char* /*url*/, GError* error, NativeWebView* self) {
  const auto held = self->shared_from_this();
  if (self->owner_ == nullptr || self->blanking_) return TRUE;
  const bool tell = self->loads_.failed() == LoadTracker::Report::tell;
  if (tell && !isInterruption(*error)) self->owner_->pageFailed(pageError(*error));
  return TRUE;
}

void NativeWebView::onProcessTerminated(WebKitWebView* /*view*/,
                                        WebKitWebProcessTerminationReason reason,
                                        NativeWebView* self) {
  self->dead_ = true;
  self->evaluations_.setProcessRuns(false);
  self->loads_.dropped();
  // In a turn of its own: the engine also calls this from inside the call that ends the process.
  self->engine_->services().runLoop->post([weak = self->weak_from_this(), reason] {
    const auto held = weak.lock();
    if (!held) return;
    if (held->blanking_) return held->becomeClean();
    if (held->owner_ != nullptr) held->owner_->pageProcessEnded(reasonText(reason));
  });
}

void NativeWebView::onMessage(WebKitUserContentManager* /*manager*/, JSCValue* message,
                              NativeWebView* self) {
  const auto held = self->shared_from_this();
  self->noteSignOfLife();
  if (self->owner_ != nullptr && !self->blanking_) self->takeMessage(message);
}

void NativeWebView::takeMessage(JSCValue* message) {
  if (jsc_value_is_string(message) == FALSE) return;
  const GText text{jsc_value_to_string(message)};
  if (!text || std::strlen(text.get()) > longestCommand) return;
  const Url command = Url::fromText(text.get());
  if (command.scheme() != "mraid") return;
  const char* document = webkit_web_view_get_uri(webKit());
  owner_->pageShouldStart(
      {command, Url::fromText(document == nullptr ? blankPage : document), NavigationType::other});
}

bool NativeWebView::isClogged() const {
  return std::cmp_greater(requests_, engine_->services().limits.commandBurst) ||
         (blanking_ && evaluations_.outstanding() > 0);
}

void NativeWebView::noteSignOfLife() {
  ++requests_;
  evaluations_.noteSignOfLife();
}

void NativeWebView::noteTap() {
  const auto held = shared_from_this();
  if (owner_ != nullptr && !blanking_) owner_->pageTapped();
}

}  // namespace tavo::gtk
