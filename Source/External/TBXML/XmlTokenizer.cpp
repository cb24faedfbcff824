// This loop is what reading costs. At -O2, with which distributions build, GCC leaves a tenth of
// its speed on the table.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("O3")
#endif

#include "External/TBXML/XmlTokenizer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string_view>

#include "External/TBXML/MarkupCursor.h"
#include "External/TBXML/NameScan.h"

namespace tavo {
namespace {

constexpr std::string_view comment = "<!--";
constexpr std::string_view commentEnd = "-->";
constexpr std::string_view section = "<![CDATA[";
constexpr std::string_view sectionEndMark = "]]>";

// A stretch of the text.
struct Run {
  std::size_t begin;
  std::size_t end;
};

// What reading needs wherever it stands.
struct Text {
  char* const bytes;
  const std::size_t size;
  const std::uint64_t* const bits;

  [[nodiscard]] std::size_t at(MarkupCursor cursor) const { return cursor.position(bits); }
  [[nodiscard]] bool atEnd(MarkupCursor cursor) const { return at(cursor) == size; }
  // The cursor's character; zero, which is never markup, at the end.
  [[nodiscard]] char kind(MarkupCursor cursor) const { return bytes[at(cursor)]; }
  // May look at the zero bytes behind the text.
  [[nodiscard]] bool has(std::size_t place, std::string_view marker) const {
    return std::memcmp(bytes + place, marker.data(), marker.size()) == 0;
  }
  [[nodiscard]] std::string_view view(Run run) const {
    return {bytes + run.begin, run.end - run.begin};
  }
  // The first place at or behind `from` where `marker` stands, or the end.
  [[nodiscard]] std::size_t find(std::string_view marker, std::size_t from) const {
    return from < size ? std::min(std::string_view{bytes, size}.find(marker, from), size) : size;
  }
  // The place behind `marker`, which stands at `place` unless the text has ended there.
  [[nodiscard]] std::size_t behind(std::string_view marker, std::size_t place) const {
    return std::min(place + marker.size(), size);
  }
};

// Goes on to the first markup character at or behind `place`, or to the end.
[[gnu::always_inline]] inline MarkupCursor skippedTo(const Text& text, MarkupCursor cursor,
                                                     std::size_t place) {
  while (text.at(cursor) < place && !text.atEnd(cursor)) {
    cursor.advance();
  }
  return cursor;
}

// Goes on to the next `character`, the current one included, or to the end.
[[gnu::always_inline]] inline MarkupCursor sought(const Text& text, MarkupCursor cursor,
                                                  char character) {
  while (text.kind(cursor) != character && !text.atEnd(cursor)) {
    cursor.advance();
  }
  return cursor;
}

// Adds a stretch further on in the text to what has been joined so far. Each byte moves once at
// most, towards the front, so a text of many sections still costs one pass.
Run joined(const Text& text, Run before, Run more) {
  if (before.begin == before.end) return more;
  std::memmove(text.bytes + before.end, text.bytes + more.begin, more.end - more.begin);
  return {before.begin, before.end + more.end - more.begin};
}

// Goes on to the end marker of the CDATA section on whose '<' the cursor stands, or to the end.
[[gnu::always_inline]] inline MarkupCursor sectionEnd(const Text& text, MarkupCursor cursor) {
  do {
    cursor.advance();
  } while (!text.atEnd(cursor) && !text.has(text.at(cursor), sectionEndMark));
  return cursor;
}

// Unwraps the CDATA sections in what runs from `begin` to the first `terminator` outside them, or
// to the end. The cursor stands on a markup character in it and is left on the terminator.
[[gnu::noinline]] Run unwrapped(Text text, MarkupCursor& cursor, std::size_t begin,
                                char terminator) {
  Run whole{begin, begin};
  while (!text.atEnd(cursor)) {
    const std::size_t place = text.at(cursor);
    if (text.has(place, section)) {
      const std::size_t content = place + section.size();
      cursor = sectionEnd(text, cursor);
      const std::size_t contentEnd = text.at(cursor);
      whole = joined(text, whole, {begin, place});
      whole = joined(text, whole, {content, contentEnd});
      begin = text.behind(sectionEndMark, contentEnd);
      cursor = skippedTo(text, cursor, begin);
    } else if (text.bytes[place] == terminator) {
      break;
    } else {
      cursor.advance();
    }
  }
  return joined(text, whole, {begin, text.at(cursor)});
}

// There is no recursion: the open element is one pointer, and its parent link is the way back. The
// class is local to this file and used once, so that the compiler makes one loop of it, whose state
// lives in registers.
class Tokenizer {
 public:
  Tokenizer(const Text& text, XmlTree& tree, const XmlReadLimits& limits)
      : text_{text}, tree_{tree}, limits_{limits}, cursor_{text.bits} {}

  void run() {
    for (seek('<'); !text_.atEnd(cursor_); seek('<')) {
      readMarkup();
      if (tree_.passedLimit) [[unlikely]]
        return;
    }
  }

 private:
  void seek(char character) { cursor_ = sought(text_, cursor_, character); }

  // Reads one piece of markup. The cursor stands on its '<' and is left behind it.
  void readMarkup() {
    const std::size_t place = text_.at(cursor_);
    switch (text_.bytes[place + 1]) {
      case '/':
        return closeElement();
      case '?':
        return skipBehind(">", place);
      case '!':
        if (text_.has(place, comment)) return skipBehind(commentEnd, place + comment.size());
        if (text_.has(place, section)) {  // the text of the element around it has ended before
          return skipBehind(sectionEndMark, place + section.size());
        }
        // Quirk: every other tag is an element, "<!DOCTYPE" too. It opens one and never closes it,
        // so that such a document has a root without the expected children. Ad servers send none,
        // and whatever reads the tree copes with unknown elements.
        [[fallthrough]];
      default:
        return openElement(place + 1);
    }
  }

  void skipBehind(std::string_view marker, std::size_t from) {
    cursor_ = skippedTo(text_, cursor_, text_.behind(marker, text_.find(marker, from)));
  }

  // Whatever name stands in the end tag, it is the open element that ends.
  void closeElement() {
    cursor_.advance();
    if (open_ != nullptr) {
      open_ = open_->parentElement;
      --depth_;
    }
  }

  void openElement(std::size_t name) {
    cursor_.advance();
    const std::size_t nameEnd = name + nameLength(text_.bytes + name, '/');
    XTBXMLElement& element = *tree_.nextAvailableElement(text_.view({name, nameEnd}));
    ++nodes_;
    const std::size_t end =
        text_.bytes[nameEnd] == '>' ? nameEnd : readAttributes(element, nameEnd);
    cursor_ = skippedTo(text_, cursor_, end);  // names may hold markup characters too
    if (end == text_.size) {
      return;  // a tag that the document breaks off in is no element
    }
    link(element);
    if (text_.bytes[end - 1] != '/') {
      open_ = &element;
      ++depth_;
      readText(element, end + 1);
    }
    if (nodes_ > limits_.nodes || depth_ > limits_.depth) [[unlikely]] {
      tree_.passedLimit = true;
    }
  }

  // Hangs a new element under the open one. A second element outside the root is read and dropped.
  void link(XTBXMLElement& element) {
    if (open_ == nullptr) {
      tree_.root = tree_.root == nullptr ? &element : tree_.root;
      return;
    }
    XTBXMLElement* const previous = open_->currentChild;
    element.parentElement = open_;
    element.previousSibling = previous;
    (previous != nullptr ? previous->nextSibling : open_->firstChild) = &element;
    open_->currentChild = &element;
  }

  // Reads from behind the name to the tag's '>', whose place it answers, or to the end. A word
  // without a value is passed over, and so is a value without quotes.
  std::size_t readAttributes(XTBXMLElement& element, std::size_t place) {
    XTBXMLAttribute** link = &element.firstAttribute;
    while (true) {
      while (readPlainAttribute(link, place)) {
      }
      place = skipBlanks(place);
      if (place >= text_.size || text_.bytes[place] == '>') break;
      place = readOddAttribute(link, place);
    }
    return place;
  }

  // Reads an attribute that is written the usual way: a blank, the name, "=" and a quoted value
  // without other markup.
  bool readPlainAttribute(XTBXMLAttribute**& link, std::size_t& place) {
    const std::size_t name = place + 1;
    const std::size_t quote = text_.at(cursor_);
    if (!isBlankInTag(text_.bytes[place]) || text_.bytes[quote - 1] != '=' ||
        nameLength(text_.bytes + name, '=') != quote - 1 - name || !isQuote(text_.bytes[quote]))
        [[unlikely]] {
      return false;
    }
    MarkupCursor cursor = cursor_;
    cursor.advance();
    const std::size_t end = text_.at(cursor);
    if (text_.bytes[end] != text_.bytes[quote]) [[unlikely]]
      return false;
    append(link, {name, quote - 1}, {quote + 1, end});
    cursor.advance();
    cursor_ = cursor;
    place = end + 1;
    return true;
  }

  // Reads one attribute in any form; answers the place behind it.
  std::size_t readOddAttribute(XTBXMLAttribute**& link, std::size_t name) {
    const std::size_t nameEnd = name + nameLength(text_.bytes + name, '=');
    const std::size_t equals = skipBlanks(nameEnd);
    if (text_.bytes[equals] != '=') return equals;
    const std::size_t quote = skipBlanks(equals + 1);
    if (!isQuote(text_.bytes[quote])) return quote + nameLength(text_.bytes + quote, '>');
    MarkupCursor cursor = skippedTo(text_, cursor_, quote);
    cursor.advance();
    append(link, {name, nameEnd}, unwrapped(text_, cursor, quote + 1, text_.bytes[quote]));
    const std::size_t behind = std::min(text_.at(cursor) + 1, text_.size);
    cursor_ = skippedTo(text_, cursor, behind);
    return behind;
  }

  void append(XTBXMLAttribute**& link, Run name, Run value) {
    *link = tree_.nextAvailableAttribute(text_.view(name), text_.view(value));
    link = &(*link)->next;
    ++nodes_;
  }

  static bool isQuote(char c) { return c == '"' || c == '\''; }

  // The text of an element whose start tag ends before `begin`: up to the next markup, where CDATA
  // sections are part of the text and not its end.
  void readText(XTBXMLElement& element, std::size_t begin) {
    seek('<');
    const std::size_t end = text_.at(cursor_);
    if (!text_.has(end, section)) {
      element.text = text_.view({begin, end});
      return;
    }
    element.fromSection = true;
    if (begin != end || !readWholeSection(element, end + section.size())) {
      MarkupCursor cursor = cursor_;
      element.text = text_.view(unwrapped(text_, cursor, begin, '<'));
      cursor_ = cursor;
    }
  }

  // The usual case of a text that is one CDATA section and nothing else, where nothing needs to be
  // moved. Answers false, and leaves the cursor, when this is another case.
  bool readWholeSection(XTBXMLElement& element, std::size_t content) {
    MarkupCursor cursor = sectionEnd(text_, cursor_);
    const std::size_t end = text_.at(cursor);
    if (end == text_.size || text_.bytes[end + sectionEndMark.size()] != '<') return false;
    element.text = text_.view({content, end});
    cursor.advance();
    cursor.advance();
    cursor_ = cursor;
    return true;
  }

  [[nodiscard]] std::size_t skipBlanks(std::size_t place) const {
    while (isBlankInTag(text_.bytes[place]) && place < text_.size) {
      ++place;
    }
    return place;
  }

  const Text text_;
  XmlTree& tree_;
  const XmlReadLimits limits_;
  MarkupCursor cursor_;
  XTBXMLElement* open_ = nullptr;
  std::size_t depth_ = 0;
  std::size_t nodes_ = 0;
};

}  // namespace

void tokenizeXml(XmlTree& tree, std::size_t size, const XmlReadLimits& limits, MarkupScan scan) {
  constexpr std::size_t fewBlocks = 512;  // 32 KB, more than most documents have
  const std::size_t blocks = size / markupBlock + 1;
  std::array<std::uint64_t, fewBlocks> few;
  std::unique_ptr<std::uint64_t[]> many;
  std::uint64_t* bits = few.data();
  if (blocks > fewBlocks) {
    many = std::make_unique_for_overwrite<std::uint64_t[]>(blocks);
    bits = many.get();
  }
  char* const text = tree.text().get();
  scan(text, blocks, bits);
  bits[size / markupBlock] |= std::uint64_t{1} << size % markupBlock;
  Tokenizer{Text{text, size, bits}, tree, limits}.run();
}

}  // namespace tavo
