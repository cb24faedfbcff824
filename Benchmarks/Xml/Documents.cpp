#include "Documents.h"

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

namespace tavo::benchmarks {
namespace {

std::string recorded(const std::string& name) {
  std::ifstream file{std::string{TAVO_TEST_DATA} + "/vast/" + name, std::ios::binary};
  std::string text{std::istreambuf_iterator<char>{file}, {}};
  if (text.empty()) {
    std::cerr << "cannot read " << name << "\n";
    std::exit(EXIT_FAILURE);
  }
  return text;
}

// The Ad element of a document, its hosts varied by `turn`.
std::string variedAd(const std::string& document, std::size_t turn) {
  const std::size_t begin = document.find("<Ad ");
  const std::size_t end = document.rfind("</VAST>");
  std::string ad;
  std::size_t count = turn;
  for (std::size_t at = begin; at < end; ++at) {
    ad += document[at];
    if (document.compare(at, 8, ".example") == 0) {
      ad.insert(ad.size() - 1, (count * 7 + turn) % 23, 'v');
      ++count;
    }
  }
  return ad;
}

std::string large(const std::string& first, const std::string& second) {
  constexpr std::size_t kSize = 300'000;
  std::string text = "<?xml version=\"1.0\"?>\n<VAST version=\"3.0\">\n";
  for (std::size_t turn = 0; text.size() < kSize; ++turn) {
    text += variedAd(turn % 3 == 0 ? second : first, turn);
  }
  return text + "</VAST>\n";
}

}  // namespace

const std::vector<Document>& documents() {
  static const std::vector<Document> all = [] {
    const std::string first = recorded("inline-linear.xml");
    const std::string second = recorded("inline-all-kinds.xml");
    return std::vector<Document>{{"3KB", first}, {"15KB", second}, {"300KB", large(first, second)}};
  }();
  return all;
}

}  // namespace tavo::benchmarks
