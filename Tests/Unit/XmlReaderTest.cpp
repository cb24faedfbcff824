#include "External/TBXML/XTBXML.h"
#include "Support/Testing.h"

namespace tavo::test {
namespace {

std::string quoted(std::string_view text) {
  std::string written = "\"";
  for (const char c : text) {
    written += c == '\n' ? std::string{"\\n"} : c == '\0' ? std::string{"\\0"} : std::string{c};
  }
  return written + '"';
}

// The tree below an element in one line: name[attribute=value ...]"text"(child child ...), without
// the parts that are empty. The links are checked on the way.
std::string outlineOf(const XTBXMLElement* element) {
  if (element == nullptr) {
    return "none";
  }
  std::string line{element->name};
  for (const auto* attribute = element->firstAttribute; attribute != nullptr;
       attribute = attribute->next) {
    line += attribute == element->firstAttribute ? "[" : " ";
    line += std::string{attribute->name} + "=" + std::string{attribute->value};
  }
  line += element->firstAttribute != nullptr ? "]" : "";
  line += element->text.empty() ? "" : quoted(element->text);
  const XTBXMLElement* previous = nullptr;
  for (const auto* child = element->firstChild; child != nullptr; child = child->nextSibling) {
    EXPECT_EQ(child->parentElement, element);
    EXPECT_EQ(child->previousSibling, previous);
    line += (previous == nullptr ? "(" : " ") + outlineOf(child);
    previous = child;
  }
  EXPECT_EQ(element->currentChild, previous);
  return line + (previous != nullptr ? ")" : "");
}

struct Case {
  std::string_view name;
  std::string_view document;
  std::string_view outline;
};

void PrintTo(const Case& shown, std::ostream* out) { *out << shown.name; }

class XmlReaderTest : public ::testing::TestWithParam<Case> {};

// Every document is read with every form of the scan, from memory that ends where it ends.
TEST_P(XmlReaderTest, readsTheTree) {
  const MarkupScans& scans = availableMarkupScans();
  for (std::size_t form = 0; form < scans.count; ++form) {
    SCOPED_TRACE(scans.forms[form].name);
    const auto exact = std::make_unique<char[]>(GetParam().document.size());
    std::copy(GetParam().document.begin(), GetParam().document.end(), exact.get());
    const XTBXML document{{exact.get(), GetParam().document.size()}, {}, scans.forms[form].scan};
    EXPECT_EQ(outlineOf(document.rootXMLElement()), GetParam().outline);
    EXPECT_FALSE(document.passedLimit());
  }
}

constexpr Case structureCases[] = {
    {"nothing", "", "none"},
    {"onlyText", "no markup ] at \" all", "none"},
    {"onlyDeclarationAndComments", "<?xml version=\"1.0\"?><!-- <a/> --><!---->", "none"},
    {"oneElement", "<a/>", "a"},
    {"oneElementWithBlank", "<a />", "a"},
    {"children", "<a><b/><c>x</c><b>y</b></a>", "a(b c\"x\" b\"y\")"},
    {"byteOrderMark", "\xEF\xBB\xBF<a>x</a>", "a\"x\""},
    {"textBeforeRoot", "junk <a>x</a> junk", "a\"x\""},
    {"secondRootIsDropped", "<a>1</a><b>2</b>", "a\"1\""},
    {"endTagNameIsNotCompared", "<a><b>1</x><c/></a>", "a(b\"1\" c)"},
    {"endTagsWithoutElement", "</x></y><a/></z>", "a"},
    {"prefixesAreNames", "<v:a x:b=\"1\"/>", "v:a[x:b=1]"},
    {"linesInTags", "<a\n\tb=\"1\"\r\n c='2'\n/>", "a[b=1 c=2]"},
    {"nameEndsAtSlash", "<a/b>x</a>", "a\"x\""},
    {"processingInstructionInside", "<a><?php b ?>x<c/></a>", "a(c)"},
    {"markupInName", "<a<b>x</a><c]'d e='1'/>", "a<b\"x\""},
    {"markupInNameOfChild", "<a><b<c'/><d\"]<e f='1'>y</d></a>", "a(b<c' d\"]<e[f=1]\"y\")"},
    {"emptyName", "<a>1 < 2<b/></a>", "a\"1 \"()"},
    {"nulBytes", {"<a\0b=\"1\0\">x\0y</a>", 17}, {"a[b=1\0]\"x\\0y\"", 13}},
    {"brokenUtf8", "<a b=\"\xC3\">\xF0\x9F</a>", "a[b=\xC3]\"\xF0\x9F\""},
};

constexpr Case textCases[] = {
    {"upToNextMarkup", "<a>x<b/>y</a>", "a\"x\"(b)"},
    {"noTextAfterChild", "<a><b/>y</a>", "a(b)"},
    {"blanksAreKept", "<a>\n x </a>", "a\"\\n x \""},
    {"commentEndsText", "<a>x<!-- c -->y</a>", "a\"x\""},
    {"referencesStay", "<a b=\"&lt;\">&amp;&#65;</a>", "a[b=&lt;]\"&amp;&#65;\""},
    {"loneMarkupCharacters", "<a>] > \" ' ]] ]]></a>", "a\"] > \" ' ]] ]]>\""},
    {"section", "<a><![CDATA[x < y & \"z\" <b/>]]></a>", "a\"x < y & \"z\" <b/>\""},
    {"emptySection", "<a><![CDATA[]]></a>", "a"},
    {"sectionEndsInBracket", "<a><![CDATA[x]]]></a>", "a\"x]\""},
    {"sectionOfBrackets", "<a><![CDATA[]]]]]></a>", "a\"]]]\""},
    {"sectionWithMacro", "<a><![CDATA[u?t=[TIME]&e=[CODE]]]></a>", "a\"u?t=[TIME]&e=[CODE]\""},
    {"blanksAroundSection", "<a>\n <![CDATA[x]]>\n </a>", "a\"\\n x\\n \""},
    {"textAndSections", "<a>1<![CDATA[2]]>3<![CDATA[4]]><![CDATA[5]]>6</a>", "a\"123456\""},
    {"sectionEndMarkInText", "<a>1]]>2<![CDATA[3]]>]]>4</a>", "a\"1]]>23]]>4\""},
    {"sectionAfterChild", "<a><b/><![CDATA[<c/>]]><d/></a>", "a(b d)"},
    {"sectionAfterComment", "<a><!-- c --><![CDATA[x]]></a>", "a"},
    {"commentWithTags", "<a><!-- <b> -- > </a> ' --><c/></a>", "a(c)"},
    {"commentWithSection", "<a><!-- <![CDATA[ --><c/></a>", "a(c)"},
    {"shortComments", "<a><!----><b/><!-- - --><c/></a>", "a(b c)"},
    {"notYetTheEndOfComment", "<a><!--> <b/> --><c/></a>", "a(c)"},
    {"lowerCaseIsNoSection", "<a><![cdata[x]]></a>", "a(![cdata[x]])"},
};

constexpr Case attributesCases[] = {
    {"bothQuotes", "<a b=\"it's\" c='say \"x\"'/>", "a[b=it's c=say \"x\"]"},
    {"blanksAroundEquals", "<a b = \"1\" c\n=\t'2'/>", "a[b=1 c=2]"},
    {"markupInValue", "<a b=\"x > y < z ] <!-- </a>\">t</a>", "a[b=x > y < z ] <!-- </a>]\"t\""},
    {"emptyValue", "<a b=\"\" c=''>x</a>", "a[b= c=]\"x\""},
    {"valueEndsInSlash", "<a b=\"/\">x</a>", "a[b=/]\"x\""},
    {"sectionInValue", "<a b=\"1<![CDATA[2\"'>]]>3\" c=\"4\"/>", "a[b=12\"'>3 c=4]"},
    {"valueIsSection", "<a b='<![CDATA[x]]>'>t</a>", "a[b=x]\"t\""},
    {"noBlankBetween", "<a b=\"1\"c=\"2\"/>", "a[b=1 c=2]"},
    {"withoutValue", "<a b c=\"1\" d/>", "a[c=1]"},
    {"withoutQuotes", "<a b=1 c=\"2\" d=x/y>t</a>", "a[c=2]\"t\""},
    {"withoutName", "<a =\"1\" b=\"2\"/>", "a[=1 b=2]"},
    {"repeated", "<a b=\"1\" b=\"2\"/>", "a[b=1 b=2]"},
    {"quoteInName", "<a b\"c=\"1\" d=\"2\"/>", "a[b\"c=1 d=2]"},
    {"longName", "<abcdefghijklmnopqrstuvwxyz abcdefghijklmnopqrst=\"1\"/>",
     "abcdefghijklmnopqrstuvwxyz[abcdefghijklmnopqrst=1]"},
    {"equalsAtEndOfOddValue", "<a b=1= c=\"2=\" d='=\"' e=\"3\"/>", "a[c=2= d==\" e=3]"},
};

// What breaks off keeps what was complete before.
constexpr Case brokenOffCases[] = {
    {"inElement", "<a><b>text", "a(b\"text\")"},
    {"afterOpening", "<a><", "a"},
    {"inName", "<a>x<bcd", "a\"x\""},
    {"inAttributeName", "<a>x<b cd", "a\"x\""},
    {"beforeEquals", "<a>x<b c ", "a\"x\""},
    {"afterEquals", "<a>x<b c=", "a\"x\""},
    {"inValue", "<a>x<b c=\"d>e</b></a>", "a\"x\""},
    {"inValueAfterSection", "<a>x<b c=\"<![CDATA[d]]>e", "a\"x\""},
    {"afterValue", "<a>x<b c=\"d\"", "a\"x\""},
    {"afterSlash", "<a>x<b/", "a\"x\""},
    {"inEndTag", "<a>x</a", "a\"x\""},
    {"inDeclaration", "<?xml version=\"1.0\" ?", "none"},
    {"inComment", "<a>x<!-- y --", "a\"x\""},
    {"inCommentStart", "<a>x<!-", "a\"x\""},
    {"inSection", "<a>x<![CDATA[y]]", "a\"xy]]\""},
    {"inSectionStart", "<a>x<![CDATA", "a\"x\""},
    {"inSectionAfterChild", "<a>x<b/><![CDATA[y", "a\"x\"(b)"},
};

const auto caseName = [](const auto& info) { return std::string{info.param.name}; };
INSTANTIATE_TEST_SUITE_P(Structure, XmlReaderTest, ::testing::ValuesIn(structureCases), caseName);
INSTANTIATE_TEST_SUITE_P(Text, XmlReaderTest, ::testing::ValuesIn(textCases), caseName);
INSTANTIATE_TEST_SUITE_P(Attributes, XmlReaderTest, ::testing::ValuesIn(attributesCases), caseName);
INSTANTIATE_TEST_SUITE_P(BrokenOff, XmlReaderTest, ::testing::ValuesIn(brokenOffCases), caseName);

// The quirk that a document type opens an element.
TEST(XmlReaderQuirkTest, documentTypeIsAnElement) {
  const XTBXML document{"<!DOCTYPE VAST><VAST><Ad/></VAST>"};
  EXPECT_EQ(outlineOf(document.rootXMLElement()), "!DOCTYPE(VAST(Ad))");
}

TEST(XmlNavigationTest, findsByExactName) {
  const XTBXML document{"<r><a i='1' i='2' I='3'>x</a><A/><ab/><a>y</a><b/></r>"};
  const XTBXMLElement* const root = document.rootXMLElement();
  XTBXMLElement* const first = XTBXML::childElementNamed("a", root);
  XTBXMLElement* const second = XTBXML::nextSiblingNamed("a", first);
  EXPECT_EQ(XTBXML::elementName(first), "a");
  EXPECT_EQ(XTBXML::textForElement(first), "x");
  EXPECT_EQ(XTBXML::textForElement(second), "y");
  EXPECT_EQ(XTBXML::nextSiblingNamed("a", second), nullptr);
  EXPECT_EQ(XTBXML::childElementNamed("c", root), nullptr);
  EXPECT_EQ(XTBXML::childElementNamed("a", first), nullptr);
  EXPECT_EQ(XTBXML::valueOfAttributeNamed("i", first), "1");
  EXPECT_EQ(XTBXML::valueOfAttributeNamed("I", first), "3");
  EXPECT_EQ(XTBXML::valueOfAttributeNamed("j", first), std::nullopt);
  EXPECT_EQ(XTBXML::valueOfAttributeNamed("i", second), std::nullopt);
  EXPECT_EQ(XTBXML::attributeName(first->firstAttribute), "i");
  EXPECT_EQ(XTBXML::attributeValue(first->firstAttribute->next), "2");
}

std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (std::size_t turn = 0; turn < count; ++turn) {
    text += piece;
  }
  return text;
}

struct LimitCase {
  std::string_view document;
  XmlReadLimits limits;
  bool passed;
};

TEST(XmlLimitsTest, readingStopsWhereALimitIsPassed) {
  const LimitCase cases[] = {
      {"<a><b/></a>", {.bytes = 11}, false},          {"<a><b/></a>", {.bytes = 10}, true},
      {"<a x='1'><b/></a>", {.nodes = 3}, false},     {"<a x='1'><b/></a>", {.nodes = 2}, true},
      {"<a><b></b><b></b></a>", {.depth = 2}, false}, {"<a><b><c></c></b></a>", {.depth = 2}, true},
      {"<a><b><c/></b></a>", {.depth = 2}, false},
  };
  for (const LimitCase& one : cases) {
    const XTBXML document{one.document, one.limits};
    EXPECT_EQ(document.passedLimit(), one.passed) << one.document;
  }
}

TEST(XmlHostileTest, aMillionNestedElements) {
  constexpr std::size_t count = 1'000'000;
  const XTBXML document{repeated("<a>", count)};
  std::size_t depth = 0;
  for (auto* at = document.rootXMLElement(); at != nullptr; at = at->firstChild) {
    ++depth;
  }
  EXPECT_EQ(depth, count);
  EXPECT_TRUE((XTBXML{repeated("<a>", count), {.depth = 256}}.passedLimit()));
}

TEST(XmlHostileTest, fiftyMegabytes) {
  const XTBXML document{"<r>" + repeated("<a b='c'><![CDATA[d]]></a>", 2'000'000) + "</r>"};
  EXPECT_EQ(XTBXML::elementName(document.rootXMLElement()), "r");
  EXPECT_EQ(XTBXML::textForElement(document.rootXMLElement()->currentChild), "d");
}

// Each of these takes minutes when reading it costs the square of its length.
TEST(XmlHostileTest, megabytesOfOneKind) {
  constexpr std::size_t size = 3'000'000;
  for (const std::string_view piece : {"<", "<![CDATA[x]]>", "<!---", "<![CDATA[", "]]", "<a b='",
                                       "<a b=\"<![CDATA[\"]]>", "=", "</"}) {
    const std::string text = "<r>" + repeated(piece, size / piece.size());
    const XTBXML document{text};
    EXPECT_EQ(XTBXML::elementName(document.rootXMLElement()), "r") << piece;
  }
}

TEST(XmlHostileTest, manySectionsAreJoinedInOrder) {
  constexpr std::size_t count = 100'000;
  const XTBXML document{"<a>" + repeated("<![CDATA[ab]]>c", count) + "</a>"};
  EXPECT_EQ(document.rootXMLElement()->text, repeated("abc", count));
}

}  // namespace
}  // namespace tavo::test
