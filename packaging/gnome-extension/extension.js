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
// The shell gives modifiers to the keys that it has not sent yet: they stay down for a while.
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
        if (this._release) {
            GLib.source_remove(this._release);
            this._releaseKeys();
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

    Paste(number, keys) {
        const focus = global.display.focus_window;
        if (!focus || focus.get_stable_sequence() !== number || Main.actionMode !== Shell.ActionMode.NORMAL)
            return NOT_IN_FRONT;
        if (this._release || heldModifiers() !== 0)
            return MODIFIERS_HELD;
        for (const key of keys)
            this._keyboard.notify_key(GLib.get_monotonic_time(), key, Clutter.KeyState.PRESSED);
        this._keyboard.notify_key(GLib.get_monotonic_time(), keys.pop(), Clutter.KeyState.RELEASED);
        this._down = keys.reverse();
        this._release = GLib.timeout_add(GLib.PRIORITY_DEFAULT, PASTE_HOLD_MS, () => {
            this._releaseKeys();
            return GLib.SOURCE_REMOVE;
        });
        return POSTED;
    }

    _releaseKeys() {
        this._release = 0;
        for (const key of this._down)
            this._keyboard.notify_key(GLib.get_monotonic_time(), key, Clutter.KeyState.RELEASED);
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
