#pragma once

#include <tavo-ads/tavo-ads-banner.h>
#include <tavo-ads/tavo-ads-enums.h>
#include <tavo-ads/tavo-ads-errors.h>
#include <tavo-ads/tavo-ads-init.h>
#include <tavo-ads/tavo-ads-interstitial.h>
#include <tavo-ads/tavo-ads-ledger.h>
#include <tavo-ads/tavo-ads-limits.h>
#include <tavo-ads/tavo-ads-network-ad.h>
#include <tavo-ads/tavo-ads-options.h>
#include <tavo-ads/tavo-ads-ping.h>
#include <tavo-ads/tavo-ads-player.h>
#include <tavo-ads/tavo-ads-preroll.h>
#include <tavo-ads/tavo-ads-settings.h>
#include <tavo-ads/tavo-ads-slot-settings.h>
#include <tavo-ads/tavo-ads-slot.h>
