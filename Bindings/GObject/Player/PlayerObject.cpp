#include "Player/PlayerObject.h"

#include "Player/PlayerCore.h"
#include "Support/Process.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-enum-types.h"

namespace gobject = tavo::gobject;
using gobject::PlayerCore;
using gobject::Process;

struct _TavoAdsPlayer {
  GtkWidget parent;
  PlayerCore* core;
};

G_DEFINE_FINAL_TYPE(TavoAdsPlayer, tavo_ads_player, GTK_TYPE_WIDGET)

namespace {

enum : guint {
  widthId = 1,
  heightId,
  uriId,
  autoplayId,
  controlsId,
  positionId,
  durationId,
  stateId,
  fullscreenId,
};

constexpr double widestFilm = 8'192;
constexpr double filmWidth = 320;
constexpr double filmHeight = 180;

guint finishedSignal;

PlayerCore& coreOf(gpointer self) { return *TAVO_ADS_PLAYER(self)->core; }

void measurePlayer(GtkWidget* widget, GtkOrientation orientation, int, int* minimum, int* natural,
                   int* minimumBaseline, int* naturalBaseline) {
  const tavo::Size& size = coreOf(widget).size();
  const double length = orientation == GTK_ORIENTATION_HORIZONTAL ? size.width : size.height;
  *minimum = *natural = static_cast<int>(length);
  *minimumBaseline = *naturalBaseline = -1;
  if (GtkWidget* const child = coreOf(widget).child()) {
    gtk_widget_measure(child, orientation, -1, minimum, natural, nullptr, nullptr);
  }
}

void allocatePlayer(GtkWidget* widget, int width, int height, int baseline) {
  GtkWidget* const child = coreOf(widget).child();
  if (child != nullptr) gtk_widget_allocate(child, width, height, baseline, nullptr);
}

// What a film of a program's own shows before it is played.
void realizePlayer(GtkWidget* widget) {
  GTK_WIDGET_CLASS(tavo_ads_player_parent_class)->realize(widget);
  if (Process::isRunning()) (void)coreOf(widget).makePlayer();
}

void getPlayerProperty(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const PlayerCore& core = coreOf(object);
  const auto& player = core.player();
  switch (id) {
    case widthId:
      return g_value_set_double(value, core.size().width);
    case heightId:
      return g_value_set_double(value, core.size().height);
    case uriId:
      return g_value_set_string(value, core.uri().c_str());
    case autoplayId:
      return g_value_set_boolean(value, core.autoplays() ? TRUE : FALSE);
    case controlsId:
      return g_value_set_boolean(value, core.hasControls() ? TRUE : FALSE);
    case positionId:
      return g_value_set_double(value, player ? player->currentPlaybackTime() : 0);
    case durationId:
      return g_value_set_double(value, player ? player->duration() : 0);
    case stateId:
      return g_value_set_enum(value, player ? static_cast<int>(player->playbackState()) : 0);
    case fullscreenId:
      return g_value_set_boolean(value, player && player->isFullscreen() ? TRUE : FALSE);
    default:
      gobject::refuseProperty(object, id, pspec);
  }
}

bool changesSize(PlayerCore& core, guint id, double length) {
  tavo::Size size = core.size();
  double& side = id == widthId ? size.width : size.height;
  if (side == length) return false;
  side = length;
  core.setSize(size);
  return true;
}

bool changesUri(PlayerCore& core, const std::string& uri) {
  if (core.uri() == uri) return false;
  core.setUri(uri);
  return true;
}

// Where there is no player yet, there is nothing to seek in or to lift.
void changePlayer(PlayerCore& core, guint id, const GValue* value) {
  if (!Process::isUsable("TavoAdsPlayer")) return;
  const auto player = core.makePlayer();
  if (!player) return;
  if (id == positionId) {
    player->setCurrentPlaybackTime(g_value_get_double(value));
  } else {
    player->setFullscreen(g_value_get_boolean(value) != FALSE);
  }
}

void setPlayerProperty(GObject* object, guint id, const GValue* value, GParamSpec* pspec) {
  PlayerCore& core = coreOf(object);
  bool changes = true;
  switch (id) {
    case widthId:
    case heightId:
      changes = changesSize(core, id, g_value_get_double(value));
      break;
    case uriId:
      changes = changesUri(core, gobject::textOf(g_value_get_string(value)));
      break;
    case autoplayId:
      core.setAutoplay(g_value_get_boolean(value) != FALSE);
      break;
    case controlsId:
      core.setControls(g_value_get_boolean(value) != FALSE);
      break;
    case positionId:
    case fullscreenId:
      changePlayer(core, id, value);
      break;
    default:
      return gobject::refuseProperty(object, id, pspec);
  }
  if (changes) g_object_notify_by_pspec(object, pspec);
}

void installPlayerProperties(GObjectClass* object) {
  constexpr auto flags = gobject::propertyFlags;
  constexpr auto readOnly = gobject::readOnlyFlags;
  const auto install = [object](guint id, GParamSpec* pspec) {
    g_object_class_install_property(object, id, pspec);
  };
  install(widthId,
          g_param_spec_double("video-width", nullptr, nullptr, 0, widestFilm, filmWidth, flags));
  install(heightId,
          g_param_spec_double("video-height", nullptr, nullptr, 0, widestFilm, filmHeight, flags));
  install(uriId, g_param_spec_string("uri", nullptr, nullptr, "", flags));
  install(autoplayId, g_param_spec_boolean("autoplay", nullptr, nullptr, TRUE, flags));
  install(controlsId, g_param_spec_boolean("controls", nullptr, nullptr, TRUE, flags));
  install(positionId, g_param_spec_double("position", nullptr, nullptr, 0, G_MAXDOUBLE, 0, flags));
  install(durationId,
          g_param_spec_double("duration", nullptr, nullptr, 0, G_MAXDOUBLE, 0, readOnly));
  install(stateId, g_param_spec_enum("state", nullptr, nullptr, TAVO_ADS_TYPE_PLAYER_STATE,
                                     TAVO_ADS_PLAYER_STATE_STOPPED, readOnly));
  install(fullscreenId, g_param_spec_boolean("fullscreen", nullptr, nullptr, FALSE, flags));
}

template <typename Operation>
void callPlayer(TavoAdsPlayer* self, const char* function, Operation operation) {
  g_return_if_fail(TAVO_ADS_IS_PLAYER(self));
  if (!Process::isUsable(function)) return;
  const auto held = gobject::Ref<TavoAdsPlayer>::share(self);
  if (const auto player = self->core->makePlayer()) operation(*player);
}

}  // namespace

static void tavo_ads_player_init(TavoAdsPlayer* self) {
  self->core = new PlayerCore{GTK_WIDGET(self), finishedSignal};
}

static void tavo_ads_player_dispose(GObject* self) {
  if (gobject::disposesOnMainThread(self)) return;
  coreOf(self).retire();
  G_OBJECT_CLASS(tavo_ads_player_parent_class)->dispose(self);
}

static void tavo_ads_player_finalize(GObject* self) {
  delete TAVO_ADS_PLAYER(self)->core;
  G_OBJECT_CLASS(tavo_ads_player_parent_class)->finalize(self);
}

static void tavo_ads_player_class_init(TavoAdsPlayerClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->dispose = tavo_ads_player_dispose;
  object->finalize = tavo_ads_player_finalize;
  object->get_property = &getPlayerProperty;
  object->set_property = &setPlayerProperty;
  GtkWidgetClass* const widget = GTK_WIDGET_CLASS(type);
  widget->measure = &measurePlayer;
  widget->size_allocate = &allocatePlayer;
  widget->realize = &realizePlayer;
  gtk_widget_class_set_css_name(widget, "tavoadsplayer");
  installPlayerProperties(object);
  finishedSignal = g_signal_new("finished", TAVO_ADS_TYPE_PLAYER, G_SIGNAL_RUN_LAST, 0, nullptr,
                                nullptr, nullptr, G_TYPE_NONE, 1, G_TYPE_ERROR);
}

GtkWidget* tavo_ads_player_new(void) {
  return GTK_WIDGET(g_object_new(TAVO_ADS_TYPE_PLAYER, nullptr));
}

void tavo_ads_player_prepare(TavoAdsPlayer* self) {
  callPlayer(self, __func__, [](tavo::MoviePlayer& player) { player.prepareToPlay(); });
}

void tavo_ads_player_play(TavoAdsPlayer* self) {
  callPlayer(self, __func__, [](tavo::MoviePlayer& player) { player.play(); });
}

void tavo_ads_player_pause(TavoAdsPlayer* self) {
  callPlayer(self, __func__, [](tavo::MoviePlayer& player) { player.pause(); });
}

void tavo_ads_player_stop(TavoAdsPlayer* self) {
  callPlayer(self, __func__, [](tavo::MoviePlayer& player) { player.stop(); });
}

namespace tavo::gobject {

const std::shared_ptr<MoviePlayer>& playerOf(TavoAdsPlayer* player) {
  return player->core->makePlayer();
}

}  // namespace tavo::gobject
