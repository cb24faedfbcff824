#include "Tracking/PingObject.h"

#include "Support/Errors.h"
#include "Support/Properties.h"
#include "tavo-ads/tavo-ads-enum-types.h"

namespace gobject = tavo::gobject;
using tavo::PingRecord;

struct _TavoAdsPing {
  GObject parent;
  PingRecord* record;
};

G_DEFINE_FINAL_TYPE(TavoAdsPing, tavo_ads_ping, G_TYPE_OBJECT)

namespace {

enum : guint { numberId = 1, urlId, contextId, dueId, stateId, statusId, errorId, tookId };

GDateTime* timeOf(const tavo::Date& date) {
  using namespace std::chrono;
  const auto whole = floor<seconds>(date);
  g_autoptr(GDateTime) second = g_date_time_new_from_unix_utc(system_clock::to_time_t(whole));
  return g_date_time_add(second, duration_cast<microseconds>(date - whole).count());
}

void getPingProperty(GObject* object, guint id, GValue* value, GParamSpec* pspec) {
  const PingRecord& record = *TAVO_ADS_PING(object)->record;
  switch (id) {
    case numberId:
      return g_value_set_uint64(value, record.number);
    case urlId:
      return g_value_set_string(value, record.url.text().c_str());
    case contextId:
      return g_value_set_string(value, record.context.c_str());
    case dueId:
      return g_value_take_boxed(value, timeOf(record.due));
    case stateId:
      return g_value_set_enum(value, static_cast<int>(record.state));
    case statusId:
      return g_value_set_int(value, record.status);
    case errorId:
      return g_value_take_boxed(value,
                                record.error ? gobject::errorOf(record.error).release() : nullptr);
    case tookId:
      return g_value_set_double(value, record.took.count());
    default:
      gobject::refuseProperty(object, id, pspec);
  }
}

}  // namespace

static void tavo_ads_ping_init(TavoAdsPing* self) { self->record = new PingRecord; }

static void tavo_ads_ping_class_init(TavoAdsPingClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->finalize = [](GObject* self) {
    delete TAVO_ADS_PING(self)->record;
    G_OBJECT_CLASS(tavo_ads_ping_parent_class)->finalize(self);
  };
  object->get_property = &getPingProperty;
  constexpr auto flags = gobject::readOnlyFlags;
  const auto install = [object](guint id, GParamSpec* pspec) {
    g_object_class_install_property(object, id, pspec);
  };
  install(numberId, g_param_spec_uint64("number", nullptr, nullptr, 0, G_MAXUINT64, 0, flags));
  install(urlId, g_param_spec_string("url", nullptr, nullptr, "", flags));
  install(contextId, g_param_spec_string("context", nullptr, nullptr, "", flags));
  install(dueId, g_param_spec_boxed("due", nullptr, nullptr, G_TYPE_DATE_TIME, flags));
  install(stateId, g_param_spec_enum("state", nullptr, nullptr, TAVO_ADS_TYPE_PING_STATE,
                                     TAVO_ADS_PING_STATE_DUE, flags));
  install(statusId, g_param_spec_int("status", nullptr, nullptr, 0, G_MAXINT, 0, flags));
  install(errorId, g_param_spec_boxed("error", nullptr, nullptr, G_TYPE_ERROR, flags));
  install(tookId, g_param_spec_double("took", nullptr, nullptr, 0, G_MAXDOUBLE, 0, flags));
}

namespace tavo::gobject {

Ref<TavoAdsPing> makePing(const PingRecord& record) {
  auto ping = Ref<TavoAdsPing>::adopt(TAVO_ADS_PING(g_object_new(TAVO_ADS_TYPE_PING, nullptr)));
  *ping.get()->record = record;
  return ping;
}

std::uint64_t numberOf(TavoAdsPing* ping) { return ping->record->number; }

void updatePing(TavoAdsPing* ping, const PingRecord& record) {
  *ping->record = record;
  g_object_freeze_notify(G_OBJECT(ping));
  for (const char* name : {"state", "status", "error", "took"}) {
    g_object_notify(G_OBJECT(ping), name);
  }
  g_object_thaw_notify(G_OBJECT(ping));
}

}  // namespace tavo::gobject
