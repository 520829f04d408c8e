// request_test.cpp
// Which requests are answered at all, and how their targets are taken apart.
#include "view/http/request_checks.h"

#include "gtest/gtest.h"

namespace {

using Kelcam::Gate;
using Kelcam::HttpRequest;
using Kelcam::RefusalOf;
using Kelcam::TakeTarget;

constexpr int kNone = 0;

HttpRequest Get(const std::string& target, const std::string& host) {
  HttpRequest request;
  request.method = "GET";
  request.host = host;
  TakeTarget(target, request);
  return request;
}

int StatusOf(const HttpRequest& request, const Gate& gate) {
  const auto refusal = RefusalOf(request, gate);
  return refusal ? refusal->status : kNone;
}

TEST(Targets, AreTakenApartAndNotDecoded) {
  const HttpRequest request = Get("/a%2fb/../c?x=1&&y&z=%41=2&x=3", "");

  EXPECT_EQ(request.path, "/a%2fb/../c");
  EXPECT_EQ(request.query, (std::map<std::string, std::string>{{"x", "1"}, {"y", ""}, {"z", "%41=2"}}));
}

TEST(RequestChecks, LocalNamesWithTheOwnPortPass) {
  const Gate gate{8480, {}};

  for (const char* host : {"127.0.0.1:8480", "localhost:8480", "[::1]:8480"})
    EXPECT_EQ(StatusOf(Get("/", host), gate), kNone);
  for (const char* host :
       {"", "127.0.0.1", "localhost:80", "evil.example:8480", "127.0.0.1:84800", "127.0.0.1.evil:8480"}) {
    EXPECT_EQ(StatusOf(Get("/", host), gate), 403) << host;
  }
}

TEST(RequestChecks, AtTheUsualPortANameNeedsNone) { EXPECT_EQ(StatusOf(Get("/", "localhost"), {80, {}}), kNone); }

TEST(RequestChecks, WithATokenAnyNamePassesThatHasIt) {
  const Gate gate{8480, "0123456789abcdef"};

  EXPECT_EQ(StatusOf(Get("/?token=0123456789abcdef", "camera.example:8480"), gate), kNone);
  for (const char* target : {"/", "/?token=", "/?token=0123456789abcdee", "/?token=0123456789abcdef0"}) {
    EXPECT_EQ(StatusOf(Get(target, "127.0.0.1:8480"), gate), 403) << target;
  }
}

TEST(Tokens, HaveThirtyTwoDigitsAndDiffer) {
  const std::string token = Kelcam::NewToken();

  EXPECT_EQ(token.size(), 32U);
  EXPECT_EQ(token.find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_NE(token, Kelcam::NewToken());
}

}  // namespace
