#include "Gtk/Http/HttpExchange.h"

#include <utility>

#include "Gtk/Guarded.h"
#include "Gtk/Http/HttpFailure.h"
#include "Gtk/Http/HttpMessage.h"

namespace tavo::gtk {

namespace {

using StrongExchange = std::shared_ptr<HttpExchange>;
using WeakWatchdog = std::weak_ptr<HttpWatchdog>;

// What of a redirect's own body is read so that its connection can be used again.
constexpr std::size_t redirectBodyLimit = std::size_t{64} * 1024;

// One of many on its connection.
bool isStream(SoupMessage* message) {
  return soup_message_get_http_version(message) == SOUP_HTTP_2_0;
}

void touch(gpointer weakWatchdog) {
  if (const auto watchdog = static_cast<WeakWatchdog*>(weakWatchdog)->lock()) watchdog->touch();
}

void forget(gpointer weakWatchdog, GClosure* /*closure*/) {
  delete static_cast<WeakWatchdog*>(weakWatchdog);
}

}  // namespace

HttpExchange::HttpExchange(std::shared_ptr<const HttpServices> services, HttpRequest request,
                           HttpCompletion completion)
    : services_{std::move(services)},
      request_{std::move(request)},
      hops_{request_, services_->redirectLimit},
      inspection_{services_->inspection, request_},
      completion_{std::move(completion)} {}

void HttpExchange::start() {
  if (!completion_) return;
  keepAlive_ = shared_from_this();
  watchdog_ = std::make_shared<HttpWatchdog>(
      services_->runLoop, request_.idleTimeout, request_.deadline,
      [this](std::string reason) { fail(TransportError::timedOut, std::move(reason)); });
  startHop(Delivery::later);
}

void HttpExchange::cancel() {
  fail(TransportError::cancelled, "The request was cancelled.", Delivery::later);
}

SoupSession* HttpExchange::session() const {
  const bool tracks = request_.traffic == TrafficClass::tracking;
  return (tracks ? services_->trackingSession : services_->contentSession).get();
}

void HttpExchange::startHop(Delivery ofFailure) {
  auto hop = hops_.request(*services_->cookies, services_->runLoop->today());
  if (hop && hop->header("User-Agent") == nullptr && !services_->userAgent.empty()) {
    hop->setHeader("User-Agent", services_->userAgent);
  }
  const auto message = hop ? makeMessage(*hop) : nullptr;
  if (!message) {
    return fail(TransportError::unsupportedUrl, "Not a URL that HTTP can reach.", ofFailure);
  }
  inspection_.sent(*hop, services_->runLoop->now());
  watchProgress(message.get());
  cancellable_ = GPtr<GCancellable>::adopt(g_cancellable_new());
  const auto arrived = [](GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<StrongExchange> self{static_cast<StrongExchange*>(data)};
    guarded([&] { (*self)->headArrived(SOUP_SESSION(source), result); });
  };
  soup_session_send_async(session(), message.get(), G_PRIORITY_DEFAULT, cancellable_.get(), arrived,
                          new StrongExchange{shared_from_this()});
}

// A connection that comes about slowly, and a large body on its way out, are no idleness.
void HttpExchange::watchProgress(SoupMessage* message) {
  watchdog_->touch();
  if (!watchdog_->watchesIdleness()) return;
  for (const char* const signal : {"network-event", "wrote-body-data"}) {
    g_signal_connect_data(message, signal, G_CALLBACK(fenced<&touch>), new WeakWatchdog{watchdog_},
                          &forget, G_CONNECT_SWAPPED);
  }
}

void HttpExchange::headArrived(SoupSession* source, GAsyncResult* result) {
  GFailure failure;
  auto stream = GPtr<GInputStream>::adopt(soup_session_send_finish(source, result, failure.out()));
  if (!completion_) return;
  if (!stream) return finish(httpError(*failure.get()));
  watchdog_->touch();
  message_ = GPtr<SoupMessage>::share(soup_session_get_async_result_message(source, result));
  const bool isFirstHop = !response_;
  response_ = responseHead(message_.get(), hops_.url());
  if (isFirstHop) {
    sharedConnection_ = isStream(message_.get());
  }
  switch (hops_.take(*response_, *services_->cookies)) {
    case HttpHops::Next::follow:
      return follow(std::move(stream));
    case HttpHops::Next::giveUp:
      return fail(TransportError::tooManyRedirects, "Too many redirects.");
    case HttpHops::Next::deliver:
      break;
  }
  reader_ = std::make_unique<HttpBodyReader>(std::move(stream), request_.maximumBodyBytes,
                                             announcedLength(message_.get()).value_or(0));
  readBody();
}

// The body itself is of no use, and its server may take for ever: what is not there already costs
// the connection, not the time.
void HttpExchange::follow(GPtr<GInputStream> stream) {
  inspection_.redirected(*response_, services_->runLoop->now());
  static_cast<void>(HttpBodyReader{std::move(stream), redirectBodyLimit, 0}.readAvailable());
  startHop(Delivery::now);
}

void HttpExchange::readBody() {
  switch (reader_->readAvailable()) {
    case HttpBodyReader::State::waiting:
      return reader_->whenReadable([this] {
        watchdog_->touch();
        readBody();
      });
    case HttpBodyReader::State::complete:
      if (isCutOff(message_.get())) {
        return fail(TransportError::connectionLost, "The body broke off.");
      }
      response_->body = reader_->takeBody();
      return finish(std::nullopt);
    case HttpBodyReader::State::tooLarge:
      return fail(TransportError::bodyTooLarge, "The body is larger than allowed.");
    case HttpBodyReader::State::failed:
      return finish(httpError(*reader_->failure().get()));
  }
}

void HttpExchange::fail(TransportError code, std::string description, Delivery delivery) {
  finish(makeError(code, std::move(description)), delivery);
}

void HttpExchange::finish(std::optional<Error> error, Delivery delivery) {
  if (!completion_) return;
  const auto self = std::move(keepAlive_);
  inspection_.ended(response_, error, services_->runLoop->now());
  HttpResult result{std::move(response_), std::move(error), sharedConnection_};
  const auto completion = std::exchange(completion_, nullptr);
  const bool onMain = request_.completionThread == CompletionThread::main;
  const auto runLoop = services_->runLoop;
  // A complete exchange has nothing left to be cancelled.
  if (result.error && cancellable_) g_cancellable_cancel(cancellable_.get());
  if (!result.error) keepStreamForATurn();
  dropEverything();
  if (onMain && delivery == Delivery::now) return completion(result);
  auto task = [completion, result = std::move(result)] { completion(result); };
  if (onMain) {
    runLoop->post(std::move(task));
  } else {
    runLoop->background(std::move(task));
  }
}

// Over HTTP/2 the end of an answer may be a frame behind a body that is complete by its length, and
// libsoup resets a stream that is let go before. Servers take many resets for an attack.
void HttpExchange::keepStreamForATurn() {
  if (!isStream(message_.get())) return;
  services_->runLoop->post([reader = std::shared_ptr<HttpBodyReader>{std::move(reader_)}] {});
}

// Here and not with the last handle, which may go on any thread.
void HttpExchange::dropEverything() {
  watchdog_.reset();
  reader_.reset();
  message_.reset();
  cancellable_.reset();
  services_.reset();
}

}  // namespace tavo::gtk
