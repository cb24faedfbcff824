#include "AdPlayer/Window/Recorder.h"

#include "AdPlayer/Screenshot.h"
#include "Extensions/Base64.h"
#include "Gtk/Guarded.h"

namespace tavo::adplayer {

namespace {

constexpr unsigned frameDistance = 200;  // milliseconds
constexpr std::size_t mostFrames = 600;

constexpr const char* before =
    "<!doctype html><html lang=en><meta charset=utf-8><title>AdPlayer recording</title><style>"
    "body{margin:0;background:#1b1e23;color:#eee;font:14px system-ui,sans-serif;text-align:center}"
    "img{max-height:84vh;max-width:96vw;margin:16px;border-radius:12px}input{width:60vw}</style>"
    "<img id=f alt=\"The recording\"><p><button id=p>Pause</button> <input id=s type=range min=0 "
    "value=0 aria-label=\"Position\"></p><script>const d=[";
constexpr const char* after =
    "];let i=0,on=true;const f=document.getElementById('f'),s=document.getElementById('s'),"
    "p=document.getElementById('p');s.max=d.length-1;function show(){f.src='data:image/png;base64,'"
    "+d[i];s.value=i}s.oninput=()=>{i=+s.value;show()};p.onclick=()=>{on=!on;p.textContent=on?"
    "'Pause':'Play'};setInterval(()=>{if(on){i=(i+1)%d.length;show()}},200);show()</script></html>";

}  // namespace

Recorder::~Recorder() { timer_.disconnect(); }

void Recorder::start(std::function<void()> ended) {
  frames_.clear();
  timer_ = Glib::signal_timeout().connect(gtk::guardedSlot([this, ended = std::move(ended)] {
                                            const Screenshot picture{widget_};
                                            const std::string bytes = picture.png();
                                            if (!bytes.empty())
                                              frames_.push_back(base64Encoding(bytes));
                                            if (frames_.size() < mostFrames) return true;
                                            Glib::signal_idle().connect_once(ended);
                                            return false;
                                          }),
                                          frameDistance);
}

std::string Recorder::stop() {
  timer_.disconnect();
  if (frames_.empty()) return {};
  std::string html = before;
  for (const auto& frame : frames_) html += "'" + frame + "',";
  frames_.clear();
  return html + after;
}

}  // namespace tavo::adplayer
