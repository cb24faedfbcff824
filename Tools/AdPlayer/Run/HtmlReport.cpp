#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "AdPlayer/Run/Result.h"
#include "Extensions/Base64.h"
#include "Values/Text.h"

namespace tavo::adplayer {

namespace {

constexpr std::size_t mostEventsShown = 1'500;  // of one creative
constexpr std::size_t longestShown = 6'000;     // of one field

constexpr std::string_view style = R"css(
:root{--page:#f6f7f9;--card:#fff;--text:#17191c;--soft:#646b75;--line:#e3e6ea;--accent:#3458d8;
--good:#157f4b;--goodback:#e3f5ec;--bad:#b3261e;--badback:#fdeae8;--odd:#8a5a00;--oddback:#fff3d9;
--chip:#eef0f4;--code:#f3f4f7}
@media(prefers-color-scheme:dark){:root{--page:#121417;--card:#1b1e23;--text:#e9ebee;--soft:#9aa2ad;
--line:#2d323a;--accent:#8fa8ff;--good:#6fd6a2;--goodback:#17352a;--bad:#ff9a91;--badback:#43211f;
--odd:#f1c46b;--oddback:#3d311a;--chip:#282d35;--code:#15181c}}
*{box-sizing:border-box}body{margin:0;background:var(--page);color:var(--text);
font:14px/1.5 system-ui,-apple-system,"Segoe UI",Roboto,"DejaVu Sans",sans-serif}
main{max-width:1180px;margin:0 auto;padding:32px 20px 80px}h1{font-size:26px;margin:0 0 4px;
letter-spacing:-.01em}h2{font-size:13px;margin:0 0 8px;color:var(--soft);font-weight:600}
.soft{color:var(--soft)}.tiles{display:flex;flex-wrap:wrap;gap:12px;margin:20px 0}
.tile{background:var(--card);border:1px solid var(--line);border-radius:12px;padding:14px 18px;
min-width:120px}.tile b{display:block;font-size:24px;line-height:1.2}
.bar{display:flex;height:8px;border-radius:4px;overflow:hidden;margin:0 0 24px;background:var(--line)}
.bar i{display:block}.tools{display:flex;flex-wrap:wrap;gap:8px;margin:0 0 16px;align-items:center}
input[type=search]{flex:1;min-width:220px;padding:9px 12px;border:1px solid var(--line);
border-radius:9px;background:var(--card);color:inherit;font:inherit}
button{font:inherit;padding:7px 12px;border:1px solid var(--line);border-radius:9px;
background:var(--card);color:inherit;cursor:pointer}button[aria-pressed=true]{background:var(--accent);
border-color:var(--accent);color:var(--card)}:focus-visible{outline:2px solid var(--accent);
outline-offset:2px}
.creative{background:var(--card);border:1px solid var(--line);border-radius:14px;margin:0 0 12px}
.creative>summary{display:grid;grid-template-columns:56px 92px 1fr auto;gap:14px;align-items:center;
padding:10px 16px;cursor:pointer;list-style:none}.creative>summary::-webkit-details-marker{display:none}
.creative>summary strong{display:block;font-size:15px}.creative>summary span.why{display:block;
color:var(--soft);overflow-wrap:anywhere}.thumb{width:56px;height:56px;border-radius:8px;
object-fit:cover;object-position:top;border:1px solid var(--line);background:var(--chip);display:block}
.chip{display:inline-block;border-radius:999px;padding:2px 10px;font-size:12px;font-weight:600;
background:var(--chip);white-space:nowrap;text-align:center}.passed{background:var(--goodback);
color:var(--good)}.failed,.crashed,.hung{background:var(--badback);color:var(--bad)}
.refused{background:var(--oddback);color:var(--odd)}
.inside{display:grid;grid-template-columns:minmax(0,300px) minmax(0,1fr);gap:24px;padding:8px 16px 20px;
border-top:1px solid var(--line)}@media(max-width:820px){.inside{grid-template-columns:minmax(0,1fr)}
.creative>summary{grid-template-columns:48px 1fr}.creative>summary .time{display:none}}
figure{margin:0 0 14px}figure img{max-width:100%;border-radius:10px;border:1px solid var(--line);
display:block}figcaption{color:var(--soft);font-size:12px;margin-top:4px}
ul.points{list-style:none;margin:0 0 16px;padding:0}ul.points li{padding:2px 0 2px 22px;position:relative;
overflow-wrap:anywhere}ul.points li::before{position:absolute;left:0;font-weight:700}
.met::before{content:"\2713";color:var(--good)}.unmet::before{content:"\2717";color:var(--bad)}
.line{display:grid;grid-template-columns:64px 92px minmax(0,1fr);gap:10px;padding:4px 0;
border-top:1px solid var(--line);font-size:13px}.line:first-of-type{border-top:0}
.line time{color:var(--soft);text-align:right;font-variant-numeric:tabular-nums}
.line .what{overflow-wrap:anywhere}.line summary{cursor:pointer}.kind{font-size:11px;padding:1px 8px;
align-self:start;justify-self:start}.k-scriptError,.k-process,.k-pause{background:var(--badback);
color:var(--bad)}.k-outcome,.k-expect{background:var(--goodback);color:var(--good)}
.k-stall,.k-wrapper,.k-navigation{background:var(--oddback);color:var(--odd)}
table.fields{border-collapse:collapse;width:100%;margin:6px 0 8px;font-size:12px;table-layout:fixed}
table.fields th{width:130px;text-align:left;color:var(--soft);font-weight:500;vertical-align:top;
padding:2px 8px 2px 0;overflow-wrap:anywhere}table.fields td{padding:2px 0}
pre{margin:0;white-space:pre-wrap;overflow-wrap:anywhere;background:var(--code);border-radius:6px;
padding:4px 8px;font:12px/1.45 ui-monospace,"DejaVu Sans Mono",monospace;max-height:320px;overflow:auto}
)css";

constexpr std::string_view script = R"js(
const all=[...document.querySelectorAll('.creative')];const search=document.querySelector('#search');
const only=[...document.querySelectorAll('[data-only]')];
function follow(){const words=search.value.toLowerCase();const on=only.find(b=>b.getAttribute('aria-pressed')==='true');
all.forEach(c=>{const fits=!on||on.dataset.only==='all'||(on.dataset.only==='passed')===(c.dataset.verdict==='passed');
c.hidden=!(fits&&(!words||c.textContent.toLowerCase().includes(words)))})}
search.addEventListener('input',follow);
only.forEach(b=>b.addEventListener('click',()=>{only.forEach(o=>o.setAttribute('aria-pressed',o===b));follow()}));
document.querySelector('#open').addEventListener('click',e=>{const open=e.target.dataset.open!=='1';
e.target.dataset.open=open?'1':'';e.target.textContent=open?'Close all':'Open all';all.forEach(c=>c.open=open)});
)js";

std::string pictureData(const std::filesystem::path& file) {
  std::ifstream stream{file, std::ios::binary};
  const std::string bytes{std::istreambuf_iterator<char>{stream}, {}};
  return bytes.empty() ? std::string{} : "data:image/png;base64," + base64Encoding(bytes);
}

std::string milliseconds(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.0f ms", seconds * 1000);
  return text;
}

std::string fieldsOf(const PlayEvent& event) {
  std::string rows;
  for (const auto& field : event.fields) {
    if (field.value.empty()) continue;
    const bool isLong = field.value.size() > longestShown;
    rows += "<tr><th>" + asMarkup(field.name) + "<td><pre>" +
            asMarkup(std::string_view{field.value}.substr(0, longestShown)) +
            (isLong ? " ..." : "") + "</pre>";
  }
  return rows.empty() ? rows : "<table class=fields>" + rows + "</table>";
}

std::string lineOf(const PlayEvent& event) {
  const std::string text = asMarkup(std::string_view{event.text}.substr(0, 600));
  const std::string fields = fieldsOf(event);
  const std::string kind = asMarkup(event.kind);
  return "<div class=line><time>" + milliseconds(event.time.count()) +
         "</time><span class=\"chip kind k-" + kind + "\">" + kind + "</span><div class=what>" +
         (fields.empty() ? text
                         : "<details><summary>" + text + "</summary>" + fields + "</details>") +
         "</div></div>\n";
}

// A busy machine has hundreds of them: their sum says what matters, events.jsonl has each.
std::string stallsOf(const Result& result) {
  int number = 0;
  int longest = 0;
  for (const auto& event : result.events) {
    if (event.kind != "stall") continue;
    ++number;
    longest = std::max(longest, std::atoi(std::string{event.field("milliseconds")}.c_str()));
  }
  if (number == 0) return {};
  return "<p class=soft>The loop stood still for more than 16 ms " + std::to_string(number) +
         (number == 1 ? " time" : " times") + ", the longest for " + std::to_string(longest) +
         " ms.</p>";
}

std::string sideOf(const Result& result, const std::vector<std::string>& pictures) {
  std::string html = "<h2>Expectations</h2><ul class=points>";
  for (const auto& one : result.expectations) {
    html += std::string{"<li class="} + (one.isMet ? "met>" : "unmet>") + asMarkup(one.text);
  }
  if (result.expectations.empty() && !result.why.empty())
    html += "<li class=unmet>" + asMarkup(result.why);
  html += "</ul>" + stallsOf(result);
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const std::string name = asMarkup(result.pictures[i]);
    html.append("<figure><img alt=\"The phone at the moment ").append(name);
    html.append("\" src=\"").append(pictures[i]);
    html.append("\"><figcaption>").append(name).append("</figcaption></figure>");
  }
  return html;
}

std::string creativeOf(const Result& result) {
  std::vector<std::string> pictures;
  for (const auto& picture : result.pictures)
    pictures.push_back(pictureData(result.folder / picture));
  const std::string verdict{nameOf(result.verdict)};
  const std::string told = result.verdict == Verdict::passed ? result.classification : result.why;
  std::string html = "<details class=creative data-verdict=" + verdict + "><summary>";
  html += pictures.empty() ? "<span class=thumb></span>"
                           : "<img class=thumb alt=\"\" src=\"" + pictures.front() + "\">";
  html += "<span class=\"chip " + verdict + "\">" + verdict + "</span><span><strong>" +
          asMarkup(result.title.empty() ? result.name : result.title) +
          "</strong><span class=why>" + asMarkup(result.name) +
          (result.placement.empty() ? "" : " &middot; " + asMarkup(result.placement)) +
          " &middot; " + asMarkup(told) + "</span></span><span class=\"soft time\">" +
          milliseconds(result.seconds) + "</span></summary><div class=inside><div>" +
          sideOf(result, pictures) + "</div><div><h2>Timeline</h2>";
  std::size_t shown = 0;
  for (const auto& event : result.events) {
    if (event.kind == "stall") continue;
    if (++shown > mostEventsShown) break;
    html += lineOf(event);
  }
  if (shown > mostEventsShown) {
    html += "<p class=soft>" + std::to_string(result.events.size() - mostEventsShown) +
            " more events stand in events.jsonl.</p>";
  }
  return html + "</div></div></details>\n";
}

std::string headOf(const std::vector<Result>& results, double seconds) {
  std::string tiles =
      "<div class=tiles><div class=tile><b>" + std::to_string(results.size()) + "</b>played</div>";
  std::string bar = "<div class=bar aria-hidden=true>";
  constexpr std::array<std::string_view, 5> colours{"--good", "--bad", "--odd", "--bad", "--bad"};
  for (std::size_t index = 0; index < colours.size(); ++index) {
    const auto verdict = static_cast<Verdict>(index);
    const auto number = std::count_if(results.begin(), results.end(),
                                      [&](const auto& one) { return one.verdict == verdict; });
    if (number == 0 && index > 1) continue;
    tiles += "<div class=tile><b>" + std::to_string(number) + "</b>" +
             std::string{nameOf(verdict)} + "</div>";
    bar += "<i style=\"flex:" + std::to_string(number) + ";background:var(" +
           std::string{colours.at(index)} + ")\"></i>";
  }
  char duration[32];
  std::snprintf(duration, sizeof duration, "%.1f s", seconds);
  tiles += std::string{"<div class=tile><b>"} + duration + "</b>in all</div></div>";
  return tiles + bar + "</div>";
}

}  // namespace

std::string htmlReport(const std::vector<Result>& results, double seconds) {
  std::string html =
      "<!doctype html><html lang=en><meta charset=utf-8><meta name=viewport "
      "content=\"width=device-width,initial-scale=1\"><title>AdPlayer report</title>"
      "<style>";
  html.append(style).append(
      "</style><main><h1>AdPlayer report</h1><p class=soft>What each creative "
      "did, and whether it was as expected.</p>");
  html += headOf(results, seconds);
  html +=
      "<div class=tools><input type=search id=search placeholder=\"Search names, events, "
      "addresses\" aria-label=\"Search the report\"><button data-only=all aria-pressed=true>All"
      "</button><button data-only=passed aria-pressed=false>Passed</button><button "
      "data-only=other aria-pressed=false>Not passed</button><button id=open>Open all</button>"
      "</div>\n";
  for (const auto& result : results) html += creativeOf(result);
  return html.append("</main><script>").append(script).append("</script></html>\n");
}

}  // namespace tavo::adplayer
