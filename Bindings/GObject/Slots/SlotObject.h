#pragma once

#include "Slots/SlotCore.h"
#include "tavo-ads/tavo-ads-slot.h"

struct _TavoAdsSlotInterface {
  GTypeInterface parent;
  tavo::gobject::SlotCore* (*core)(TavoAdsSlot* self);
};

namespace tavo::gobject {

// Ids of the properties that every slot has; a class numbers its own ones from `firstOwn`.
enum SlotPropertyId : guint {
  domainId = 1,
  pageId,
  positionId,
  keywordsId,
  queryId,
  settingsId,
  loadedId,
  loadingId,
  kindId,
  firstOwn,
};

// Gives a class of slots the properties of the interface.
void overrideSlotProperties(GObjectClass* type);

// Both answer whether the id is one of the interface's.
bool getSlotProperty(const SlotCore& core, guint id, GValue* value);
bool setSlotProperty(SlotCore& core, guint id, const GValue* value);

}  // namespace tavo::gobject
