// Forms URLs out of arbitrary lines, and resolves each against the first one.

#include <tavo/Url.h>

#include "Lines.h"

using namespace tavo;
using fuzz::require;

namespace {

void checkPieces(const Url& url) {
  require(!fuzz::hasControls(url.text()) && url.text().find(' ') == std::string::npos);
  require(Url::parse(url.text()) == url && Url::fromText(std::string_view{url.text()}) == url);
  std::size_t total = 0;
  for (const auto piece :
       {url.scheme(), url.host(), url.path(), url.query(), url.fragment(), url.parameterString()}) {
    total = std::max(total, piece.size());
    require(piece.empty() ||
            (piece.data() >= url.text().data() &&
             piece.data() + piece.size() <= url.text().data() + url.text().size()));
  }
  require(total <= url.text().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto lines = fuzz::linesOf(data, size);
  const Url base = Url::fromText(std::string_view{lines.front()});
  for (const auto& line : lines) {
    const std::string escaped = percentEscaped(line);
    require(percentEscaped(escaped) == escaped);
    require(percentDecoded(line).size() <= line.size());
    const Url url = Url::fromText(std::string_view{line});
    checkPieces(url);
    const Url target = resolved(base, url);
    checkPieces(target);
    if (!target) continue;
    require(!target.scheme().empty());
    // A reference without a path keeps the base's own, steps and all; the next one has none left.
    const Url plain = resolved(base, target);
    require(!plain || resolved(base, plain) == plain);
  }
  return 0;
}
