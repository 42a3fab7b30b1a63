#include "JsonBody.h"
#include "RequestCheck.h"
#include "RightRequests.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace velmor::tests {
namespace {

using nlohmann::json;
using namespace velmor::tools;
using Pointer = json::json_pointer;

constexpr Protocol modelProtocols[] = {Protocol::responses, Protocol::messages};

/// "" when the request passes, else "STATUS PATH: MESSAGE".
std::string verdict(Protocol protocol, const ReceivedRequest& request) {
  const RequestCheck check(RightRequests::key);
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
  return verdict(protocol, RightRequests::request(protocol, body.dump()));
}

std::string promptVerdict(const std::string& prompt) {
  return bodyVerdict(Protocol::responses, RightRequests::body(Protocol::responses, prompt));
}

struct Mutation {
  std::string path; ///< that the refusal must name
  json body;
};

Mutation without(json body, const Pointer& path) {
  auto& parent = body.at(path.parent_pointer());
  if (parent.is_array())
    parent.erase(std::stoul(path.back()));
  else
    parent.erase(path.back());
  return {path.to_string(), std::move(body)};
}

Mutation with(json body, const Pointer& path, json value) {
  body[path] = std::move(value);
  return {path.to_string(), std::move(body)};
}

json altered(const json& value) {
  if (value.is_string()) return value.get<std::string>() + "x";
  if (value.is_boolean()) return !value.get<bool>();
  return value.get<double>() + 1;
}

void collect(const json& body, const Pointer& path, std::vector<Mutation>& mutations) {
  const auto& value = body.at(path);
  if (!path.empty()) {
    mutations.push_back(without(body, path));
    mutations.push_back(with(body, path, nullptr));
  }
  if (value.is_object()) mutations.push_back(with(body, path / "extra", "text"));
  if (value.is_array()) mutations.push_back(with(body, path / value.size(), "extra"));
  // Any other name is a right name for a model.
  if (value.is_primitive() && path.to_string() != "/model")
    mutations.push_back(with(body, path, altered(value)));
  if (value.is_number_integer()) mutations.push_back(with(body, path, value.get<double>()));
  if (!value.is_structured()) return;
  for (const auto& [name, member] : value.items())
    collect(body, path / name, mutations);
}

TEST(RequestCheck, letsRightRequestsPass) {
  for (const auto protocol : modelProtocols)
    for (const std::string count : {"3", "5", "7", "10"}) {
      const auto prompt = RightRequests::prompt("- BPM: 0.00", "- Key: ", "- Genre: ", count);
      EXPECT_EQ(bodyVerdict(protocol, RightRequests::body(protocol, prompt, count)), "") << count;
    }
  EXPECT_EQ(verdict(Protocol::release, RightRequests::request(Protocol::release, "")), "");
}

TEST(RequestCheck, namesThePathOfEverySingleChangeOfABody) {
  for (const auto protocol : modelProtocols) {
    std::vector<Mutation> mutations;
    collect(RightRequests::body(protocol, RightRequests::prompt()), Pointer(), mutations);
    EXPECT_GT(mutations.size(), 250U);
    for (const auto& [path, body] : mutations)
      EXPECT_TRUE(bodyVerdict(protocol, body).starts_with("400 " + path + ": "))
          << path << " but got: " << bodyVerdict(protocol, body) << "\nfor " << body;
  }
}

TEST(RequestCheck, refusesBodiesThatAreNotTheOneObject) {
  const auto right = RightRequests::body(Protocol::responses, RightRequests::prompt()).dump();
  const auto twice = R"({"tools":[{"name":1},{"name":1,"a~/b":{"x":1,"x":1}}]})";
  struct Case {
    std::string body, verdict;
  };
  for (const auto& [body, wanted] :
       std::vector<Case>{{"", "400 /: the body is not JSON"},
                         {right + "}", "400 /: the body is not JSON"},
                         {"{\"model\":\"\xff\"}", "400 /: the body is not JSON"},
                         {"[" + right + "]", "400 /: the body is not a JSON object"},
                         {right.substr(0, right.size() - 1) + R"(,"model":"gpt-4"})",
                          "400 /model: member is written twice"},
                         {twice, "400 /tools/1/a~0~1b/x: member is written twice"}})
    EXPECT_EQ(verdict(Protocol::responses, RightRequests::request(Protocol::responses, body)),
              wanted);
}

TEST(RequestCheck, holdsTheModelAgainstTheProtocol) {
  struct Case {
    Protocol protocol;
    const char* model;
    bool right;
  };
  for (const auto& [protocol, model, right] :
       {Case{Protocol::responses, " GPT-4.1 ", true}, Case{Protocol::responses, "o3", false},
        Case{Protocol::messages, "gpt-4", false}, Case{Protocol::messages, " ", false},
        Case{Protocol::messages, "gpt", true}}) {
    auto body = RightRequests::body(protocol, RightRequests::prompt());
    body["model"] = model;
    const auto result = bodyVerdict(protocol, body);
    EXPECT_TRUE(right ? result.empty() : result.starts_with("400 /model: ")) << model << result;
  }
}

TEST(RequestCheck, namesEveryWrongHeader) {
  for (const auto protocol : {Protocol::responses, Protocol::messages, Protocol::release}) {
    const std::string body = protocol == Protocol::release
                                 ? ""
                                 : RightRequests::body(protocol, RightRequests::prompt()).dump();
    const auto right = RightRequests::request(protocol, body);
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
      for (const std::string value : {"", "x", "Bearer ", "Bearer x", "bearer local-demo-key",
                                      "application/json; charset=utf-8", "2023-01-01"}) {
        auto changed = right;
        changed.headers[index].second = value;
        EXPECT_TRUE(verdict(protocol, changed).starts_with(path)) << name << " = " << value;
      }
    }
    for (const char* name : {"cookie", "x-other", "accept-language"}) {
      auto extended = right;
      extended.headers.emplace_back(name, "1");
      EXPECT_EQ(verdict(protocol, extended),
                std::string("400 /headers/") + name + ": unexpected header");
    }
  }
}

TEST(RequestCheck, refusesKeyHeadersOfTheOtherProtocol) {
  auto request = RightRequests::request(
      Protocol::responses,
      RightRequests::body(Protocol::responses, RightRequests::prompt()).dump());
  request.headers.emplace_back("x-api-key", RightRequests::key);
  EXPECT_EQ(verdict(Protocol::responses, request), "400 /headers/x-api-key: unexpected header");
}

TEST(RequestCheck, knowsItsPathsAndMethods) {
  struct Case {
    const char *method, *target;
    int status;
  };
  for (const auto& [method, target, status] :
       {Case{"POST", "/v1/responses", 200}, Case{"GET", "/v1/responses", 405},
        Case{"POST", "/v1/responses?x=1", 404}, Case{"POST", "/v1/macos", 405},
        Case{"POST", "/v1/responses/", 404}, Case{"GET", "/v1/macos", 200},
        Case{"PUT", "/services/tinker-prod/anthropic/api/v1/messages", 405}}) {
    const auto result = RequestCheck::protocolOf({method, target, {}, ""});
    const auto* refusal = std::get_if<Refusal>(&result);
    EXPECT_EQ(refusal ? refusal->status : 200, status) << method << " " << target;
  }
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines{""};
  for (const char letter : text)
    if (letter == '\n')
      lines.emplace_back();
    else
      lines.back() += letter;
  return lines;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text = lines.front();
  for (size_t index = 1; index < lines.size(); ++index)
    text += "\n" + lines[index];
  return text;
}

TEST(PromptReader, namesEveryLineThatDepartsFromItsTemplate) {
  const std::string path = "400 /input/0/content/0/text: ";
  const auto right = linesOf(RightRequests::prompt());
  ASSERT_EQ(right.size(), 16U);
  for (size_t index = 0; index < right.size(); ++index) {
    const auto line = path + "line " + std::to_string(index + 1) + " ";
    auto changed = right;
    changed[index] = "x" + changed[index];
    EXPECT_TRUE(promptVerdict(joined(changed)).starts_with(line)) << promptVerdict(joined(changed));
    auto dropped = right;
    dropped.erase(dropped.begin() + static_cast<std::ptrdiff_t>(index));
    EXPECT_TRUE(promptVerdict(joined(dropped)).starts_with(path + "the prompt has 15 lines"));
  }
  EXPECT_TRUE(promptVerdict(joined(right) + "\n").starts_with(path + "the prompt has 17 lines"));
}

TEST(PromptReader, refusesValuesThatAreNotWrittenAsTheyMustBe) {
  struct Case {
    std::string from, to;
    int line;
  };
  for (const auto& [from, to, line] :
       std::vector<Case>{{"Night \"Drive\"", "", 4},
                         {"Nobody & Co", "", 5},
                         {"128.00", "128", 7},
                         {"128.00", "128.0", 7},
                         {"128.00", "128,00", 7},
                         {"128.00", "nan", 7},
                         {"128.00", "0128.00", 7},
                         {"128.00", "-1.00", 7},
                         {"70/100", "70.5/100", 10},
                         {"70/100", "70/100 ", 10},
                         {"+/- 10 BPM", "+/- 10.0 BPM", 14},
                         {"+/- 10 BPM", "+/- 31 BPM", 14},
                         {"exactly 5 real", "exactly 4 real", 14},
                         {"exactly 5 real", "exactly 7 real", 16},
                         {"exactly 5 ranked", "exactly 3 ranked", 16},
                         {"Do not invent", "Do not  invent", 14}}) {
    auto prompt = RightRequests::prompt();
    prompt.replace(prompt.find(from), from.size(), to);
    const auto wanted = "400 /input/0/content/0/text: line " + std::to_string(line) + " ";
    EXPECT_TRUE(promptVerdict(prompt).starts_with(wanted)) << to << promptVerdict(prompt);
  }
}

TEST(PromptReader, countMustBeTheToolsToo) {
  EXPECT_EQ(promptVerdict(RightRequests::prompt("- BPM: 1.00", "- Key: 1A", "- Genre: ", "7"))
                .substr(0, 24),
            "400 /tools/0/description");
}

} // namespace
} // namespace velmor::tests
