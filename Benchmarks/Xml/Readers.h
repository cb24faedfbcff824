#pragma once

#include <cstddef>
#include <string>

#include "External/TBXML/MarkupScan.h"
#include "Walk.h"

namespace tavo::benchmarks {

// Each reads a document and walks over it once. `text` is never changed; readers that work in place
// restore their own `buffer` from it first, as large as the text and one byte more.
Facts readWithReader(const std::string& text, MarkupScan scan);
Facts readWithPugixmlInPlace(const std::string& text, std::string& buffer);
Facts readWithPugixmlCopying(const std::string& text);
Facts readWithRapidXml(const std::string& text, std::string& buffer);
Facts readWithTinyXml2(const std::string& text);
Facts readWithLibxml2(const std::string& text);
Facts readWithExpat(const std::string& text);

}  // namespace tavo::benchmarks
