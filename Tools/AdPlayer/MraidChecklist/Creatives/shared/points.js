// What the creatives of the checklist share: they tell whoever plays them which points are met, and
// ask for what only a person or a host can do. Both go over the wire, so that any page can, and the
// answers come back as scripts.
(function () {
  'use strict';

  var source = document.currentScript.src;
  var server = source.slice(0, source.indexOf('/assets/'));
  var key = Math.random().toString(36).slice(2);
  var patience = 10000;  // milliseconds, until the player has said how long
  var notDue = [];       // points that are not met here: no long wait for them
  var shortly = 1500;
  var waiting = {};
  var asked = 0;
  var last = Promise.resolve();
  var heard = [];

  function wire(kind, fields) {
    var text = Object.keys(fields).map(function (name) {
      return name + '=' + encodeURIComponent(String(fields[name]));
    }).join('&');
    return fetch(server + '/track/checklist/' + kind + '?' + text,
                 { mode: 'no-cors', keepalive: true }).catch(function () {});
  }

  // One after the other, so that the end is the last word.
  function tell(kind, fields) {
    last = last.then(function () { return wire(kind, fields); });
    return last;
  }

  function pause(milliseconds) {
    return new Promise(function (done) { setTimeout(done, milliseconds); });
  }

  window.checklist = {
    server: server,
    heard: heard,

    point: function (name, isMet, found) {
      return tell('point', { name: name, met: isMet ? 1 : 0, found: found === undefined ? '' : found });
    },

    // At once, for a page that is about to go.
    lastPoint: function (name, isMet) { return wire('point', { name: name, met: isMet ? 1 : 0, found: '' }); },

    // Resolves with the answer of whoever plays the creative.
    ask: function (act, fields) {
      var id = key + (asked += 1);
      tell('ask', Object.assign({ act: act, id: id }, fields));
      return new Promise(function (done) { waiting[id] = done; });
    },
    answer: function (id, value) {
      if (!waiting[id]) { return false; }
      waiting[id](value);
      delete waiting[id];
      return true;
    },

    // Whether `isSo`, on which the point of that name hangs, becomes true before patience ends.
    until: async function (isSo, point) {
      var end = Date.now() + (notDue.indexOf(point) < 0 ? patience : shortly);
      while (!isSo()) {
        if (Date.now() > end) { return false; }
        await pause(20);
      }
      return true;
    },

    // Everything that was asked for by now has had its effect.
    settle: function () { return window.checklist.ask('settle'); },

    // The person touches the ad, and it acts on that.
    tapped: async function (act) {
      await window.checklist.ask('tap');
      act();
    },

    take: function () { return heard.splice(0); },

    // The steps once the ad is ready, whatever becomes of them.
    run: function (steps) {
      ['stateChange', 'sizeChange', 'viewableChange', 'error', 'ready'].forEach(function (event) {
        mraid.addEventListener(event, function () {
          heard.push([event].concat(Array.prototype.slice.call(arguments)).join(' '));
        });
      });
      var begin = async function () {
        var said = await window.checklist.ask('patience');
        patience = 1000 * said.seconds;
        notDue = said.notDue;
        try { await steps(); } catch (trouble) { tell('trouble', { text: trouble }); }
        tell('end', {});
      };
      if (mraid.getState() === 'loading') {
        var started = false;
        mraid.addEventListener('ready', function () {
          if (!started) { started = true; begin(); }
        });
      } else {
        begin();
      }
    },

    same: function (left, right) {
      return ['x', 'y', 'width', 'height'].every(function (side) { return left[side] === right[side]; });
    },
    text: function (rect) { return JSON.stringify(rect); }
  };

  window.addEventListener('error', function (event) {
    if (event.message) { tell('trouble', { text: event.message + ' line ' + event.lineno }); }
  });
}());
