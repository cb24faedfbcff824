#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <memory>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/VASTXMLParser/XVASTXMLParser.h"
#include "Documents.h"
#include "Headless/HeadlessPlatform.h"
#include "KeptTimes.h"
#include "Readers.h"
#include "Report.h"

namespace tavo::benchmarks {
namespace {

using Read = std::function<Facts(const std::string& text)>;

void registerOne(const std::string& name, const Document& document, const Read& read) {
  benchmark::RegisterBenchmark((document.name + "/" + name).c_str(), [&document, read](
                                                                         benchmark::State& state) {
    for ([[maybe_unused]] auto turn : state) {
      benchmark::DoNotOptimize(read(document.text));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * document.text.size()));
  });
}

// A reader that finds other facts than the rest has not done the same work.
void registerReader(const std::string& name, const Document& document, const Read& read) {
  const Facts facts = read(document.text);
  const Facts expected = readWithReader(document.text, availableMarkupScans().forms[0].scan);
  if (facts.ads != expected.ads || facts.texts != expected.texts ||
      facts.values != expected.values || facts.texts == 0) {
    std::cerr << name << " reads " << document.name << " in another way: " << facts.ads << " ads, "
              << facts.texts << " texts, " << facts.values << " values instead of " << expected.ads
              << ", " << expected.texts << ", " << expected.values << "\n";
    std::exit(EXIT_FAILURE);
  }
  registerOne(name, document, read);
}

// The least that any reader of a text can do.
Facts countTags(const std::string& text) {
  Facts facts;
  const char* const end = text.data() + text.size();
  const char* at = text.data();
  while (at != end && (at = static_cast<const char*>(
                           std::memchr(at, '<', static_cast<std::size_t>(end - at)))) != nullptr) {
    ++facts.texts;
    ++at;
  }
  return facts;
}

Facts parseToModel(const std::string& text) {
  XVASTAd::resetInstance();
  XVASTXMLParser parser;
  const auto root = parser.loadXMLContentFromString(text);
  return {
      .ads = root->inlineAd != nullptr ? std::size_t{1} : 0, .texts = 0, .values = 0, .bytes = 0};
}

void registerAll(const Document& document) {
  const auto buffer = std::make_shared<std::string>(document.text.size() + 1, '\0');
  registerOne("plain scan for <", document, countTags);
  const MarkupScans& scans = availableMarkupScans();
  for (std::size_t form = 0; form < scans.count; ++form) {
    registerReader(
        "XTBXML " + std::string{scans.forms[form].name}, document,
        [scan = scans.forms[form].scan](const auto& text) { return readWithReader(text, scan); });
  }
  registerReader("pugixml in place", document,
                 [buffer](const auto& text) { return readWithPugixmlInPlace(text, *buffer); });
  registerReader("pugixml copying", document, readWithPugixmlCopying);
  registerReader("RapidXML", document,
                 [buffer](const auto& text) { return readWithRapidXml(text, *buffer); });
  registerReader("tinyxml2", document, readWithTinyXml2);
  registerReader("libxml2", document, readWithLibxml2);
  registerReader("expat", document, readWithExpat);
  registerOne("VAST text to model", document, parseToModel);
}

// The reader in its every form, and the model, beside pugixml in place.
void reportDocument(Report& report, const KeptTimes& times, const Document& document) {
  const auto compare = [&](const std::string& name, std::optional<Bound> bound) {
    const auto time = times.of(document.name + "/" + name);
    if (time.empty()) return;  // left out by an argument
    report.faster(document.name + ", " + name, time, times.of(document.name + "/pugixml in place"),
                  "ns", bound);
  };
  const MarkupScans& scans = availableMarkupScans();
  for (std::size_t form = 0; form < scans.count; ++form) {
    const bool isPortable = form == 0;
    compare("XTBXML " + std::string{scans.forms[form].name}, atLeast(isPortable ? 1.0 : 1.9));
  }
  compare("VAST text to model", atLeast(1.0));
  compare("plain scan for <", {});
  for (const auto* name : {"pugixml copying", "RapidXML", "tinyxml2", "libxml2", "expat"}) {
    compare(name, {});
  }
}

}  // namespace
}  // namespace tavo::benchmarks

int main(int argc, char** argv) {
  const tavo::Runtime runtime{tavo::headless::HeadlessPlatform{}.platform()};
  for (const auto& document : tavo::benchmarks::documents()) {
    tavo::benchmarks::registerAll(document);
  }
  benchmark::Initialize(&argc, argv);
  tavo::benchmarks::Report report{"XmlBenchmark"};
  tavo::benchmarks::KeptTimes times;
  benchmark::RunSpecifiedBenchmarks(&times);
  for (const auto& document : tavo::benchmarks::documents()) {
    tavo::benchmarks::reportDocument(report, times, document);
  }
  return report.finish();
}
