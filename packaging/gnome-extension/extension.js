/* What GNOME Shell tells Murmel and does for it, on the session bus as app.murmel.Shell. Whoever has bound keys loses them
   when they leave the bus. The shell switches extensions off while the screen is locked, and this with them. */
const {Clutter, Gio, GLib, Meta, Shell} = imports.gi;
const Main = imports.ui.main;

const NAME = 'app.murmel.Shell';
const PATH = '/app/murmel/Shell';
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
  <signal name="Pressed"><arg type="s" name="name"/></signal>
  <signal name="Released"><arg type="s" name="name"/></signal>
  <signal name="ActiveWindowChanged"/>
</interface></node>`;

// What Paste answers.
const POSTED = 0, NOT_IN_FRONT = 1, MODIFIERS_HELD = 2;
// The shell takes the modifiers of a key from another thread than the key: they go down before, and stay down for a while.
const PASTE_GAP_MS = 20;
const PASTE_HOLD_MS = 150;
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
        this._object = Gio.DBusExportedObject.wrapJSObject(INTERFACE, this);
        this._object.export(Gio.DBus.session, PATH);
        this._owner = Gio.bus_own_name_on_connection(Gio.DBus.session, NAME, Gio.BusNameOwnerFlags.NONE, null, null);
        this._accelerators = global.display.connect('accelerator-activated', (_display, action) => this._activated(action));
        this._focus = global.display.connect('notify::focus-window', () => this._object.emit_signal('ActiveWindowChanged', null));
        const seat = Clutter.get_default_backend().get_default_seat();
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

    BindAsync([name, accelerator], invocation) {
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

    Unbind(name) {
        this._unbind(name);
    }

    ActiveWindow() {
        const window = global.display.focus_window;
        if (!window || Main.actionMode !== Shell.ActionMode.NORMAL)
            return ['', '', 0, 0, false];
        return [window.get_wm_class() || '', window.get_gtk_application_id() || '', Math.max(window.get_pid(), 0),
            window.get_stable_sequence(), window.get_client_type() === Meta.WindowClientType.X11];
    }

    HasWindow(number) {
        return windowNumbered(number) !== undefined;
    }

    Activate(number) {
        windowNumbered(number)?.activate(global.get_current_time());
    }

    HeldModifiers() {
        return heldModifiers();
    }

    PasteAsync([number, keys], invocation) {
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
        this._after(PASTE_GAP_MS, () => {
            const isInFront = this._mayPasteInto(number);
            if (isInFront) {
                this._press(key, true);
                this._press(key, false);
            }
            answer(isInFront ? POSTED : NOT_IN_FRONT);
            this._after(PASTE_HOLD_MS, () => this._releaseModifiers());
        });
    }

    _mayPasteInto(number) {
        const focus = global.display.focus_window;
        return focus && focus.get_stable_sequence() === number && Main.actionMode === Shell.ActionMode.NORMAL;
    }

    _after(milliseconds, job) {
        this._step = GLib.timeout_add(GLib.PRIORITY_DEFAULT, milliseconds, () => {
            this._step = 0;
            job();
            return GLib.SOURCE_REMOVE;
        });
    }

    _press(key, isDown) {
        const state = isDown ? Clutter.KeyState.PRESSED : Clutter.KeyState.RELEASED;
        this._keyboard.notify_key(GLib.get_monotonic_time(), key, state);
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

let service = null;

function init() {
}

function enable() {
    service = new Service();
}

function disable() {
    service.destroy();
    service = null;
}
