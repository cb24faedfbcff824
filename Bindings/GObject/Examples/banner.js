// A window with a banner: gjs banner.js [SERVER].
imports.gi.versions.Gtk = '4.0';
imports.gi.versions.TavoAds = '1';
const {Gio, Gtk, TavoAds} = imports.gi;

Gio._promisify(TavoAds.Banner.prototype, 'load_async', 'load_finish');

const server = ARGV[0] ?? '127.0.0.1:8080';
const app = new Gtk.Application({application_id: 'com.example.banner.js'});

async function showAd(banner) {
    try {
        await banner.load_async(null);
        print('The banner is on the screen.');
    } catch (error) {
        print(error.matches(TavoAds.AdError, TavoAds.AdError.NO_AD)
            ? 'The server has no banner.' : `No banner: ${error.message}`);
    }
}

app.connect('activate', () => {
    TavoAds.init('com.example.banner.js');
    const banner = new TavoAds.Banner({
        domain: `${server}/ads`, page: 'image-banner', position: 'Bottom1',
    });
    const window = new Gtk.ApplicationWindow({
        application: app, default_width: 360, default_height: 640, child: banner,
    });
    window.present();
    showAd(banner);
});
app.run([]);
