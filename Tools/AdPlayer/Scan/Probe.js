// Runs in each frame of a scanned page before its own first script, as the body of a function of
// `tell(text, fields)`. It wraps what keeps data or tells devices apart, notes what nobody may ask for
// here, and looks over the page for what has no text. CLOCK and LANGUAGE are filled in for a play
// under other conditions.
const clock = CLOCK, language = LANGUAGE;
const told = new Set();
const nativeTimer = window.setInterval.bind(window);

// The first line of the stack that is not of this script: it has no address of its own.
function place() {
  const lines = String(new Error().stack || '').split('\n').slice(2);
  for (const line of lines) {
    const match = /^(?:.*@)?((?:https?|about|data|blob|file):.*?):(\d+):(\d+)$/.exec(line);
    if (match) return {url: match[1], line: match[2], column: match[3]};
  }
  return {};
}
function once(what, name, more) {
  if (told.has(what + name)) return;
  told.add(what + name);
  tell(name, Object.assign({what}, place(), more));
}
function wrap(owner, name, what, say) {
  const original = owner && owner[name];
  if (typeof original !== 'function') return;
  owner[name] = function (...parts) {
    once(what, say || name);
    return Reflect.apply(original, this, parts);
  };
}
function watch(owner, name, what, say) {
  const property = owner && Object.getOwnPropertyDescriptor(owner, name);
  if (!property || !property.get || !property.configurable) return;
  Object.defineProperty(owner, name, {
    configurable: true, enumerable: property.enumerable,
    get() { once(what, say || name); return Reflect.apply(property.get, this, []); },
    set: property.set && function (value) {
      once(what, say || name);
      return Reflect.apply(property.set, this, [value]);
    }
  });
}

watch(Document.prototype, 'cookie', 'storage', 'document.cookie');
// The engine reads one of these for the other, so they share a name.
for (const name of ['localStorage', 'sessionStorage']) {
  watch(Window.prototype, name, 'storage', 'localStorage or sessionStorage');
  watch(window, name, 'storage', 'localStorage or sessionStorage');
}
wrap(window.IDBFactory && IDBFactory.prototype, 'open', 'storage', 'indexedDB');
wrap(window.CacheStorage && CacheStorage.prototype, 'open', 'storage', 'caches');
wrap(window.ServiceWorkerContainer && ServiceWorkerContainer.prototype, 'register', 'storage',
     'a service worker');

wrap(HTMLCanvasElement.prototype, 'toDataURL', 'fingerprint', 'the pixels of a canvas (toDataURL)');
wrap(HTMLCanvasElement.prototype, 'toBlob', 'fingerprint', 'the pixels of a canvas (toBlob)');
wrap(window.CanvasRenderingContext2D && CanvasRenderingContext2D.prototype, 'getImageData',
     'fingerprint', 'the pixels of a canvas (getImageData)');
for (const kind of ['WebGLRenderingContext', 'WebGL2RenderingContext']) {
  wrap(window[kind] && window[kind].prototype, 'getExtension', 'fingerprint', 'extensions of WebGL');
  wrap(window[kind] && window[kind].prototype, 'getParameter', 'fingerprint', 'the graphics card (WebGL)');
}
wrap(window.BaseAudioContext && BaseAudioContext.prototype, 'createOscillator', 'fingerprint',
     'the sound of an oscillator');
for (const name of ['plugins', 'mimeTypes', 'hardwareConcurrency', 'deviceMemory', 'maxTouchPoints']) {
  watch(Navigator.prototype, name, 'fingerprint', 'navigator.' + name);
}
wrap(Navigator.prototype, 'getBattery', 'fingerprint', 'the battery');
wrap(window.Intl && Intl.DateTimeFormat.prototype, 'resolvedOptions', 'fingerprint', 'the time zone');
wrap(window.MediaDevices && MediaDevices.prototype, 'enumerateDevices', 'fingerprint',
     'cameras and microphones');
if (window.RTCPeerConnection) {
  const native = window.RTCPeerConnection;
  window.RTCPeerConnection = function (...parts) {
    once('fingerprint', 'addresses of the network (RTCPeerConnection)');
    return Reflect.construct(native, parts, new.target || native);
  };
  window.RTCPeerConnection.prototype = native.prototype;
}

const refused = ' has no use in an ad: nobody answers it here';
for (const name of ['alert', 'confirm', 'prompt', 'print']) wrap(window, name, 'refused', name + '()' + refused);
wrap(window.Geolocation && Geolocation.prototype, 'getCurrentPosition', 'refused', 'geolocation' + refused);
wrap(window.Geolocation && Geolocation.prototype, 'watchPosition', 'refused', 'geolocation' + refused);
wrap(window.Notification, 'requestPermission', 'refused', 'Notification.requestPermission()' + refused);
wrap(window.MediaDevices && MediaDevices.prototype, 'getUserMedia', 'refused', 'getUserMedia()' + refused);
wrap(Element.prototype, 'requestFullscreen', 'refused', 'requestFullscreen()' + refused);

function nameOf(element) {
  return (element.getAttribute('aria-label') || element.getAttribute('title') || element.alt ||
          element.textContent || '').trim();
}
function hasName(element) {
  return nameOf(element) || element.getAttribute('aria-labelledby') ||
      Array.from(element.querySelectorAll('img, svg, input')).some(nameOf);
}
function shown(element) {
  const box = element.getBoundingClientRect();
  return box.width > 2 && box.height > 2 && getComputedStyle(element).visibility !== 'hidden';
}
function start(element) {
  return element.cloneNode(false).outerHTML.slice(0, 120);
}
const seen = new WeakSet();
function nameless(selector, message, isWrong) {
  for (const element of document.querySelectorAll(selector)) {
    if (seen.has(element) || element.closest('[aria-hidden=true]') || !shown(element)) continue;
    seen.add(element);
    if (isWrong(element)) tell(message + start(element), {what: 'nameless', url: document.URL});
  }
}
function lookOver() {
  nameless('img', 'A picture without alt: ', element =>
      !element.hasAttribute('alt') && !element.getAttribute('aria-label') &&
      element.getAttribute('role') !== 'presentation');
  nameless('a[href], button, [role=button], [role=link], input[type=image]',
           'Something to press without a text: ', element => !hasName(element));
  nameless('canvas, iframe, video', 'Something to see without a text: ', element =>
      !nameOf(element) && !element.getAttribute('aria-labelledby') &&
      !element.closest('[aria-label], [role=img]'));
  for (const element of document.querySelectorAll('[src^="http:"], link[href^="http:"], form[action^="http:"]')) {
    const url = element.src || element.href || element.action;
    if (typeof url === 'string') once('address', url, {url});
  }
}
addEventListener('load', () => {
  lookOver();
  tell('loaded', {what: 'looked over'});
  nativeTimer(lookOver, 1000);
});

if (clock) {
  const Native = Date;
  const shifted = class Date extends Native {
    constructor(...parts) { parts.length === 0 ? super(Native.now() + clock) : super(...parts); }
    static now() { return Native.now() + clock; }
  };
  window.Date = new Proxy(shifted, {apply: () => new shifted().toString()});
}
if (language) {
  Object.defineProperty(Navigator.prototype, 'language', {configurable: true, get: () => language});
  Object.defineProperty(Navigator.prototype, 'languages',
                        {configurable: true, get: () => Object.freeze([language])});
}
