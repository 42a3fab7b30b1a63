#include "platform/linux/http/CurlHttpClient.h"
#include "platform/linux/system/PosixProcessLauncher.h"
#include "tests/platform/linux/http/TestServer.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <future>

namespace velmor {

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr auto timedOut = "The request timed out.";

class HttpTest : public testing::Test {
protected:
  HttpResponse send(const HttpRequest& request, const HttpSessionConfiguration& limits = {}) {
    return client.makeSession(limits)->send(request);
  }

  /// The message of the request's failure.
  std::string failure(const HttpRequest& request, const HttpSessionConfiguration& limits = {}) {
    try {
      return "answered " + std::to_string(send(request, limits).status);
    } catch (const TransportError& error) {
      return error.what();
    }
  }

  std::string redirectTo(const std::string& url, int status) {
    return first.url("/redirect?status=" + std::to_string(status) +
                     "&to=" + httplib::detail::encode_query_param(url));
  }

  std::stop_source quit;
  CurlHttpClient client{quit.get_token()};
  TestServer first;
  TestServer second;
};

TEST_F(HttpTest, SendsWhatItIsGivenAndNothingElse) {
  const std::string body("{\"a\":\"\0b\"}", 10);
  const auto answer = send({.method = "POST",
                            .url = first.url("/echo"),
                            .headers = {{"Content-Type", "application/json"}},
                            .body = body});
  EXPECT_EQ(answer.status, 200);
  EXPECT_THAT(answer.body, AllOf(StartsWith("POST /echo\n"), EndsWith("\n\n" + body),
                                 HasSubstr("content-type: application/json\n"),
                                 HasSubstr("content-length: 10\n"), Not(HasSubstr("expect:")),
                                 Not(HasSubstr("urlencoded"))));
  EXPECT_EQ(send({.url = first.url("/none")}).status, 404);
  EXPECT_EQ(send({.url = first.url("/gzip")}).body, "{}") << "unpacked";
}

TEST_F(HttpTest, FollowsRedirectsWithTheRightMethodAndHeaders) {
  const std::tuple<int, const char*, bool, bool> cases[] = {
      // Status and method; to another origin, and whether it becomes GET.
      {301, "POST", false, true}, {302, "POST", true, true},  {302, "PUT", false, false},
      {303, "PUT", false, true},  {307, "POST", true, false}, {308, "POST", false, false}};
  for (const auto& [status, method, toOther, becomesGet] : cases) {
    const auto body = send({.method = method,
                            .url = redirectTo((toOther ? second : first).url("/echo"), status),
                            .headers = {{"authorization", "Bearer sk-secret"},
                                        {"X-API-Key", "sk-secret"},
                                        {"Content-Type", "application/json"},
                                        {"X-Other", "kept"}},
                            .body = "the body"})
                          .body;
    EXPECT_THAT(body, StartsWith((becomesGet ? "GET" : method) + std::string(" /echo\n")));
    EXPECT_THAT(body, HasSubstr("x-other: kept"));
    EXPECT_EQ(body.find("sk-secret") == std::string::npos, toOther) << status << method;
    EXPECT_EQ(body.find("content-type") == std::string::npos, becomesGet) << status << method;
    EXPECT_EQ(body.ends_with("\n\nthe body"), !becomesGet) << status << method;
  }
  const auto back = second.url("/redirect?status=307&to=" + first.url("/echo"));
  const HttpRequest detour{.url = redirectTo(back, 307), .headers = {{"X-API-Key", "sk-secret"}}};
  EXPECT_THAT(send(detour).body, AllOf(StartsWith("GET /echo"), Not(HasSubstr("sk-secret"))));
  EXPECT_EQ(failure({.url = first.url("/loop")}), "There were too many redirects.");
  EXPECT_EQ(first.loops(), 17);
}

TEST_F(HttpTest, OnlyOtherMachinesAreReachedThroughProxies) {
  ::setenv("http_proxy", "http://no-such-proxy.invalid", 1);
  ::setenv("https_proxy", first.url("").c_str(), 1);
  const auto behindHost = first.url("/echo").substr(std::string("http://127.0.0.1").size());
  const auto noProxy = "The proxy server could not be found.";
  const std::pair<const char*, const char*> hosts[] = {
      {"127.0.0.1", "answered 200"},    {"127.1", "answered 200"}, {"LocalHost", "answered 200"},
      {"dj.localhost", "answered 200"}, {"128.0.0.1", noProxy},    {"localhost.invalid", noProxy},
      {"mylocalhost", noProxy}};
  for (const auto& [host, outcome] : hosts)
    EXPECT_EQ(failure({.url = std::string("http://") + host + behindHost}), outcome) << host;
  EXPECT_THAT(failure({.url = "https://provider.invalid/"}),
              StartsWith("The proxy server asks for a name and a password"));
  ::unsetenv("http_proxy");
  ::unsetenv("https_proxy");
}

TEST_F(HttpTest, FailuresAreSentences) {
  const auto wrongScheme = "The address does not begin with http:// or https://.";
  const std::pair<std::string, const char*> cases[] = {
      {"http://no-such-host.invalid/", "The server could not be found. Is this computer online?"},
      {"ftp://127.0.0.1/", wrongScheme},
      {"/etc/passwd", wrongScheme},
      {"", wrongScheme},
      {"http://", "The address is not valid."},
      {"http://127.0.0.1:99999/", "The address is not valid."},
      {redirectTo("file:///etc/passwd", 302), wrongScheme},
      {redirectTo("/redirect?status=302&to=", 302), "answered 302"},
  };
  for (const auto& [url, message] : cases)
    EXPECT_EQ(failure({.url = url}), message) << url;
  EXPECT_EQ(failure({.url = first.url("/echo"), .headers = {{"x-api-key", "key\r\nx-more: 1"}}}),
            "A header of the request contains a line break.");
}

TEST_F(HttpTest, BodiesEndAtTheLimit) {
  const auto bytes = [&](std::size_t count) {
    return HttpRequest{.url = first.url("/bytes?count=" + std::to_string(count))};
  };
  EXPECT_EQ(send(bytes(HttpSession::bodyLimit)).body.size(), HttpSession::bodyLimit);
  EXPECT_THROW(static_cast<void>(send(bytes(HttpSession::bodyLimit + 1))), AnswerTooLarge);
}

TEST_F(HttpTest, IdleTimeAndTotalTimeAreTwoLimits) {
  constexpr Seconds brief{0.3};
  const HttpRequest silent{.url = first.url("/silent")};
  EXPECT_EQ(failure(silent, {.requestTimeout = brief}), timedOut);
  EXPECT_EQ(failure({.url = silent.url, .timeout = brief}), timedOut);
  EXPECT_EQ(failure(silent, {.resourceTimeout = brief}), timedOut);
  // The answer takes 1.5 seconds and more, but something moves all the time.
  const HttpRequest steady{.url = first.url("/trickle?count=30")};
  EXPECT_EQ(failure(steady, {.requestTimeout = Seconds{1}}), "answered 200");
  EXPECT_EQ(failure(steady, {.requestTimeout = Seconds{1}, .resourceTimeout = Seconds{0.5}}),
            timedOut);
}

TEST_F(HttpTest, ARequestThatIsNotWantedAnyMoreEndsAlone) {
  Cancellation unwanted;
  const auto session = client.makeSession({});
  auto kept = std::async(std::launch::async, [&] {
    return session->send({.url = first.url("/trickle?count=30")}).status;
  });
  auto stopped = std::async(std::launch::async, [&] {
    return failure({.url = first.url("/silent"), .cancellation = unwanted});
  });
  EXPECT_EQ(stopped.wait_for(std::chrono::milliseconds{300}), std::future_status::timeout);
  unwanted.cancel();
  EXPECT_EQ(stopped.get(), "The request was stopped.");
  EXPECT_EQ(kept.get(), 200);
}

TEST_F(HttpTest, RefusesCertificatesThatNobodyVouchesFor) {
  const TemporaryFolder folder;
  const auto key = (folder.path / "key").string();
  const auto certificate = (folder.path / "certificate").string();
  PosixProcessLauncher launcher(quit.get_token());
  const auto made =
      launcher.run({.executable = "/usr/bin/openssl",
                    .arguments = {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", key,
                                  "-out", certificate, "-subj", "/CN=localhost"},
                    .timeLimit = std::chrono::minutes{1}});
  ASSERT_EQ(made.exitStatus, 0) << made.errorOutput;
  httplib::SSLServer server(certificate.c_str(), key.c_str());
  const int port = server.bind_to_any_port("127.0.0.1");
  const std::jthread thread([&] { server.listen_after_bind(); });
  waitUntilRunning(server);
  EXPECT_EQ(failure({.url = "https://localhost:" + std::to_string(port) + "/"}),
            "The server's certificate could not be verified.");
  server.stop();
  EXPECT_EQ(failure({.url = "https" + first.url("/echo").substr(4)}),
            "A secure connection to the server could not be made.");
}

} // namespace

} // namespace velmor
