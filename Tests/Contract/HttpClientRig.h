#pragma once

#include "Gtk/Http/GtkHttpClient.h"
#include "Gtk/Services/GtkRunLoop.h"
#include "Headless/HeadlessCookieStore.h"
#include "Headless/HeadlessHttpClient.h"
#include "Headless/HeadlessRunLoop.h"
#include "Support/HostLoop.h"
#include "Support/HostileServer.h"
#include "Support/Testing.h"
#include "Values/Text.h"

namespace tavo::test {

struct ReceivedRequest {
  std::string method;
  std::string path;
  std::vector<HttpHeader> headers;

  [[nodiscard]] std::optional<std::string> header(std::string_view name) const {
    for (const auto& header : headers) {
      if (equalsIgnoringCase(header.name, name)) return header.value;
    }
    return std::nullopt;
  }
};

enum class Host { own, foreign };

// A client and the one server that it talks to, which is reached under two host names.
class HttpClientRig {
 public:
  static constexpr int redirectLimit = 3;

  virtual ~HttpClientRig() = default;

  // What the server does with a path, once and for all.
  virtual void answer(const std::string& path, const PlainAnswer& answer) = 0;
  virtual void neverAnswer(const std::string& path) = 0;
  [[nodiscard]] virtual std::string urlText(const std::string& path, Host host) = 0;
  [[nodiscard]] virtual Url unreachableUrl() = 0;
  [[nodiscard]] virtual std::vector<ReceivedRequest> received() = 0;

  [[nodiscard]] virtual HttpClient& client() = 0;
  [[nodiscard]] virtual RunLoop& runLoop() = 0;
  [[nodiscard]] Inspection& inspection() { return *inspection_; }
  [[nodiscard]] CookieStore& cookies() { return *cookies_; }

  virtual void runUntil(const std::function<bool()>& done) = 0;

 protected:
  // The same store for both: these tests are about the client.
  std::shared_ptr<headless::HeadlessCookieStore> cookies_ =
      std::make_shared<headless::HeadlessCookieStore>(
          std::make_shared<headless::HeadlessRunLoop>());
  std::shared_ptr<Inspection> inspection_ = std::make_shared<Inspection>([] { return Seconds{0}; });
};

class HeadlessHttpRig : public HttpClientRig {
 public:
  void answer(const std::string& path, const PlainAnswer& plain) override {
    headless::ScriptedAnswer answer{.status = plain.status, .body = plain.body};
    answer.headers.push_back({"Content-Type", plain.contentType});
    for (const auto& [name, value] : plain.headers) answer.headers.push_back({name, value});
    for (const auto host : {Host::own, Host::foreign}) client_.answer(urlText(path, host), answer);
  }
  void neverAnswer(const std::string& path) override {
    client_.answer(urlText(path, Host::own), {.neverAnswers = true});
  }
  std::string urlText(const std::string& path, Host host) override {
    return (host == Host::own ? "http://ads.example" : "http://other.example") + path;
  }
  Url unreachableUrl() override { return Url::parse("http://nobody.example/"); }
  std::vector<ReceivedRequest> received() override {
    std::vector<ReceivedRequest> all;
    for (const auto& request : client_.requests()) {
      all.push_back({request.method, std::string{request.url.path()}, request.headers});
    }
    return all;
  }
  HttpClient& client() override { return client_; }
  RunLoop& runLoop() override { return *runLoop_; }
  void runUntil(const std::function<bool()>& done) override {
    for (int step = 0; step < 1000 && !done(); ++step) runLoop_->advance(Seconds{0.1});
  }

 private:
  std::shared_ptr<headless::HeadlessRunLoop> runLoop_ =
      std::make_shared<headless::HeadlessRunLoop>();
  headless::HeadlessHttpClient client_{runLoop_, cookies_, redirectLimit, inspection_};
};

class GtkHttpRig : public HttpClientRig {
 public:
  void answer(const std::string& path, const PlainAnswer& answer) override {
    server_.on(path, answer);
  }
  void neverAnswer(const std::string& path) override { server_.on(path, NeverAnswer{}); }
  std::string urlText(const std::string& path, Host host) override {
    return server_.url(path, host == Host::own ? "127.0.0.1" : "localhost");
  }
  // Port 9 of the loopback interface: nothing listens below 1024 in a test's environment.
  Url unreachableUrl() override { return Url::parse("http://127.0.0.1:9/"); }
  std::vector<ReceivedRequest> received() override {
    std::vector<ReceivedRequest> all;
    for (const auto& text : server_.requests()) all.push_back(read(text));
    return all;
  }
  HttpClient& client() override { return client_; }
  RunLoop& runLoop() override { return *runLoop_; }
  void runUntil(const std::function<bool()>& done) override { test::runUntil(done); }

 private:
  static ReceivedRequest read(std::string_view text) {
    ReceivedRequest request;
    const auto firstLine = text.substr(0, text.find("\r\n"));
    const auto space = firstLine.find(' ');
    request.method = std::string{firstLine.substr(0, space)};
    request.path = std::string{firstLine.substr(space + 1, firstLine.rfind(' ') - space - 1)};
    for (auto line = text.find("\r\n"); line != std::string_view::npos;) {
      const auto end = text.find("\r\n", line + 2);
      const auto header =
          text.substr(line + 2, end == std::string_view::npos ? end : end - line - 2);
      if (const auto colon = header.find(':'); colon != std::string_view::npos) {
        request.headers.push_back(
            {std::string{header.substr(0, colon)}, std::string{trimmed(header.substr(colon + 1))}});
      }
      line = end;
    }
    return request;
  }

  static Limits limits() {
    Limits limits;
    limits.httpRedirects = redirectLimit;
    return limits;
  }

  HostileServer server_;
  std::shared_ptr<gtk::GtkRunLoop> runLoop_ = std::make_shared<gtk::GtkRunLoop>();
  gtk::GtkHttpClient client_{runLoop_, cookies_, limits(), {}, inspection_};
};

}  // namespace tavo::test
