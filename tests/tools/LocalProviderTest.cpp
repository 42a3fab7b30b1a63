#include "JsonBody.h"
#include "RequestCheck.h"
#include "WantedRequest.h"
#include "ai/RecommendationPrompt.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <tuple>
#include <vector>

namespace velmor::tests {
namespace {

using nlohmann::json;
using namespace velmor::tools;
using Pointer = json::json_pointer;

constexpr Protocol modelProtocols[] = {Protocol::responses, Protocol::messages};

constexpr const char* key = "local-demo-key";

// Requests as they must look. Those that Velmor itself sends meet the check in the live tests.

std::string rightPrompt(int count = 5) {
  const TrackMetadata track{.song = "Night \"Drive\"",
                            .artist = "Nobody & Co",
                            .bpm = 128,
                            .key = "8A",
                            .genre = "House",
                            .energy = 70,
                            .other = "Verified by a test"};
  return RecommendationPrompt::text(track, "mpv", 10, count);
}

json rightBody(Protocol protocol, const std::string& prompt = rightPrompt(), int count = 5) {
  return protocol == Protocol::responses
             ? WantedRequest::responses("gpt-5-mini", prompt, count)
             : WantedRequest::messages("thinkingmachines/Inkling-Small", prompt, count);
}

ReceivedRequest rightRequest(Protocol protocol, const std::string& body) {
  ReceivedRequest request{"POST", "/v1/responses", {}, body};
  request.headers = {
      {"host", "127.0.0.1"}, {"accept", "*/*"}, {"content-type", "application/json"}};
  if (protocol == Protocol::responses) {
    request.headers.emplace_back("authorization", std::string("Bearer ") + key);
  } else if (protocol == Protocol::messages) {
    request.target = "/services/tinker-prod/anthropic/api/v1/messages";
    request.headers.emplace_back("x-api-key", key);
    request.headers.emplace_back("anthropic-version", "2023-06-01");
  } else {
    request = {"GET", "/v1/macos", {{"host", "127.0.0.1"}, {"accept", "application/json"}}, ""};
  }
  return request;
}

/// "" when the request passes, else "STATUS PATH: MESSAGE".
std::string verdict(Protocol protocol, const ReceivedRequest& request) {
  const RequestCheck check(key);
  std::optional<Refusal> refusal;
  if (protocol == Protocol::release) {
    refusal = check.releaseRefusal(request);
  } else {
    const auto result = check.modelRequest(protocol, request);
    if (const auto* found = std::get_if<Refusal>(&result)) refusal = *found;
  }
  if (!refusal) return "";
  return std::to_string(refusal->status) + " " + refusal->difference.path + ": " +
         refusal->difference.message;
}

std::string bodyVerdict(Protocol protocol, const json& body) {
  return verdict(protocol, rightRequest(protocol, body.dump()));
}

std::string promptVerdict(const std::string& prompt) {
  return bodyVerdict(Protocol::responses, rightBody(Protocol::responses, prompt));
}

json altered(const json& value) {
  if (value.is_string()) return value.get<std::string>() + "x";
  if (value.is_boolean()) return !value.get<bool>();
  return value.get<double>() + 1;
}

/// Adds every single change of the body below a path, each as a step of a patch.
void collect(const json& body, const Pointer& path, std::vector<json>& changes) {
  const auto& value = body.at(path);
  const auto add = [&](const char* operation, const Pointer& where, const json& given) {
    changes.push_back({{"op", operation}, {"path", where.to_string()}, {"value", given}});
  };
  if (!path.empty()) {
    add("remove", path, nullptr);
    add("replace", path, nullptr);
  }
  if (value.is_object()) add("add", path / "extra", "text");
  if (value.is_array()) add("add", path / value.size(), "extra");
  // Any other name is a right name for a model.
  if (value.is_primitive() && path.to_string() != "/model") add("replace", path, altered(value));
  if (value.is_number_integer()) add("replace", path, value.get<double>());
  if (!value.is_structured()) return;
  for (const auto& [name, member] : value.items())
    collect(body, path / name, changes);
}

TEST(RequestCheck, letsRightRequestsPass) {
  for (const auto protocol : modelProtocols)
    EXPECT_EQ(bodyVerdict(protocol, rightBody(protocol, rightPrompt(10), 10)), "");
  EXPECT_EQ(verdict(Protocol::release, rightRequest(Protocol::release, "")), "");
}

TEST(RequestCheck, namesThePathOfEverySingleChangeOfABody) {
  for (const auto protocol : modelProtocols) {
    const auto body = rightBody(protocol);
    std::vector<json> changes;
    collect(body, Pointer(), changes);
    EXPECT_GT(changes.size(), 250U);
    for (const auto& change : changes) {
      const auto result = bodyVerdict(protocol, body.patch(json::array({change})));
      EXPECT_TRUE(result.starts_with("400 " + change.at("path").get<std::string>() + ": "))
          << change << " but got: " << result;
    }
  }
}

TEST(RequestCheck, refusesBodiesThatAreNotTheOneObject) {
  const auto right = rightBody(Protocol::responses).dump();
  for (const auto& [body, wanted] : std::vector<std::pair<std::string, std::string>>{
           {right + "}", "400 /: the body is not JSON"},
           {"{\"model\":\"\xff\"}", "400 /: the body is not JSON"},
           {"[" + right + "]", "400 /: the body is not a JSON object"},
           {R"({"tools":[{"name":1},{"name":1,"a~/b":{"x":1,"x":1}}]})",
            "400 /tools/1/a~0~1b/x: member is written twice"}})
    EXPECT_EQ(verdict(Protocol::responses, rightRequest(Protocol::responses, body)), wanted);
}

TEST(RequestCheck, holdsTheModelAgainstTheProtocol) {
  const std::tuple<Protocol, const char*, const char*> cases[] = {
      {Protocol::responses, " GPT-4.1 ", ""},
      {Protocol::responses, "o3", "400 /model: must begin with gpt-"},
      {Protocol::messages, "gpt-4", "400 /model: must not begin with gpt-"},
      {Protocol::messages, " ", "400 /model: must name a model"}};
  for (const auto& [protocol, model, wanted] : cases) {
    auto body = rightBody(protocol);
    body["model"] = model;
    EXPECT_EQ(bodyVerdict(protocol, body), wanted) << model;
  }
}

TEST(RequestCheck, namesEveryWrongHeader) {
  for (const auto protocol : {Protocol::responses, Protocol::messages, Protocol::release}) {
    const auto right = rightRequest(protocol, rightBody(Protocol::responses).dump());
    for (size_t index = 0; index < right.headers.size(); ++index) {
      const auto& name = right.headers[index].first;
      const bool isFree = name == "host" || (name == "accept" && protocol != Protocol::release);
      const bool isKey = name == "authorization" || name == "x-api-key";
      const auto path = (isKey ? "401 /headers/" : "400 /headers/") + name + ": ";

      auto repeated = right;
      repeated.headers.push_back(right.headers[index]);
      EXPECT_EQ(verdict(protocol, repeated), "400 /headers/" + name + ": header is sent twice");
      if (isFree) continue;
      auto dropped = right;
      dropped.headers.erase(dropped.headers.begin() + static_cast<std::ptrdiff_t>(index));
      EXPECT_EQ(verdict(protocol, dropped), path + "missing header");
      for (const std::string value : {"", "x", "Bearer ", "Bearer x", "bearer local-demo-key"}) {
        auto changed = right;
        changed.headers[index].second = value;
        EXPECT_TRUE(verdict(protocol, changed).starts_with(path)) << name << " = " << value;
      }
    }
    auto extended = right;
    extended.headers.emplace_back("cookie", "1");
    EXPECT_EQ(verdict(protocol, extended), "400 /headers/cookie: unexpected header");
  }
}

TEST(RequestCheck, knowsItsPathsAndMethods) {
  const std::tuple<const char*, const char*, int> cases[] = {
      {"POST", "/v1/responses", 200},
      {"GET", "/v1/macos", 200},
      {"POST", "/v1/macos", 405},
      {"POST", "/v1/responses?x=1", 404},
      {"PUT", "/services/tinker-prod/anthropic/api/v1/messages", 405}};
  for (const auto& [method, target, status] : cases) {
    const auto result = RequestCheck::protocolOf({method, target, {}, ""});
    const auto* refusal = std::get_if<Refusal>(&result);
    EXPECT_EQ(refusal ? refusal->status : 200, status) << method << " " << target;
  }
}

TEST(PromptReader, namesEveryLineThatDepartsFromItsTemplate) {
  const std::string path = "400 /input/0/content/0/text: ";
  const auto right = rightPrompt();
  size_t begin = 0;
  for (int number = 1; number <= 16; ++number) {
    auto changed = right;
    changed.insert(begin, "x");
    EXPECT_TRUE(promptVerdict(changed).starts_with(path + "line " + std::to_string(number) + " "))
        << promptVerdict(changed);
    begin = right.find('\n', begin) + 1;
  }
  EXPECT_TRUE(promptVerdict(right + "\n").starts_with(path + "the prompt has 17 lines"));
}

TEST(PromptReader, refusesValuesThatAreNotWrittenAsTheyMustBe) {
  const std::string path = "400 /input/0/content/0/text: line ";
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {"Night \"Drive\"", "", "4 "},
      {"Nobody & Co", "", "5 "},
      {"128.00", "128", "7 "},
      {"128.00", "nan", "7 "},
      {"128.00", "0128.00", "7 "},
      {"128.00", "-1.00", "7 "},
      {"70/100", "70.5/100", "10 "},
      {"+/- 10 BPM", "+/- 31 BPM", "14 "},
      {"exactly 5 real", "exactly 4 real", "14 "},
      {"exactly 5 ranked", "exactly 3 ranked", "16 "}};
  for (const auto& [from, to, line] : cases) {
    auto prompt = rightPrompt();
    prompt.replace(prompt.find(from), from.size(), to);
    EXPECT_TRUE(promptVerdict(prompt).starts_with(path + line)) << to << promptVerdict(prompt);
  }
}

TEST(PromptReader, countMustBeTheToolsToo) {
  EXPECT_TRUE(promptVerdict(rightPrompt(7)).starts_with("400 /tools/0/description"));
}

} // namespace
} // namespace velmor::tests
