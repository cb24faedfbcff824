// The GTK platform's HTTP client against servers that mean no good.

#include <sys/resource.h>

#include <stdexcept>

#include "Gtk/GPtr.h"
#include "Gtk/Http/GtkCookieStore.h"
#include "Gtk/Http/GtkHttpClient.h"
#include "Support/GtkLoopTest.h"
#include "Support/HostileServer.h"

namespace tavo::test {
namespace {

using namespace std::chrono_literals;

// Text that takes many reads, packed or not.
std::string longText() {
  std::string text;
  for (int number = 0; number < 100'000; ++number) text += std::to_string(number * 7919 % 10'007);
  return text;
}

std::string gzipOf(const std::string& text) {
  const auto packer =
      gtk::GPtr<GZlibCompressor>::adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, -1));
  std::string packed(text.size(), '\0');
  gsize read = 0;
  gsize written = 0;
  g_converter_convert(G_CONVERTER(packer.get()), text.data(), text.size(), packed.data(),
                      packed.size(), G_CONVERTER_INPUT_AT_END, &read, &written, nullptr);
  packed.resize(written);
  return packed;
}

// An answer with this gzip body. The server hangs up after it.
Garbage gzipAnswer(const std::string& body, std::size_t announced, const std::string& header = {}) {
  return Garbage{"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n" + header +
                 "Content-Length: " + std::to_string(announced) + "\r\n\r\n" + body};
}

class HttpHostile : public GtkLoopTest {
 protected:
  [[nodiscard]] HttpRequest request(const std::string& path) const {
    HttpRequest request;
    request.url = Url::parse(server_.url(path));
    request.maximumBodyBytes = limits_.answerBytes;
    return request;
  }

  HttpResult exchange(HttpRequest request) {
    std::optional<HttpResult> result;
    client_.send(std::move(request), [&](const HttpResult& arrived) { result = arrived; });
    runUntil([&] { return result.has_value(); });
    EXPECT_TRUE(result) << "no completion";
    return result.value_or(HttpResult{});
  }

  static std::optional<TransportError> codeOf(const HttpResult& result) {
    if (!result.error) return std::nullopt;
    EXPECT_EQ(result.error->domain, transportErrorDomain);
    EXPECT_FALSE(result.error->description.empty());
    return static_cast<TransportError>(result.error->code);
  }

  [[nodiscard]] std::vector<std::string> received() const { return server_.requests(); }

  Limits limits_;
  HostileServer server_;
  std::shared_ptr<gtk::GtkCookieStore> cookies_ =
      std::make_shared<gtk::GtkCookieStore>(runLoop_, folder_.path("cookies.sqlite"));
  gtk::GtkHttpClient client_{runLoop_, cookies_, limits_};
};

TEST_F(HttpHostile, TurnsEveryBadAnswerIntoItsError) {
  using Case = std::tuple<const char*, Behaviour, TransportError>;
  const std::string packed = gzipOf(longText());
  const std::string half = packed.substr(0, packed.size() / 2);
  std::string wrongSum = packed;
  wrongSum[packed.size() - 8] ^= 1;
  const std::vector<Case> cases{
      {"a body of 100 MB", HugeBody{}, TransportError::bodyTooLarge},
      {"one of unknown length", HugeBody{.length = HugeBody::Length::Undeclared},
       TransportError::bodyTooLarge},
      {"a bomb", GzipBomb{}, TransportError::bodyTooLarge},
      {"closed at once", CloseBeforeAnswer{}, TransportError::connectionLost},
      {"closed in the body", CloseInBody{}, TransportError::connectionLost},
      {"a head of 1 MB", HugeHeader{}, TransportError::connectionLost},
      {"no HTTP", Garbage{}, TransportError::badServerResponse},
      {"nothing but line ends", Garbage{"\r\n\r\n\r\n\r\n"}, TransportError::badServerResponse},
      {"a coding nobody knows", Garbage{"HTTP/1.1 200 OK\r\nTransfer-Encoding: mystery\r\n\r\nx"},
       TransportError::badServerResponse},
      {"gzip that breaks off", gzipAnswer(half, packed.size()), TransportError::connectionLost},
      {"gzip that breaks off politely", gzipAnswer(half, packed.size(), "Connection: close\r\n"),
       TransportError::connectionLost},
      {"gzip with a wrong sum", gzipAnswer(wrongSum, packed.size()), TransportError::cannotDecode},
      {"circles", RedirectLoop{}, TransportError::tooManyRedirects},
      {"a way out of HTTP", Redirect{"file:///etc/passwd"}, TransportError::unsupportedUrl},
      {"a way to no host at all", Redirect{"http:/.//9"}, TransportError::unsupportedUrl},
      {"a way to lines of its own", Redirect{"http://127.0.0.1%0d%0aX-Evil:1/"},
       TransportError::unsupportedUrl},
      {"a way to no host", Redirect{"http://"}, TransportError::unsupportedUrl},
  };
  for (const auto& [name, behaviour, error] : cases) {
    server_.on("/ad", behaviour);
    EXPECT_EQ(codeOf(exchange(request("/ad"))), error) << name;
  }
}

// Servers that announce gzip and send plain text exist, and libsoup is lenient with them.
TEST_F(HttpHostile, UnpacksGzipAndPassesOnWhatOnlyClaimsToBe) {
  const std::string packed = gzipOf(longText());
  server_.on("/good", gzipAnswer(packed, packed.size()));
  const auto good = exchange(request("/good"));
  ASSERT_TRUE(good.response && !good.error);
  EXPECT_TRUE(good.response->body == longText());
  server_.on("/plain", gzipAnswer("not gzip", 8));
  const auto plain = exchange(request("/plain"));
  ASSERT_TRUE(plain.response && !plain.error);
  EXPECT_EQ(plain.response->body, "not gzip");
}

TEST_F(HttpHostile, KeepsMemoryBoundedWhateverABodyBecomes) {
  const auto peakKilobytes = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
  };
  server_.on("/warm", GzipBomb{});
  exchange(request("/warm"));
  const auto before = peakKilobytes();
  server_.on("/bomb", GzipBomb{});
  server_.on("/huge", HugeBody{.bytes = 2'000'000'000});
  exchange(request("/bomb"));
  exchange(request("/huge"));
  // Wide enough for the address sanitizer, which keeps freed memory for a while.
  EXPECT_LT(peakKilobytes() - before, 512 * 1024);
}

TEST_F(HttpHostile, EndsAtItsTimeOutsHoweverTheServerStalls) {
  using Case = std::tuple<const char*, Behaviour, Seconds, Seconds>;
  const std::vector<Case> cases{
      {"silence", NeverAnswer{}, Seconds{0.2}, Seconds{0}},
      {"silence, deadline", NeverAnswer{}, Seconds{30}, Seconds{0.2}},
      {"long pauses in the body", Drip{.pause = 20s}, Seconds{0.2}, Seconds{0}},
      {"bytes that keep it awake", Drip{.pause = 20ms}, Seconds{30}, Seconds{0.3}},
      {"a head without end", Drip{Drip::Place::Header, 20ms}, Seconds{30}, Seconds{0.3}},
      {"circles", RedirectLoop{}, Seconds{30}, Seconds{0.000'1}},
  };
  for (const auto& [name, behaviour, idle, deadline] : cases) {
    server_.on("/ad", behaviour);
    auto sent = request("/ad");
    sent.idleTimeout = idle;
    sent.deadline = deadline;
    EXPECT_EQ(codeOf(exchange(sent)), TransportError::timedOut) << name;
  }
}

TEST_F(HttpHostile, FollowsARedirectWithoutReadingItsBodyToTheEnd) {
  server_.on("/ad", Garbage{"HTTP/1.1 302 Found\r\nLocation: /end\r\n"
                            "Content-Length: 99999999999\r\n\r\nthe first bytes"});
  server_.on("/end", PlainAnswer{.body = "here"});
  const auto result = exchange(request("/ad"));
  ASSERT_TRUE(result.response && !result.error);
  EXPECT_EQ(result.response->body, "here");
}

TEST_F(HttpHostile, ReadsPastInterimAnswers) {
  std::string bytes;
  for (int count = 0; count < 1000; ++count) bytes += "HTTP/1.1 102 Processing\r\n\r\n";
  server_.on("/ad", Garbage{bytes + "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nhere"});
  const auto result = exchange(request("/ad"));
  ASSERT_TRUE(result.response && !result.error);
  EXPECT_EQ(result.response->body, "here");
}

TEST_F(HttpHostile, TakesABodyOfExactlyTheLimit) {
  for (const auto length : {HugeBody::Length::Declared, HugeBody::Length::Undeclared}) {
    for (const std::size_t limit : {65'536U, 65'535U}) {
      server_.on("/ad", HugeBody{65'536, length, "", ""});
      auto sent = request("/ad");
      sent.maximumBodyBytes = limit;
      const auto result = exchange(sent);
      EXPECT_EQ(codeOf(result) == TransportError::bodyTooLarge, limit < 65'536) << limit;
      EXPECT_EQ(result.response->body.size(), limit == 65'536 ? limit : 0);
    }
  }
}

TEST_F(HttpHostile, CompletesOnceWheneverItIsCancelled) {
  server_.on("/start", Redirect{"/ad"});
  server_.on("/ad", PlainAnswer{.body = std::string(300'000, 'x')});
  for (int turns = 0; turns < 60; ++turns) {
    int completions = 0;
    const auto exchange =
        client_.send(request("/start"), [&](const HttpResult&) { ++completions; });
    for (int turn = 0; turn < turns && completions == 0; ++turn) {
      g_main_context_iteration(nullptr, TRUE);
    }
    exchange->cancel();
    runUntil([&] { return completions > 0; });
    settle();
    EXPECT_EQ(completions, 1) << "cancelled after " << turns << " turns";
  }
}

TEST_F(HttpHostile, OutlivesCompletionsThatThrow) {
  server_.on("/ad", PlainAnswer{.body = std::string(300'000, 'x')});
  server_.on("/none", PlainAnswer{.status = 204});
  int thrown = 0;
  for (const char* const path : {"/ad", "/none"}) {
    for (const bool fails : {false, true}) {
      auto sent = request(path);
      if (fails) sent.url = Url::parse("http://127.0.0.1:9/");
      client_.send(sent, [&](const HttpResult&) {
        ++thrown;
        throw std::runtime_error{"from a completion"};
      });
    }
  }
  runUntil([&] { return thrown == 4; });
  EXPECT_EQ(thrown, 4);
}

TEST_F(HttpHostile, SpeaksForTheApplicationWhereARequestSaysNothing) {
  server_.on("/ping", PlainAnswer{});
  gtk::GtkHttpClient client{runLoop_, cookies_, limits_, "com.example.host/1.2"};
  int done = 0;
  const auto count = [&](const HttpResult&) { ++done; };
  auto plain = request("/ping");
  client.send(plain, count);
  runUntil([&] { return done == 1; });
  plain.setHeader("user-agent", "Engine/5");
  client.send(plain, count);
  runUntil([&] { return done == 2; });
  EXPECT_THAT(received()[0], HasSubstr("User-Agent: com.example.host/1.2\r\n"));
  EXPECT_THAT(received()[1], HasSubstr("User-Agent: Engine/5\r\n"));
  EXPECT_THAT(received()[1], Not(HasSubstr("com.example.host")));
}

TEST_F(HttpHostile, GoesOnWithoutItsClientAndItsHandle) {
  server_.on("/ad", PlainAnswer{.body = "here"});
  std::string body;
  {
    gtk::GtkHttpClient shortLived{runLoop_, cookies_, limits_};
    shortLived.send(request("/ad"),
                    [&](const HttpResult& result) { body = result.response->body; });
  }
  runUntil([&] { return !body.empty(); });
  EXPECT_EQ(body, "here");
}

TEST_F(HttpHostile, CompletesEveryOneOfManyAtOnce) {
  server_.on("/ad", PlainAnswer{.body = "here"});
  constexpr int count = 200;
  int good = 0;
  int bad = 0;
  for (int sent = 0; sent < count; ++sent) {
    client_.send(request("/ad"), [&](const HttpResult& result) { ++(result.error ? bad : good); });
  }
  runUntil([&] { return good + bad >= count; });
  EXPECT_EQ(good, count);
  EXPECT_EQ(bad, 0);
}

}  // namespace
}  // namespace tavo::test
