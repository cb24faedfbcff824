#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include <tavo/Date.h>

#include "AdController/ResponseParser/VASTXMLParser/VastFetch.h"
#include "AdController/ResponseParser/VASTXMLParser/XVASTXMLParser.h"

namespace tavo {

// How long a chain of wrappers may take.
struct VastChainTiming {
  Seconds perDocument;           // handed to each fetch, or what is left of the budget
  Seconds budget;                // the whole chain
  std::function<Seconds()> now;  // time since some fixed moment
};

// Loads a VAST ad whole: empties the shared root, parses `text` into it, and then, while the last
// wrapper names a document other than the one fetched just before, fetches and parses that one. The
// chain ends well when a document adds no wrapper or names itself again. It fails as an invalid URL
// when a document cannot be had, when the chain comes back to one fetched earlier, and when it
// outlasts its budget; its length alone is no reason. Nothing is thrown.
//
// `completion` is called once, inside this call when nothing needs to wait. The chain keeps itself
// and `parser` alive until then; it ends without a word if `fetch` drops its completion.
void loadVastChain(std::string_view text, const std::shared_ptr<XVASTXMLParser>& parser,
                   VastFetch fetch, VastChainTiming timing, VastCompletion completion);

}  // namespace tavo
