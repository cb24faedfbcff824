#include <benchmark/benchmark.h>
#include <glib.h>

#include <tavo/Runtime.h>
#include <tavo/XURLBuilder.h>

#include "Headless/HeadlessPlatform.h"

namespace {

constexpr const char* domain = "ads.example.test/Halvern/ads/spoolwire_dx.ads";
constexpr const char* keywords = "sport=football&team=home&season=2014&k4=v4";
constexpr const char* query =
    "carrier=none&o=p&z=+0530&ll=47.3769,8.5417&lla=65&lang=en&os=linux&ver=12.5&model=Desktop&"
    "hw=x86_64&app=1.0&team=away";
// Its last pair is one of the keywords.
constexpr const char* queryWithRepetition =
    "carrier=none&o=p&z=+0530&ll=47.3769,8.5417&lla=65&lang=en&os=linux&ver=12.5&model=Desktop&"
    "hw=x86_64&app=1.0&team=home";

// The same rules on the strings of a C library: split, compare, join, print, escape, parse.
GUri* withGlib(const char* queryString) {
  gchar** words = g_strsplit(keywords, "&", -1);
  gchar** pairs = g_strsplit(queryString, "&", -1);
  GString* merged = g_string_new(queryString);
  g_string_append_c(merged, '&');
  bool first = true;
  for (gchar** word = words; *word != nullptr; ++word) {
    if (g_strv_contains(pairs, *word)) continue;
    if (!first) g_string_append_c(merged, '&');
    g_string_append(merged, *word);
    first = false;
  }
  g_strfreev(words);
  g_strfreev(pairs);

  gchar** pieces = g_strsplit(merged->str, "&", -1);
  GHashTable* counts = g_hash_table_new(g_str_hash, g_str_equal);
  for (gchar** piece = pieces; *piece != nullptr; ++piece) {
    const auto count = GPOINTER_TO_INT(g_hash_table_lookup(counts, *piece));
    g_hash_table_insert(counts, *piece, GINT_TO_POINTER(count + 1));
  }
  GString* collapsed = g_string_new(nullptr);
  for (gchar** piece = pieces; *piece != nullptr; ++piece) {
    if (GPOINTER_TO_INT(g_hash_table_lookup(counts, *piece)) != 1) continue;
    if (collapsed->len > 0) g_string_append_c(collapsed, '&');
    g_string_append(collapsed, *piece);
  }
  g_hash_table_destroy(counts);
  g_strfreev(pieces);

  gchar* text =
      g_strdup_printf("http://%s/%s/%s/@%s?%s", domain, "sdk", "page", "Bottom1", collapsed->str);
  gchar* escaped = g_uri_escape_string(text, "/?&=@:,;+$!*'()#%[]", FALSE);
  GUri* uri = g_uri_parse(escaped, G_URI_FLAGS_ENCODED, nullptr);
  g_free(escaped);
  g_free(text);
  g_string_free(collapsed, TRUE);
  g_string_free(merged, TRUE);
  return uri;
}

tavo::Url withBuilder(const char* queryString) {
  return tavo::XURLBuilder::URLWithDomainName(domain, "sdk", "page", "Bottom1", keywords,
                                              queryString, nullptr);
}

// Two ways that make different URLs have not done the same work.
bool makeTheSame(const char* queryString) {
  GUri* uri = withGlib(queryString);
  gchar* text = g_uri_to_string(uri);
  const bool same = withBuilder(queryString).text() == text;
  g_free(text);
  g_uri_unref(uri);
  return same;
}

void measureGlib(benchmark::State& state, const char* queryString) {
  for ([[maybe_unused]] auto _ : state) {
    GUri* uri = withGlib(queryString);
    benchmark::DoNotOptimize(uri);
    g_uri_unref(uri);
  }
}

void measureBuilder(benchmark::State& state, const char* queryString) {
  const tavo::Runtime runtime{tavo::headless::HeadlessPlatform{}.platform()};
  if (!makeTheSame(queryString)) return state.SkipWithError("the two ways differ");
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(withBuilder(queryString));
}

void glibUrl(benchmark::State& state) { measureGlib(state, query); }
void requestUrl(benchmark::State& state) { measureBuilder(state, query); }
void glibUrlWithRepetition(benchmark::State& state) { measureGlib(state, queryWithRepetition); }
void requestUrlWithRepetition(benchmark::State& state) {
  measureBuilder(state, queryWithRepetition);
}

BENCHMARK(glibUrl)->Repetitions(5);
BENCHMARK(requestUrl)->Repetitions(5);
BENCHMARK(glibUrlWithRepetition)->Repetitions(5);
BENCHMARK(requestUrlWithRepetition)->Repetitions(5);

}  // namespace
