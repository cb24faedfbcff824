#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <array>
#include <string>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/XJSONResponseParser.h"
#include "AdInfo/XAdInfo.h"
#include "Headless/HeadlessPlatform.h"

namespace {

// An answer of 4 KB: short facts and a creative of HTML.
std::string answer() {
  std::string creative;
  while (creative.size() < 3300) {
    creative +=
        "<div class=\\\"slide\\\"><img src=\\\"http:\\/\\/cdn.example.test\\/i.png\\\"><\\/div>\\n";
  }
  std::string json = R"({"Ad":[{"ImpUrl":"http://track.example.test/imp?id=1234567890&c=abcdef",)"
                     R"("ClkUrl":"http://track.example.test/clk?id=1234567890&c=abcdef",)"
                     R"("H":"50","W":"320","AdType":"text/html","FileUrl":"","Text":")";
  json += creative + "\"";
  for (const auto* key :
       {"ExtraHT", "ExtraTx", "TargW", "AccCampId", "CreId", "AdvId", "CPM", "CPC", "CPA", "eCPM",
        "BTSeg", "Ref", "CampKey", "ExclCamp", "IO", "Pos"}) {
    json += std::string{",\""} + key + "\":\"value of " + key + "\"";
  }
  return json + "}]}";
}

// The least that can be done: parse, then copy 23 strings out.
void simdjsonParseAndCopy(benchmark::State& state) {
  const std::string body = answer();
  for ([[maybe_unused]] auto _ : state) {
    simdjson::dom::parser parser;
    std::array<std::string, 23> texts;
    std::size_t next = 0;
    for (const auto member : parser.parse(body)["Ad"].at(0).get_object()) {
      texts[next++] = member.value.get_string().value();
    }
    benchmark::DoNotOptimize(texts);
  }
}

void answerToAdInfo(benchmark::State& state) {
  const tavo::Runtime runtime{tavo::headless::HeadlessPlatform{}.platform()};
  const std::string body = answer();
  for ([[maybe_unused]] auto _ : state) {
    const auto document = tavo::XJSONResponseParser::parseJSONResponseWithData(body);
    const tavo::XAdInfo info{&*document};
    benchmark::DoNotOptimize(info);
  }
}

BENCHMARK(simdjsonParseAndCopy)->Repetitions(5);
BENCHMARK(answerToAdInfo)->Repetitions(5);

}  // namespace
