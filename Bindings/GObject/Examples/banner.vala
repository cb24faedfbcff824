// A window with a banner: banner-vala [SERVER].
int main (string[] args) {
    var server = args.length > 1 ? args[1] : "127.0.0.1:8080";
    var app = new Gtk.Application ("com.example.banner.vala", GLib.ApplicationFlags.FLAGS_NONE);
    app.activate.connect (() => {
        try {
            TavoAds.init ("com.example.banner.vala");
        } catch (Error error) {
            GLib.error (error.message);
        }
        var banner = new TavoAds.Banner ();
        banner.set_address (server + "/ads", "image-banner", "Bottom1");
        var window = new Gtk.ApplicationWindow (app) {
            default_width = 360, default_height = 640, child = banner
        };
        window.present ();
        show_ad.begin (banner);
    });
    return app.run (null);
}

async void show_ad (TavoAds.Banner banner) {
    try {
        yield banner.load_async (null);
        print ("The banner is on the screen.\n");
    } catch (TavoAds.AdError.NO_AD error) {
        print ("The server has no banner.\n");
    } catch (Error error) {
        print ("No banner: %s\n", error.message);
    }
}
