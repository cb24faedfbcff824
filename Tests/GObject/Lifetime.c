/* Makes one of everything and ends it at every time of its life, round after round, and prints how
 * many objects of a round are left: lifetime DOMAIN FOLDER. After each round the leak sanitizer
 * tells what nothing points to any more, also behind the objects. */
#include <sanitizer/lsan_interface.h>
#include <stdio.h>
#include <tavo-ads/tavo-ads.h>
#include <unistd.h>

static int alive = 0;
static gboolean late = FALSE;

static void gone(gpointer data, GObject* object) {
  (void)data;
  (void)object;
  --alive;
}

static gpointer counted(gpointer object) {
  ++alive;
  g_object_weak_ref(object, gone, NULL);
  return object;
}

static gboolean give_up(gpointer data) {
  (void)data;
  late = TRUE;
  return G_SOURCE_REMOVE;
}

static void turn_until(const int* done) {
  late = FALSE;
  const guint deadline = g_timeout_add_seconds(60, give_up, NULL);
  while (!*done && !late) g_main_context_iteration(NULL, TRUE);
  if (late) g_error("Nothing happened for too long.");
  g_source_remove(deadline);
}

static void outcome(GObject* slot, GAsyncResult* result, gpointer done) {
  g_autoptr(GError) error = NULL;
  tavo_ads_slot_load_finish(TAVO_ADS_SLOT(slot), result, &error);
  *(int*)done = 1;
}

enum load { NOT_WAITED_FOR, GIVEN_UP, AWAITED };

static void load(gpointer slot, const char* domain, const char* page, enum load how) {
  tavo_ads_slot_set_address(slot, domain, page, "B");
  if (how == NOT_WAITED_FOR) return tavo_ads_slot_load(slot);
  int done = 0;
  g_autoptr(GCancellable) cancellable = counted(g_cancellable_new());
  tavo_ads_slot_load_async(slot, cancellable, outcome, &done);
  if (how == GIVEN_UP) g_cancellable_cancel(cancellable);
  turn_until(&done);
}

static void show(const char* domain, const char* page, enum load how) {
  GtkWidget* window = counted(gtk_window_new());
  GtkWidget* banner = counted(tavo_ads_banner_new());
  TavoAdsSlotSettings* settings = counted(tavo_ads_slot_settings_new());
  g_object_set(banner, "settings", settings, NULL);
  g_object_unref(settings);
  gtk_window_set_child(GTK_WINDOW(window), banner);
  gtk_window_present(GTK_WINDOW(window));
  load(banner, domain, page, how);
  if (how == AWAITED) {
    TavoAdsInterstitial* ad = counted(tavo_ads_interstitial_new());
    load(ad, domain, page, how);
    tavo_ads_interstitial_present(ad, GTK_WINDOW(window), NULL);
    g_object_unref(ad); /* the window ends it */
  }
  gtk_window_destroy(GTK_WINDOW(window));
}

static void play(const char* domain, const char* page, enum load how) {
  GtkWidget* window = counted(gtk_window_new());
  GtkWidget* player = counted(tavo_ads_player_new());
  gtk_window_set_child(GTK_WINDOW(window), player);
  gtk_window_present(GTK_WINDOW(window));
  TavoAdsPreroll* ad = counted(tavo_ads_preroll_new(TAVO_ADS_PLAYER(player)));
  load(ad, domain, page, how);
  g_object_unref(ad);
  gtk_window_destroy(GTK_WINDOW(window));
}

static void live(const char* domain) {
  static const char* const pages[] = {"image-banner", "html-banner", "no-ad"};
  for (enum load how = NOT_WAITED_FOR; how <= AWAITED; ++how) {
    for (gsize page = 0; page < G_N_ELEMENTS(pages); ++page) show(domain, pages[page], how);
    play(domain, "vast-preroll", how);
  }
}

/* Plugs the hole through which a pointer on the stack would hide a leak. */
static void __attribute__((noinline)) wipe_stack(void) {
  volatile char all[65536];
  for (gsize at = 0; at < sizeof all; ++at) all[at] = 0;
}

int main(int argc, char** argv) {
  g_assert(argc == 3);
  TavoAdsOptions* options = counted(tavo_ads_options_new("com.example.lifetime"));
  TavoAdsLimits* limits = counted(tavo_ads_limits_new());
  g_object_set(options, "assume-reachable", TRUE, "data-folder", argv[2], "limits", limits, NULL);
  g_object_unref(limits);
  GError* error = NULL;
  if (!tavo_ads_init_with_options(options, &error)) g_error("%s", error->message);
  g_object_unref(options);
  for (int round = 1; round <= 2; ++round) {
    live(argv[1]);
    late = FALSE;
    const guint deadline = g_timeout_add_seconds(30, give_up, NULL);
    while (alive > 0 && !late) g_main_context_iteration(NULL, TRUE);
    if (!late) g_source_remove(deadline);
    g_print("round %d: %d objects are left\n", round, alive);
    fflush(stdout);
    wipe_stack();
    g_printerr("== round %d ==\n", round);
    __lsan_do_recoverable_leak_check();
  }
  _exit(0);
}
