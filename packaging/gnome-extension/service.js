/* What GNOME Shell tells Murmel and does for it, on the session bus as app.murmel.Shell. Whoever has bound keys loses them
   when they leave the bus. The shell switches extensions off while the screen is locked, and this with them. Its beginning and
   its end differ: those before GNOME 45 are no modules. */
const NAME = 'app.murmel.Shell';
const PATH = '/app/murmel/Shell';
const MURMELS = ['app.murmel.Murmel', 'app.murmel.Murmel.Lite', 'app.murmel.Murmel.Development'];
const INTERFACE = `<node><interface name="app.murmel.Shell">
  <method name="Bind"><arg type="s" name="name" direction="in"/><arg type="s" name="accelerator" direction="in"/>
    <arg type="b" direction="out"/></method>
  <method name="Unbind"><arg type="s" name="name" direction="in"/></method>
  <method name="ActiveWindow"><arg type="(ssuub)" direction="out"/></method>
  <method name="HasWindow"><arg type="u" direction="in"/><arg type="b" direction="out"/></method>
  <method name="Activate"><arg type="u" direction="in"/></method>
  <method name="HeldModifiers"><arg type="u" direction="out"/></method>
  <method name="Paste"><arg type="u" name="window" direction="in"/><arg type="au" name="keys" direction="in"/>
    <arg type="u" direction="out"/></method>
  <method name="LetGo"/>
  <signal name="Pressed"><arg type="s" name="name"/></signal>
  <signal name="Released"><arg type="s" name="name"/></signal>
  <signal name="ActiveWindowChanged"/>
</interface></node>`;

// What Paste answers.
const POSTED = 0, NOT_IN_FRONT = 1, MODIFIERS_HELD = 2;
// The shell takes the modifiers of a key from another thread than the key, and asks the input method before it gives a window
// the key: the modifiers stay down until Murmel says that the text was read, or for HOLD_LIMIT_MS when nobody reads it.
const PRESS_LIMIT_MS = 300;
const HOLD_LIMIT_MS = 1000;
const POLL_MS = 2;
const WATCH_MS = 15;
const MODES = Shell.ActionMode.NORMAL | Shell.ActionMode.OVERVIEW | Shell.ActionMode.POPUP;
const MODIFIERS = Clutter.ModifierType.SHIFT_MASK | Clutter.ModifierType.CONTROL_MASK | Clutter.ModifierType.MOD1_MASK |
    Clutter.ModifierType.MOD4_MASK | Clutter.ModifierType.MOD5_MASK | Clutter.ModifierType.SUPER_MASK;

function heldModifiers() {
    return global.get_pointer()[2] & MODIFIERS;
}

function windowNumbered(number) {
    return global.get_window_actors().map(actor => actor.meta_window).find(w => w.get_stable_sequence() === number);
}

class Service {
    constructor() {
        this._bindings = new Map();   // by name: {action, client, watch}
        this._clients = new Map();    // by bus name: the watch for its end
        this._murmels = new Set();    // bus names that are Murmel's
        for (const [, name] of INTERFACE.matchAll(/method name="(\w+)"/g))
            this[`${name}Async`] = (args, invocation) => this._answer(name, args, invocation);
        this._object = Gio.DBusExportedObject.wrapJSObject(INTERFACE, this);
        this._object.export(Gio.DBus.session, PATH);
        this._owner = Gio.bus_own_name_on_connection(Gio.DBus.session, NAME, Gio.BusNameOwnerFlags.NONE, null, null);
        this._accelerators = global.display.connect('accelerator-activated', (_display, action) => this._activated(action));
        this._focus = global.display.connect('notify::focus-window', () => this._object.emit_signal('ActiveWindowChanged', null));
        const backend = global.stage.context?.get_backend?.() ?? Clutter.get_default_backend();
        const seat = backend.get_default_seat();
        this._keyboard = seat.create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
    }

    destroy() {
        for (const name of [...this._bindings.keys()])
            this._unbind(name);
        for (const watch of this._clients.values())
            Gio.bus_unwatch_name(watch);
        global.display.disconnect(this._accelerators);
        global.display.disconnect(this._focus);
        if (this._step) {
            GLib.source_remove(this._step);
            this._releaseModifiers();
        }
        this._object.unexport();
        Gio.bus_unown_name(this._owner);
        this._keyboard = null;
    }

    // Calls are answered that come from the process that is Murmel on the bus.
    _answer(method, args, invocation) {
        const sender = invocation.get_sender();
        const askBus = (name, then) => Gio.DBus.session.call('org.freedesktop.DBus', '/', 'org.freedesktop.DBus',
            'GetConnectionUnixProcessID', new GLib.Variant('(s)', [name]), null, Gio.DBusCallFlags.NONE, 1000, null,
            (bus, result) => {
                try {
                    then(bus.call_finish(result).deepUnpack()[0]);
                } catch {
                    then(0);
                }
            });
        const isMurmel = process => {
            if (process)
                this._murmels.add(sender);
            this[`_${method}`](args, invocation);
        };
        const refuse = () => invocation.return_dbus_error('org.freedesktop.DBus.Error.AccessDenied', 'This is for Murmel.');
        if (this._murmels.has(sender)) {
            isMurmel(0);
            return;
        }
        askBus(sender, process => {
            const ask = ([name, ...others]) => askBus(name, owner => {
                if (owner && owner === process)
                    isMurmel(process);
                else if (others.length > 0)
                    ask(others);
                else
                    refuse();
            });
            ask(MURMELS);
        });
    }

    _Bind([name, accelerator], invocation) {
        this._unbind(name);
        const client = invocation.get_sender();
        const action = global.display.grab_accelerator(accelerator, Meta.KeyBindingFlags.IGNORE_AUTOREPEAT);
        if (action !== Meta.KeyBindingAction.NONE) {
            Main.wm.allowKeybinding(Meta.external_binding_name_for_action(action), MODES);
            this._bindings.set(name, {action, client, watch: 0});
            this._follow(client);
        }
        invocation.return_value(new GLib.Variant('(b)', [action !== Meta.KeyBindingAction.NONE]));
    }

    _Unbind([name], invocation) {
        this._unbind(name);
        invocation.return_value(null);
    }

    _ActiveWindow(_args, invocation) {
        const window = global.display.focus_window;
        const described = !window || Main.actionMode !== Shell.ActionMode.NORMAL ? ['', '', 0, 0, false]
            : [window.get_wm_class() || '', window.get_gtk_application_id() || '', Math.max(window.get_pid(), 0),
                window.get_stable_sequence(), window.get_client_type() === Meta.WindowClientType.X11];
        invocation.return_value(new GLib.Variant('((ssuub))', [described]));
    }

    _HasWindow([number], invocation) {
        invocation.return_value(new GLib.Variant('(b)', [windowNumbered(number) !== undefined]));
    }

    _Activate([number], invocation) {
        windowNumbered(number)?.activate(global.get_current_time());
        invocation.return_value(null);
    }

    _HeldModifiers(_args, invocation) {
        invocation.return_value(new GLib.Variant('(u)', [heldModifiers()]));
    }

    _Paste([number, keys], invocation) {
        const answer = result => invocation.return_value(new GLib.Variant('(u)', [result]));
        if (!this._mayPasteInto(number)) {
            answer(NOT_IN_FRONT);
            return;
        }
        if (this._step || heldModifiers() !== 0) {
            answer(MODIFIERS_HELD);
            return;
        }
        const key = keys.pop();
        this._down = keys;
        for (const modifier of keys)
            this._press(modifier, true);
        // Milliseconds in 32 bits; X programs say it themselves.
        const wasGiven = () => ((global.display.focus_window.get_user_time() - this._pressedAt) | 0) >= 0;
        this._when(() => !this._mayPasteInto(number) || wasGiven(), PRESS_LIMIT_MS, () => {
            const isInFront = this._mayPasteInto(number);
            this._isRead = !isInFront;
            if (isInFront) {
                this._press(key, true);
                this._press(key, false);
            }
            answer(isInFront ? POSTED : NOT_IN_FRONT);
            this._when(() => this._isRead, HOLD_LIMIT_MS, () => this._releaseModifiers());
        });
    }

    _LetGo(_args, invocation) {
        this._isRead = true;
        invocation.return_value(null);
    }

    _mayPasteInto(number) {
        const focus = global.display.focus_window;
        return focus && focus.get_stable_sequence() === number && Main.actionMode === Shell.ActionMode.NORMAL;
    }

    // Calls back when it is so, or at the limit.
    _when(isSo, limit, then) {
        const end = GLib.get_monotonic_time() + limit * 1000;
        this._step = GLib.timeout_add(GLib.PRIORITY_DEFAULT, POLL_MS, () => {
            if (!isSo() && GLib.get_monotonic_time() < end)
                return GLib.SOURCE_CONTINUE;
            this._step = 0;
            then();
            return GLib.SOURCE_REMOVE;
        });
    }

    _press(key, isDown) {
        // Each in a millisecond of its own, by which it is known again.
        const time = Math.max(GLib.get_monotonic_time(), (this._lastTime || 0) + 1000);
        this._lastTime = time;
        if (isDown)
            this._pressedAt = Math.floor(time / 1000);
        this._keyboard.notify_key(time, key, isDown ? Clutter.KeyState.PRESSED : Clutter.KeyState.RELEASED);
    }

    _releaseModifiers() {
        for (const modifier of this._down.reverse())
            this._press(modifier, false);
    }

    _follow(client) {
        if (this._clients.has(client))
            return;
        this._clients.set(client, Gio.bus_watch_name_on_connection(Gio.DBus.session, client, Gio.BusNameWatcherFlags.NONE, null,
            () => {
                for (const [name, binding] of [...this._bindings]) {
                    if (binding.client === client)
                        this._unbind(name);
                }
                Gio.bus_unwatch_name(this._clients.get(client));
                this._clients.delete(client);
            }));
    }

    _unbind(name) {
        const binding = this._bindings.get(name);
        if (!binding)
            return;
        if (binding.watch)
            GLib.source_remove(binding.watch);
        global.display.ungrab_accelerator(binding.action);
        this._bindings.delete(name);
    }

    _activated(action) {
        for (const [name, binding] of this._bindings) {
            if (binding.action !== action || binding.watch)
                continue;
            this._object.emit_signal('Pressed', new GLib.Variant('(s)', [name]));
            // The shell tells nobody of the release of a key that was grabbed: its modifiers are looked at until one is up.
            const held = heldModifiers();
            if (held === 0)
                continue;
            binding.watch = GLib.timeout_add(GLib.PRIORITY_HIGH, WATCH_MS, () => {
                if ((heldModifiers() & held) === held)
                    return GLib.SOURCE_CONTINUE;
                binding.watch = 0;
                this._object.emit_signal('Released', new GLib.Variant('(s)', [name]));
                return GLib.SOURCE_REMOVE;
            });
        }
    }
}
