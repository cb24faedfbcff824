#include <array>
#include <deque>
#include <memory>
#include <utility>

#include "Support/Process.h"
#include "Support/Properties.h"
#include "Tracking/PingObject.h"
#include "tavo-ads/tavo-ads-ledger.h"

namespace gobject = tavo::gobject;
using tavo::PingRecord;
using tavo::PingTotals;
using tavo::TrackingLedger;
using tavo::TrackingLedgerObserver;

namespace tavo::gobject {

using Pings = std::deque<Ref<TavoAdsPing>>;

struct LedgerRecord {
  Pings pings;  // oldest first, numbered without gaps
  std::shared_ptr<const TrackingLedgerObserver> events;
};

}  // namespace tavo::gobject

using gobject::LedgerRecord;
using gobject::Pings;

namespace {

constexpr std::array totals{
    std::pair{"due", &PingTotals::due},
    std::pair{"sent", &PingTotals::sent},
    std::pair{"answered", &PingTotals::answered},
    std::pair{"failed", &PingTotals::failed},
    std::pair{"suppressed", &PingTotals::suppressed},
    std::pair{"dropped", &PingTotals::dropped},
};

}  // namespace

struct _TavoAdsLedger {
  GObject parent;
  LedgerRecord* record;
};

static void tavo_ads_ledger_model_init(GListModelInterface* type) {
  type->get_item_type = [](GListModel*) { return TAVO_ADS_TYPE_PING; };
  type->get_n_items = [](GListModel* model) {
    return static_cast<guint>(TAVO_ADS_LEDGER(model)->record->pings.size());
  };
  type->get_item = [](GListModel* model, guint at) -> gpointer {
    const Pings& pings = TAVO_ADS_LEDGER(model)->record->pings;
    return at < pings.size() ? g_object_ref(pings[at].get()) : nullptr;
  };
}

G_DEFINE_FINAL_TYPE_WITH_CODE(TavoAdsLedger, tavo_ads_ledger, G_TYPE_OBJECT,
                              G_IMPLEMENT_INTERFACE(G_TYPE_LIST_MODEL, tavo_ads_ledger_model_init))

namespace {

void dropOldest(TavoAdsLedger* self) {
  Pings& pings = self->record->pings;
  const auto oldest = pings.front();  // held: whoever hears of it may look at it
  pings.pop_front();
  g_list_model_items_changed(G_LIST_MODEL(self), 0, 1, 0);
}

void append(TavoAdsLedger* self, const PingRecord& record) {
  Pings& pings = self->record->pings;
  pings.push_back(gobject::makePing(record));
  g_list_model_items_changed(G_LIST_MODEL(self), static_cast<guint>(pings.size() - 1), 0, 1);
  if (pings.size() > TrackingLedger::mostRecords) dropOldest(self);
}

void pingDidChange(TavoAdsLedger* self, const PingRecord& record) {
  Pings& pings = self->record->pings;
  if (pings.empty() || record.number > gobject::numberOf(pings.back().get())) {
    append(self, record);
  } else if (record.number >= gobject::numberOf(pings.front().get())) {
    const auto ping = pings[record.number - gobject::numberOf(pings.front().get())];
    gobject::updatePing(ping.get(), record);
  }
  g_object_freeze_notify(G_OBJECT(self));
  for (const auto& total : totals) g_object_notify(G_OBJECT(self), total.first);
  g_object_thaw_notify(G_OBJECT(self));
}

}  // namespace

static void tavo_ads_ledger_init(TavoAdsLedger* self) { self->record = new LedgerRecord; }

static void tavo_ads_ledger_class_init(TavoAdsLedgerClass* type) {
  GObjectClass* const object = G_OBJECT_CLASS(type);
  object->finalize = [](GObject* self) {
    delete TAVO_ADS_LEDGER(self)->record;
    G_OBJECT_CLASS(tavo_ads_ledger_parent_class)->finalize(self);
  };
  object->get_property = [](GObject* self, guint id, GValue* value, GParamSpec* pspec) {
    if (id == 0 || id > totals.size()) {
      return gobject::refuseProperty(self, id, pspec);
    }
    if (!gobject::Process::isUsable("TavoAdsLedger")) return;
    g_value_set_uint64(value, TrackingLedger::sharedInstance().totals().*totals[id - 1].second);
  };
  guint id = 0;
  for (const auto& total : totals) {
    g_object_class_install_property(object, ++id,
                                    g_param_spec_uint64(total.first, nullptr, nullptr, 0,
                                                        G_MAXUINT64, 0, gobject::readOnlyFlags));
  }
}

TavoAdsLedger* tavo_ads_ledger_get_default(void) {
  static TavoAdsLedger* only = nullptr;
  if (!gobject::Process::isUsable(__func__)) return nullptr;
  if (only != nullptr) return only;
  auto* const self = only = TAVO_ADS_LEDGER(g_object_new(TAVO_ADS_TYPE_LEDGER, nullptr));
  auto& book = TrackingLedger::sharedInstance();
  for (const auto& record : book.records()) {
    self->record->pings.push_back(gobject::makePing(record));
  }
  self->record->events = std::make_shared<const TrackingLedgerObserver>(TrackingLedgerObserver{
      .pingDidChange = [self](const PingRecord& record) { pingDidChange(self, record); }});
  book.observer.set(self->record->events);
  return self;
}
