/* A window with a banner: banner-c [SERVER]. */
#include <tavo-ads/tavo-ads.h>

static const char *server = "127.0.0.1:8080";

static void loaded(TavoAdsBanner *banner, gpointer data) {
  g_print("The banner is on the screen.\n");
}

static void failed(TavoAdsBanner *banner, const GError *error, gpointer data) {
  g_print("No banner: %s\n", error->message);
}

static void activate(GtkApplication *app, gpointer data) {
  GError *error = NULL;
  if (!tavo_ads_init("com.example.banner.c", &error)) g_error("%s", error->message);

  char *domain = g_strconcat(server, "/ads", NULL);
  GtkWidget *banner = tavo_ads_banner_new();
  tavo_ads_slot_set_address(TAVO_ADS_SLOT(banner), domain, "image-banner", "Bottom1");
  g_signal_connect(banner, "loaded", G_CALLBACK(loaded), NULL);
  g_signal_connect(banner, "failed", G_CALLBACK(failed), NULL);
  g_free(domain);

  GtkWidget *window = gtk_application_window_new(app);
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 640);
  gtk_window_set_child(GTK_WINDOW(window), banner);
  gtk_window_present(GTK_WINDOW(window));
  tavo_ads_slot_load(TAVO_ADS_SLOT(banner));
}

int main(int argc, char **argv) {
  if (argc > 1) server = argv[1];
  GtkApplication *app =
      gtk_application_new("com.example.banner.c", G_APPLICATION_DEFAULT_FLAGS);
  g_signal_connect(app, "activate", G_CALLBACK(activate), NULL);
  int status = g_application_run(G_APPLICATION(app), 0, NULL);
  g_object_unref(app);
  return status;
}
