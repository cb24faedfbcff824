// Feeds arbitrary bytes to the XML reader and to the VAST parser. Besides what the sanitizers find,
// it checks what must hold for every document.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/Runtime.h>

#include "AdController/ResponseParser/VASTXMLParser/VastWrapperChain.h"
#include "External/TBXML/XTBXML.h"
#include "Headless/HeadlessPlatform.h"

namespace {

using tavo::XTBXML;
using tavo::XTBXMLElement;

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// Makes a reader look at every byte of a text, so that the address sanitizer does.
std::size_t sum(std::string_view text) {
  std::size_t total = 0;
  for (const char c : text) {
    total += static_cast<unsigned char>(c);
  }
  return total;
}

struct Totals {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t bytes = 0;
  friend bool operator==(const Totals&, const Totals&) = default;
};

// Visits the whole tree and checks its links.
Totals totalsOf(XTBXMLElement* root) {
  Totals totals;
  std::vector<XTBXMLElement*> open;
  if (root != nullptr) {
    open.push_back(root);
  }
  while (!open.empty()) {
    XTBXMLElement* const element = open.back();
    open.pop_back();
    ++totals.elements;
    totals.bytes += sum(element->name) + sum(element->text);
    for (auto* at = element->firstAttribute; at != nullptr; at = at->next) {
      ++totals.attributes;
      totals.bytes += sum(at->name) + sum(at->value);
    }
    XTBXMLElement* previous = nullptr;
    for (auto* child = element->firstChild; child != nullptr; child = child->nextSibling) {
      require(child->parentElement == element && child->previousSibling == previous);
      previous = child;
      open.push_back(child);
    }
    require(element->currentChild == previous);
  }
  return totals;
}

// Every form of the scan must tell the same of whole blocks, and give the same tree.
void readWithEveryScan(std::string_view document) {
  const tavo::MarkupScans& scans = tavo::availableMarkupScans();
  const std::size_t blocks = document.size() / tavo::markupBlock;
  std::vector<std::uint64_t> firstBits;
  for (std::size_t form = 0; form < scans.count; ++form) {
    std::vector<std::uint64_t> bits(blocks);
    scans.forms[form].scan(document.data(), blocks, bits.data());
    require(form == 0 || bits == firstBits);
    firstBits = std::move(bits);
  }
  Totals first;
  for (std::size_t form = 0; form < scans.count; ++form) {
    const XTBXML reader{document, {}, scans.forms[form].scan};
    const Totals totals = totalsOf(reader.rootXMLElement());
    require(form == 0 || totals == first);
    first = totals;
  }
}

// The document is also what its own wrappers lead to.
void loadChain(const std::string& document) {
  tavo::Runtime runtime{tavo::headless::HeadlessPlatform{}.platform()};
  int completions = 0;
  double now = 0;
  tavo::loadVastChain(
      document, std::make_shared<tavo::XVASTXMLParser>(),
      [&document](const tavo::Url&, tavo::Seconds, const tavo::VastFetchCompletion& completion) {
        completion(document);
      },
      {tavo::Seconds{1}, tavo::Seconds{5}, [&now] { return tavo::Seconds{now += 1}; }},
      [&completions](const tavo::VastOutcome& outcome) {
        require((outcome.ad != nullptr) != outcome.failure.has_value());
        ++completions;
      });
  require(completions == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document{reinterpret_cast<const char*>(data), size};
  readWithEveryScan(document);
  loadChain(document);
  return 0;
}
