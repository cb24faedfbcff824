// MRAID 2.0 for creatives: the object `mraid` that an ad talks to.
//
// Downwards, a creative's calls become command URLs ("mraid://open?url=...") that the SDK sees as
// navigations and refuses to load. Upwards, the SDK evaluates single statements such as
// "mraid.setState('expanded');". Both directions are asynchronous and keep their order.
//
// The script runs at document start, before the first script of the creative and whatever the
// page's base is, and may be loaded a second time by a script tag. A creative may do what it likes
// to the built-in objects afterwards, so what is needed of them is kept here.
(function (window, document) {
  'use strict';

  if (window.mraid && window.mraidbridge) { return; }  // loaded before; that one keeps running

  // How the SDK treats the page: as it always did, or as MRAID 2.0 says where that differs. Each
  // place that differs asks this switch, which a script before this one has set.
  var standards = window.mraidFollowsStandards === true;
  delete window.mraidFollowsStandards;

  var unbound = function (method) { return Function.prototype.call.bind(method); };
  var invoke = unbound(Function.prototype.apply);
  var appendChild = unbound(Node.prototype.appendChild);
  var removeChild = unbound(Node.prototype.removeChild);
  var addListener = unbound(EventTarget.prototype.addEventListener);
  var replaceIn = unbound(String.prototype.replace);
  var toIsoText = unbound(Date.prototype.toISOString);
  var timeOf = unbound(Date.prototype.getTime);
  var attributeOf = unbound(Element.prototype.getAttribute);
  var dispatch = unbound(EventTarget.prototype.dispatchEvent);
  var endHere = unbound(Event.prototype.stopImmediatePropagation);
  var matchesOf = unbound(RegExp.prototype.exec);
  var createElement = document.createElement.bind(document);
  var later = window.setTimeout.bind(window);
  var encode = window.encodeURIComponent;
  var isFiniteNumber = window.isFinite;
  var MutationObserver = window.MutationObserver;
  var toText = window.String;
  var DateType = window.Date;
  var timeOfText = Date.parse;
  var EventType = window.Event;
  var round = Math.round;
  var assign = Object.assign;
  var copy = function (record) { return assign({}, record); };
  var namesOf = Object.keys;
  var Address = window.URL;

  // In a layer, which gives way to whatever the creative itself says.
  if (standards) {
    var sheet = new window.CSSStyleSheet();
    sheet.replaceSync('@layer mraid { body { margin: 0; } }');
    document.adoptedStyleSheets = [sheet];
  }

  function append(list, item) { list[list.length] = item; }

  function contains(list, item) {
    for (var i = 0; i < list.length; i += 1) {
      if (list[i] === item) { return true; }
    }
    return false;
  }

  function without(list, item) {
    var rest = [];
    for (var i = 0; i < list.length; i += 1) {
      if (list[i] !== item) { append(rest, list[i]); }
    }
    return rest;
  }

  // ---- Commands ---------------------------------------------------------------------------------
  //
  // A command goes through the script message handler where there is one: each frame that a page
  // makes costs the host some kilobytes that its engine never gives back.
  //
  // Elsewhere each command is the address of a hidden frame of its own. Location changes would
  // replace one another (of ten in a turn one arrives), while frames arrive all, in order, also
  // while the document is still being parsed.
  //
  // A content policy may forbid frames. Then the blocked frame hears a "load", which one that the
  // SDK has refused never does, and soon after the page hears a "securitypolicyviolation": the
  // command goes through the script message handler instead. A timer that was set after the frame
  // was appended fires after both. By then the frame is settled and can go; timers alone would not
  // do, because they are slow in a page that is not on screen. Later commands use the message
  // handler directly, but not before all frames are settled: they would overtake.

  var framesInFlight = 1000;  // bounds what a flood of commands costs the page and the host
  var postedInTurn = 0;       // messages; as many as frames
  var isTurnNoted = false;
  var waiting = [];           // URLs that have no frame yet, from `firstWaiting` on
  var firstWaiting = 0;
  var unsettled = [];         // { frame, url, wasBlocked }, in order
  var isSettling = false;
  var isWatchingForRoot = false;
  var policyHasRefused = false;
  var framesAreForbidden = false;

  function messageHandler() {
    var handlers = window.webkit && window.webkit.messageHandlers;
    return handlers && handlers.mraid;
  }
  var keptHandler = messageHandler();

  function post(url) {
    var handler = keptHandler || messageHandler();
    if (handler) { handler.postMessage(url); }
  }

  function postInTurn(url) {
    postedInTurn += 1;
    post(url);
    if (isTurnNoted) { return; }
    isTurnNoted = true;
    later(function () {
      isTurnNoted = false;
      postedInTurn = 0;
      pump();
    }, 0);
  }

  function appendFrame(root, url) {
    var command = { frame: createElement('iframe'), url: url, wasBlocked: false };
    command.frame.style.display = 'none';
    command.frame.onload = function () { command.wasBlocked = true; };
    command.frame.src = url;
    append(unsettled, command);
    appendChild(root, command.frame);
  }

  // Settles the blocked commands and, of the others, the first `count`.
  function settle(count) {
    var rest = [];
    for (var i = 0; i < unsettled.length; i += 1) {
      var command = unsettled[i];
      var isBlocked = command.wasBlocked && policyHasRefused;
      if (isBlocked) {
        framesAreForbidden = true;
        post(command.url);
      }
      if (!isBlocked && i >= count) {
        append(rest, command);
      } else if (command.frame.parentNode) {
        removeChild(command.frame.parentNode, command.frame);
      }
    }
    unsettled = rest;
    pump();
  }

  function onPolicyViolation(event) {
    if (event.disposition === 'report') { return; }
    policyHasRefused = true;
    settle(0);
  }

  function settleLater() {
    var count = unsettled.length;
    if (isSettling || count === 0) { return; }
    isSettling = true;
    later(function () {
      isSettling = false;
      settle(count);
    }, 0);
  }

  // Before its first tag a document has no element that could hold a frame.
  function watchForRoot() {
    if (isWatchingForRoot) { return; }
    isWatchingForRoot = true;
    new MutationObserver(function (changes, observer) {
      if (!document.documentElement) { return; }
      observer.disconnect();
      isWatchingForRoot = false;
      pump();
    }).observe(document, { childList: true });
  }

  function pump() {
    var root = document.documentElement;
    for (; firstWaiting < waiting.length && unsettled.length < framesInFlight; firstWaiting += 1) {
      if ((keptHandler || framesAreForbidden) && unsettled.length === 0) {
        if (postedInTurn >= framesInFlight) { break; }
        postInTurn(waiting[firstWaiting]);
      } else if (root) {
        appendFrame(root, waiting[firstWaiting]);
      } else {
        watchForRoot();
        break;
      }
    }
    if (firstWaiting === waiting.length) {
      waiting = [];
      firstWaiting = 0;
    }
    settleLater();
  }

  // Half of a surrogate pair cannot be encoded; a replacement character takes its place.
  function encodeText(text) {
    var units = /[\uD800-\uDBFF][\uDC00-\uDFFF]|[\uD800-\uDFFF]/g;
    return encode(replaceIn(text, units, function (unit) {
      return unit.length === 2 ? unit : '\uFFFD';
    }));
  }

  function send(command, parameters) {
    var names = namesOf(parameters || {});
    var url = 'mraid://' + command;
    for (var i = 0; i < names.length; i += 1) {
      url += (i === 0 ? '?' : '&') + names[i] + '=' + encodeText(toText(parameters[names[i]]));
    }
    append(waiting, url);
    // Added each time, though it counts once: document.open() drops the listeners of a page.
    addListener(window, 'securitypolicyviolation', onPolicyViolation, true);
    pump();
  }

  // ---- The tag ----------------------------------------------------------------------------------
  //
  // A creative asks for this script by a tag of its own. Nothing answers that address, but the
  // script is there already, so the tag hears what it would have heard: a creative that hears of a
  // failure goes on without MRAID.

  addListener(window, 'error', function (event) {
    var tag = event.target;
    if (!tag || tag.tagName !== 'SCRIPT') { return; }
    if (!matchesOf(/(^|\/)mraid\.js([?#]|$)/, toText(attributeOf(tag, 'src')))) { return; }
    endHere(event);
    dispatch(tag, new EventType('load'));
  }, true);

  // ---- Events -----------------------------------------------------------------------------------

  var listeners = assign(Object.create(null), {
    ready: [], error: [], stateChange: [], sizeChange: [], viewableChange: []
  });
  var depth = 0;

  // Listeners may add and remove listeners, themselves included: lists are replaced, not changed.
  // One that throws keeps no other from its event; the page's own error handling hears of it.
  function fire(event, args) {
    var called = listeners[event];
    if (!called || depth > 8) { return; }  // an error listener that causes errors would never end
    depth += 1;
    for (var i = 0; i < called.length; i += 1) {
      if (contains(listeners[event], called[i])) {
        try { invoke(called[i], mraid, args); } catch (failure) { rethrowLater(failure); }
      }
    }
    depth -= 1;
  }

  function rethrowLater(failure) { later(function () { throw failure; }, 0); }

  function fail(message, action) { fire('error', [message, action]); }

  // ---- What is known of the ad ------------------------------------------------------------------

  var isReady = false;     // "ready" has been fired; until then the state reads "loading"
  var isInitSent = false;  // the SDK owes a layout report ...
  var hasLayout = false;   // ... of which the positions are there; the viewability completes it
  var isClosingForGood = false;
  var state = 'loading';
  var placementType = 'inline';
  var isViewable = false;
  var supported = Object.create(null);
  var screenSize = { width: 0, height: 0 };
  var maxSize = { width: 0, height: 0 };
  var currentPosition = { x: 0, y: 0, width: 0, height: 0 };
  var defaultPosition = { x: 0, y: 0, width: 0, height: 0 };
  var heldSizes = [];        // size events that came before "ready"
  var announcedSize = null;  // the size that listeners heard last

  function announceSize(width, height) {
    announcedSize = { width: width, height: height };
    if (!isReady) { return append(heldSizes, [width, height]); }
    fire('sizeChange', [width, height]);
  }

  // Listeners rely on the last size they heard, so it has to be that of the current position.
  function announceCurrentSize() {
    var width = currentPosition.width;
    var height = currentPosition.height;
    if (!announcedSize || announcedSize.width !== width || announcedSize.height !== height) {
      announceSize(width, height);
    }
  }

  function changeViewable(value) {
    var viewable = value && state !== 'hidden';
    if (viewable === isViewable) { return; }
    isViewable = viewable;
    if (isReady) { fire('viewableChange', [viewable]); }
  }

  // Called when the layout report that answers "init" is complete. What changed before is told now,
  // "ready" last: whatever a creative asks for from its first listener on is true.
  function becomeReady() {
    isInitSent = false;
    hasLayout = false;
    if (!isReady) {
      isReady = true;
      if (standards) {  // no size has changed yet
        heldSizes = [];
        announcedSize = copy(currentPosition);
      }
      if (state !== 'loading') { fire('stateChange', [state]); }
      for (var i = 0; i < heldSizes.length; i += 1) { fire('sizeChange', heldSizes[i]); }
      announceCurrentSize();
      if (isViewable) { fire('viewableChange', [true]); }
    }
    fire('ready', []);
  }

  // ---- Properties -------------------------------------------------------------------------------

  var closeControlSide = 50;  // a smaller ad could not be closed
  var largestNumber = 1e9;    // beyond any screen, and still written without an exponent

  function isObject(value) { return typeof value === 'object' && value !== null; }
  function isText(value) { return typeof value === 'string' && !!matchesOf(/\S/, value); }
  function isAbsent(value) { return value === undefined || value === null; }
  function isBoolean(value) { return typeof value === 'boolean'; }

  function numberFrom(lowest) {
    return function (value) {
      return typeof value === 'number' && isFiniteNumber(value) && value >= lowest &&
          value <= largestNumber;
    };
  }

  function oneOf(names) { return function (value) { return contains(names, value); }; }
  function optional(isValid) {
    return function (value) { return isAbsent(value) || isValid(value); };
  }

  // What each member must be, in the order in which commands name them.
  var rules = {
    Expand: {
      width: optional(numberFrom(0)),
      height: optional(numberFrom(0)),
      useCustomClose: optional(isBoolean)
    },
    Orientation: {
      allowOrientationChange: optional(isBoolean),
      forceOrientation: optional(oneOf(['portrait', 'landscape', 'none']))
    },
    Resize: {
      width: numberFrom(closeControlSide),
      height: numberFrom(closeControlSide),
      offsetX: numberFrom(-largestNumber),
      offsetY: numberFrom(-largestNumber),
      allowOffscreen: optional(isBoolean),
      customClosePosition: optional(oneOf(['top-left', 'top-center', 'top-right', 'center',
                                           'bottom-left', 'bottom-center', 'bottom-right']))
    }
  };
  var resizeDefaults = { width: 0, height: 0, offsetX: 0, offsetY: 0, allowOffscreen: true,
                         customClosePosition: 'top-right' };
  var properties = {
    Expand: { width: 0, height: 0, useCustomClose: false },
    Orientation: { allowOrientationChange: true, forceOrientation: 'none' },
    Resize: copy(resizeDefaults)
  };
  var hasExpandSize = false;        // the creative has named one
  var hasResizeProperties = false;  // the creative's are there and valid

  function fillsTheScreen(size) {
    return size.width >= maxSize.width && size.height >= maxSize.height;
  }

  function movedInside(start, length, room) {
    return start < 0 ? 0 : start - (start + length > room ? start + length - room : 0);
  }

  // Where the close area of an ad of these resize properties would stand now.
  function closeAreaIsOnTheScreen(values) {
    var name = isAbsent(values.customClosePosition) ? 'top-right' : values.customClosePosition;
    var left = defaultPosition.x + values.offsetX;
    var top = defaultPosition.y + values.offsetY;
    if (values.allowOffscreen === false) {
      left = movedInside(left, values.width, maxSize.width);
      top = movedInside(top, values.height, maxSize.height);
    }
    var spareWidth = values.width - closeControlSide;
    var spareHeight = values.height - closeControlSide;
    left += matchesOf(/left/, name) ? 0 : matchesOf(/right/, name) ? spareWidth : spareWidth / 2;
    top += matchesOf(/top/, name) ? 0 : matchesOf(/bottom/, name) ? spareHeight : spareHeight / 2;
    return left >= 0 && top >= 0 && left + closeControlSide <= maxSize.width &&
        top + closeControlSide <= maxSize.height;
  }

  // Whether an ad fits where it is to go is for the SDK to say: it knows the screen at the time of
  // the resize. Refused here is what can never fit and, by the standard, what does not fit now.
  function problemWith(kind, values) {
    if (!isObject(values)) { return kind + ' properties must be an object.'; }
    var names = namesOf(rules[kind]);
    for (var i = 0; i < names.length; i += 1) {
      if (!rules[kind][names[i]](values[names[i]])) {
        return kind + ' properties: ' + names[i] + ' is missing or has a wrong value.';
      }
    }
    if (kind !== 'Resize' || !isReady) { return ''; }
    var isTooWide = values.width > maxSize.width;
    var isTooHigh = values.height > maxSize.height;
    if (standards ? isTooWide || isTooHigh : isTooWide && isTooHigh) {
      return 'Resize properties: the size is larger than the max size.';
    }
    return !standards || closeAreaIsOnTheScreen(values) ?
        '' : 'Resize properties: the close area would not be on the screen.';
  }

  // The SDK opens with its default records, sent through the same three setters that a creative
  // calls, between the supported features and the placement type. They must not go back as
  // commands: the SDK would take them for the creative's wishes. A record counts as the SDK's when
  // it arrives in that window and looks like one.
  var expected = { Expand: false, Orientation: false, Resize: false };
  var looksLikeDefault = {
    Expand: function (values) {
      return values.useCustomClose === false && values.isModal === undefined;
    },
    Orientation: function (values) {
      return values.allowOrientationChange === true && values.forceOrientation === 'none';
    },
    Resize: function (values) { return values.width === 0 && values.height === 0; }
  };

  function takeDefault(kind, values) {
    if (!expected[kind] || !isObject(values) || !looksLikeDefault[kind](values)) { return false; }
    expected[kind] = false;
    if (kind === 'Expand' && !hasExpandSize) {
      properties.Expand.width = values.width;
      properties.Expand.height = values.height;
    }
    return true;
  }

  // What is not named keeps its value or, when resizing, its default. The SDK is always told all of
  // it: an allowOffscreen that was left out would mean true to MRAID and false to the SDK.
  function changeProperties(kind, changes) {
    var names = namesOf(rules[kind]);
    var changed = copy(kind === 'Resize' ? resizeDefaults : properties[kind]);
    for (var i = 0; i < names.length; i += 1) {
      var value = changes[names[i]];
      if (isAbsent(value)) { continue; }
      changed[names[i]] = typeof value === 'number' ? round(value) : value;
    }
    properties[kind] = changed;
    send('set' + kind + 'Properties', changed);
  }

  // Resize properties that are refused leave none: the next resize must not use older ones.
  function setProperties(kind, values) {
    if (takeDefault(kind, values)) { return; }
    var problem = problemWith(kind, values);
    if (kind === 'Resize') { hasResizeProperties = !problem; }
    if (problem) { return fail(problem, 'set' + kind + 'Properties'); }
    if (kind === 'Expand') {
      hasExpandSize = hasExpandSize || !isAbsent(values.width) || !isAbsent(values.height);
    }
    changeProperties(kind, values);
  }

  // ---- Calendar events --------------------------------------------------------------------------

  var eventMembers = ['id', 'description', 'location', 'summary', 'start', 'end', 'status',
                      'transparency', 'reminder'];

  // The SDK reads texts in which a backslash does nothing but protect a quote. One of the text's
  // own would do so too where a quote comes next, and is left out there.
  function quoted(text) {
    return '"' + replaceIn(replaceIn(text, /\\+(?="|$)/g, ''), /"/g, '\\"') + '"';
  }

  // What is no date would become the present moment on its way.
  function isDate(value) {
    return isFiniteNumber(value instanceof DateType ? timeOf(value) : timeOfText(toText(value)));
  }

  // An object of texts, dates to the second. Recurrences are left out: the SDK saves single events,
  // and its reader takes no arrays.
  function eventText(event) {
    var text = '';
    for (var i = 0; i < eventMembers.length; i += 1) {
      var value = event[eventMembers[i]];
      if (value instanceof DateType) { value = replaceIn(toIsoText(value), /\.[0-9]+/, ''); }
      if (!isAbsent(value) && !isObject(value)) {
        text += (text ? ',' : '') + quoted(eventMembers[i]) + ':' + quoted(toText(value));
      }
    }
    return '{' + text + '}';
  }

  // ---- For the creative -------------------------------------------------------------------------

  function sendUrl(command, url) {
    if (!isText(url)) { return fail(command + ' needs a URL.', command); }
    send(command, { url: url });
  }

  // The address of a page of the web, or nothing.
  function pageAddress(text) {
    try {
      var address = new Address(toText(text), document.baseURI);
      return matchesOf(/^https?:$/, address.protocol) ? address.href : '';
    } catch (failure) {
      return '';
    }
  }

  var mraid = {
    getVersion: function () { return '2.0'; },
    getState: function () { return isReady ? state : 'loading'; },
    getPlacementType: function () { return placementType; },
    isViewable: function () { return isReady && isViewable; },
    supports: function (feature) { return supported[feature] === true; },
    getScreenSize: function () { return copy(screenSize); },
    getMaxSize: function () { return copy(maxSize); },
    getCurrentPosition: function () { return copy(currentPosition); },
    getDefaultPosition: function () { return copy(defaultPosition); },
    getExpandProperties: function () {
      var present = standards && !hasExpandSize ? screenSize : {};
      return assign({ isModal: true }, properties.Expand, present);
    },
    getResizeProperties: function () { return copy(properties.Resize); },
    getOrientationProperties: function () { return copy(properties.Orientation); },
    setExpandProperties: function (values) { setProperties('Expand', values); },
    setResizeProperties: function (values) { setProperties('Resize', values); },
    setOrientationProperties: function (values) { setProperties('Orientation', values); },
    open: function (url) { sendUrl('open', url); },
    playVideo: function (url) { sendUrl('playVideo', url); },
    storePicture: function (url) { sendUrl('storePicture', url); },

    addEventListener: function (event, listener) {
      if (!listeners[event] || typeof listener !== 'function') {
        fail('A listener needs the name of an event and a function.', 'addEventListener');
      } else if (!contains(listeners[event], listener)) {
        listeners[event] = without(listeners[event], null);
        append(listeners[event], listener);
      }
    },

    // Without a listener every listener of the event is removed.
    removeEventListener: function (event, listener) {
      if (!listeners[event] || !(isAbsent(listener) || typeof listener === 'function')) {
        fail('A listener needs the name of an event and a function.', 'removeEventListener');
      } else {
        listeners[event] = isAbsent(listener) ? [] : without(listeners[event], listener);
      }
    },

    // Quirk: an ad in two parts is not offered by default. The SDK expands the page that it has, so
    // a second one is refused instead of being mistaken for the first.
    expand: function (url) {
      var isSecond = !isAbsent(url) && url !== '';
      if (isSecond && !standards) {
        fail('Expanding to a second page is not available.', 'expand');
      } else if (!isReady || placementType === 'interstitial') {
        fail('The ad can only expand from among content, once it is ready.', 'expand');
      } else if (state === 'default' || state === 'resized') {
        if (!isSecond) { return send('expand'); }
        var address = pageAddress(url);
        if (!address) { return fail('The second page needs an address of the web.', 'expand'); }
        send('expand', { url: address });
      }
    },

    resize: function () {
      if (!isReady || !hasResizeProperties) {
        fail('The ad can only be resized once it is ready and has valid properties.', 'resize');
      } else if (fillsTheScreen(properties.Resize)) {
        fail('Size must be smaller than the max size.', 'resize');  // as the SDK would say, later
      } else {
        send('resize');
      }
    },

    // The SDK answers every close with the default state. An interstitial is gone by then, so the
    // answer reads "hidden" for it.
    close: function () {
      if (state === 'hidden' || (standards && !isReady)) { return; }
      isClosingForGood = placementType === 'interstitial';
      send('close');
    },

    useCustomClose: function (isCustom) {
      if (!isBoolean(isCustom)) { return fail('A boolean is needed.', 'useCustomClose'); }
      changeProperties('Expand', { useCustomClose: isCustom });
    },

    createCalendarEvent: function (event) {
      if (!isObject(event)) { return fail('An event is needed.', 'createCalendarEvent'); }
      if (!optional(isDate)(event.start) || !optional(isDate)(event.end)) {
        return fail('Start and end of an event must be dates.', 'createCalendarEvent');
      }
      send('createCalendarEvent', { event: eventText(event) });
    }
  };

  // ---- For the SDK ------------------------------------------------------------------------------

  mraid.setSupports = function (feature, isSupported) {
    supported[feature] = isSupported === true;
    if (feature === 'storePicture') {  // the last one of the five
      expected = { Expand: true, Orientation: true, Resize: true };
    }
  };

  mraid.setPlacementType = function (name) {
    expected = { Expand: false, Orientation: false, Resize: false };
    placementType = name;
  };

  mraid.setState = function (name) {
    var next = isClosingForGood ? 'hidden' : name;
    if (next === state) { return; }
    state = next;
    if (isReady) { fire('stateChange', [state]); }
    if (state === 'hidden') { changeViewable(false); }
  };

  mraid.setScreenSize = function (size) { screenSize = copy(size); };
  mraid.setMaxSize = function (size) { maxSize = copy(size); };

  mraid.setDefaultPosition = function (rect) {
    defaultPosition = copy(rect);
    hasLayout = isInitSent;
  };

  mraid.setCurrentPosition = function (rect) {
    currentPosition = copy(rect);
    if (isReady) { announceCurrentSize(); }
  };

  mraid.setViewable = function (value) {
    changeViewable(value === true);
    if (hasLayout) { becomeReady(); }
  };

  // All that the standards mode has to say of the ad, in one statement: whatever a listener asks for
  // when it hears of a change is true already.
  mraid.setPlace = function (place) {
    var next = isClosingForGood ? 'hidden' : place.state;
    var isOther = next !== state;
    var wasViewable = isViewable;
    screenSize = copy(place.screen);
    maxSize = copy(place.max);
    defaultPosition = copy(place.normal);
    currentPosition = copy(place.current);
    state = next;
    isViewable = place.viewable && state !== 'hidden';
    if (isInitSent) { return becomeReady(); }
    if (!isReady) { return; }
    var viewable = isViewable;
    if (isOther) { fire('stateChange', [next]); }
    announceCurrentSize();
    if (viewable !== wasViewable) { fire('viewableChange', [viewable]); }
  };

  // "ready" from the SDK means that the page has loaded. The creative hears it when the SDK has
  // answered "init" with a layout report. A size comes as one text with the event's name.
  mraid.fireEvent = function (event) {
    var size = matchesOf(/^sizeChange:width=(-?[0-9.]+),height=(-?[0-9.]+)$/, event);
    if (event === 'ready') {
      isInitSent = true;
      send('init');
    } else if (size) {
      announceSize(+size[1], +size[2]);
    } else {
      fire(event, []);
    }
  };

  mraid.fireErrorEvent = fail;

  // A creative's own `mraid`, made for testing without an SDK, must not take this one's place, and
  // the attempt must not stop the creative's script either.
  Object.defineProperty(window, 'mraid', {
    get: function () { return mraid; },
    set: function () {},
    configurable: true,
    enumerable: true
  });
  window.mraidbridge = { fireErrorEvent: fail };
}(window, document));
