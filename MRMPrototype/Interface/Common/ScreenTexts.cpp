#include "Interface/Common/ScreenTexts.h"

#include <QCoreApplication>
#include <array>

namespace murmel {

namespace {

using enum ScreenText::Argument;

/// A text that the screen says in the core's words.
constexpr ScreenText same(const char* text, ScreenText::Argument argument = none) {
  return {text, text, argument};
}

// clang-format off
constexpr auto texts = std::to_array<ScreenText>({
    // How a dictation stands.
    same(QT_TRANSLATE_NOOP("Messages", "Ready")),
    same(QT_TRANSLATE_NOOP("Messages", "Listening… release shortcut")),
    same(QT_TRANSLATE_NOOP("Messages", "Listening · recognition is catching up…")),
    same(QT_TRANSLATE_NOOP("Messages", "Transcribing locally…")),
    same(QT_TRANSLATE_NOOP("Messages", "Inserted")),
    same(QT_TRANSLATE_NOOP("Messages", "Inserted · clipboard restored")),
    same(QT_TRANSLATE_NOOP("Messages", "Inserted · transcript kept")),
    same(QT_TRANSLATE_NOOP("Messages", "Insertion sent · clipboard changed")),
    {"Copied — press ⌘V", QT_TRANSLATE_NOOP("Messages", "Copied — press %paste")},
    same(QT_TRANSLATE_NOOP("Messages", "Cancelled")),

    // What went wrong.
    same(QT_TRANSLATE_NOOP("Messages", "Finish the app update before recording.")),
    same(QT_TRANSLATE_NOOP("Messages", "Download the required Parakeet speech model to use dictation")),
    same(QT_TRANSLATE_NOOP("Messages", "Required Parakeet speech model is not installed")),
    same(QT_TRANSLATE_NOOP("Messages", "Verifying existing local models…")),
    same(QT_TRANSLATE_NOOP("Messages", "Part of the recording was not recognized.")),
    same(QT_TRANSLATE_NOOP("Messages", "Audio configuration changed. Recording stopped; captured audio processed.")),
    same(QT_TRANSLATE_NOOP("Messages", "Audio configuration changed. Recording stopped; no speech was recognized.")),
    {"The application did not take the text. Copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "The application did not take the text. Copied — press %paste.")},
    {"No text field had the keyboard. Copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "No text field had the keyboard. Copied — press %paste.")},
    same(QT_TRANSLATE_NOOP("Messages", "Something else was copied before the application took the text. Choose Copy Last Dictation.")),
    same(QT_TRANSLATE_NOOP("Messages", "Your clipboard could not be kept.")),
    same(QT_TRANSLATE_NOOP("Messages", "Local model is missing: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "Local transcription failed: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "Microphone permission is required")),
    same(QT_TRANSLATE_NOOP("Messages", "Local ASR worker is missing from the app")),
    same(QT_TRANSLATE_NOOP("Messages", "Could not start microphone recording")),
    same(QT_TRANSLATE_NOOP("Messages", "No speech was detected")),
    same(QT_TRANSLATE_NOOP("Messages", "The recording could not be recognized. Please try again.")),
    same(QT_TRANSLATE_NOOP("Messages", "Smart Local model or runtime is not installed")),
    same(QT_TRANSLATE_NOOP("Messages", "Smart Local formatting failed; using the raw transcript")),

    // Why phrases are no longer inserted.
    {"Insertion stopped: you switched applications. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped: you switched applications. Remaining text copied — press %paste.")},
    {"Insertion stopped: the original application is unavailable. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped: the original application is unavailable. Remaining text copied — press %paste.")},
    {"Insertion stopped: the original application is not active. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped: the original application is not active. Remaining text copied — press %paste.")},
    {"Insertion stopped: secure input is enabled. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped: a password field is in front. Remaining text copied — press %paste.")},
    {"Insertion stopped: paste permission is unavailable. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped: paste permission is unavailable. Remaining text copied — press %paste.")},
    {"Insertion stopped: the paste event could not be created. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped: the paste keys could not be sent. Remaining text copied — press %paste.")},
    {"Insertion stopped. Remaining text copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "Insertion stopped. Remaining text copied — press %paste.")},

    // Shortcuts.
    {"Double tap Option", QT_TRANSLATE_NOOP("Messages", "Double tap Alt")},
    same(QT_TRANSLATE_NOOP("Messages", "Caps Lock")),
    same(QT_TRANSLATE_NOOP("Messages", "No shortcut")),
    same(QT_TRANSLATE_NOOP("Messages", "Not configured")),
    same(QT_TRANSLATE_NOOP("Messages", "Hold the shortcut while speaking, then release it.")),
    same(QT_TRANSLATE_NOOP("Messages", "Press Caps Lock once to start and again to stop. Its normal Caps Lock state changes too.")),
    {"Tap Option twice to start, then twice again to stop.",
     QT_TRANSLATE_NOOP("Messages", "Tap Alt twice to start, then twice again to stop.")},
    {"Use the menu bar or floating recording control to start dictation.",
     QT_TRANSLATE_NOOP("Messages", "Use the tray icon or floating recording control to start dictation.")},
    same(QT_TRANSLATE_NOOP("Messages", "Input Monitoring lets your configured shortcut work while other apps are active.")),
    same(QT_TRANSLATE_NOOP("Messages", "Record a shortcut")),
    same(QT_TRANSLATE_NOOP("Messages", "Press and release your shortcut three times")),
    same(QT_TRANSLATE_NOOP("Messages", "%1 detected"), shortcut),
    {"A single typing key would also type in your current app. Use Fn, Option, Control, or add a modifier.",
     QT_TRANSLATE_NOOP("Messages", "A single typing key would also type in your current app. Use Fn, Alt, Ctrl, or add a modifier.")},
    {"%1 was detected. Command and Shift cannot be used alone because normal Mac typing uses them constantly. Use Fn, Option, Control, or hold two modifiers together.",
     QT_TRANSLATE_NOOP("Messages", "%1 was detected. Super and Shift cannot be used alone because normal typing uses them constantly. Use Fn, Alt, Ctrl, or hold two modifiers together."),
     shortcut},
    {"Fn, Option, and Control work alone. Command and Shift must be combined with another modifier or a key. Press Esc to cancel.",
     QT_TRANSLATE_NOOP("Messages", "Fn, Alt, and Ctrl work alone. Super and Shift must be combined with another modifier or a key. Press Esc to cancel.")},

    same(QT_TRANSLATE_NOOP("Messages", "Another program has reserved these keys: both would hear them.")),
    same(QT_TRANSLATE_NOOP("Messages", "This keyboard layout makes another key of Caps Lock, so the shortcut would do nothing.")),
    same(QT_TRANSLATE_NOOP("Messages", "Every Ctrl+C and Ctrl+V would start a dictation too.")),
    same(QT_TRANSLATE_NOOP("Messages", "Alt opens menus, and every Alt+Tab would start a dictation too.")),
    same(QT_TRANSLATE_NOOP("Messages", "Many keyboards switch their layout with these keys.")),
    same(QT_TRANSLATE_NOOP("Messages", "Programs made with GTK write the letter too, for they do not know Super.")),
    same(QT_TRANSLATE_NOOP("Messages", "Alt+Space opens the menu of the window in front.")),
    same(QT_TRANSLATE_NOOP("Messages", "Alt with a letter opens menus in many programs.")),
    same(QT_TRANSLATE_NOOP("Messages", "Programs use Ctrl with a letter to copy, paste, undo and the like.")),
    same(QT_TRANSLATE_NOOP("Messages", "Input methods and editors use Ctrl+Space.")),
    same(QT_TRANSLATE_NOOP("Messages", "Most keyboards keep the Fn key to themselves, and X11 cannot carry it. If holding Fn does nothing, choose Ctrl, Alt or a key combination as the shortcut.")),
    same(QT_TRANSLATE_NOOP("Messages", "Wayland lets no application hear keys while another one is in front. Bind a key to the command \"murmel toggle\" in the keyboard settings of your desktop.")),
    same(QT_TRANSLATE_NOOP("Messages", "There is no display (DISPLAY is not set).")),
    same(QT_TRANSLATE_NOOP("Messages", "The X server cannot be reached.")),
    same(QT_TRANSLATE_NOOP("Messages", "The X server has no screen.")),
    same(QT_TRANSLATE_NOOP("Messages", "The X server has no XInput extension, so keys cannot be heard globally.")),
    same(QT_TRANSLATE_NOOP("Messages", "The X server's XInput is older than 2.2, so keys cannot be heard globally.")),
    same(QT_TRANSLATE_NOOP("Messages", "The X server has no XKB extension, so keys cannot be told apart.")),
    same(QT_TRANSLATE_NOOP("Messages", "The X server does not let this application hear keys.")),

    // What is kept.
    same(QT_TRANSLATE_NOOP("Messages", "Secure local storage is unavailable. Changes remain in memory for this session and may not survive relaunch.")),
    same(QT_TRANSLATE_NOOP("Messages", "Your previous model, %1, is unavailable. Gemma was selected so you can stay offline. You can download and select your previous model in Speech Models."), text),
    same(QT_TRANSLATE_NOOP("Messages", "All 28 languages, recognized automatically")),

    same(QT_TRANSLATE_NOOP("Messages", "The key ring is locked.")),
    same(QT_TRANSLATE_NOOP("Messages", "No key ring (Secret Service) answers on this desktop.")),
    same(QT_TRANSLATE_NOOP("Messages", "The key ring stayed locked.")),
    same(QT_TRANSLATE_NOOP("Messages", "The system has no random bytes.")),
    same(QT_TRANSLATE_NOOP("Messages", "The key ring answered with an error.")),
    same(QT_TRANSLATE_NOOP("Messages", "The file is not a sealed file")),
    same(QT_TRANSLATE_NOOP("Messages", "The key of the sealed file is not available")),
    same(QT_TRANSLATE_NOOP("Messages", "The sealed file was changed since it was written")),
    same(QT_TRANSLATE_NOOP("Messages", "The sealed file holds something else than it should")),
    same(QT_TRANSLATE_NOOP("Messages", "The file does not hold settings of Murmel.")),
    same(QT_TRANSLATE_NOOP("Messages", "The key ring has no default collection yet: its own program (in KDE, the wallet manager) makes one.")),
    same(QT_TRANSLATE_NOOP("Messages", "The file could not be accessed: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "The autostart entry cannot be written: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "The autostart entry cannot be changed: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "There is no setting \"%1\"."), detail),

    // Models.
    same(QT_TRANSLATE_NOOP("Messages", "Qwen3 0.6B Q8 · Fast baseline")),
    same(QT_TRANSLATE_NOOP("Messages", "Qwen3 1.7B Q8 · Balanced")),
    same(QT_TRANSLATE_NOOP("Messages", "Qwen3 4B Q4 · Best quality")),
    same(QT_TRANSLATE_NOOP("Messages", "Gemma 4 E2B Q4 · Recommended")),
    same(QT_TRANSLATE_NOOP("Messages", "Parakeet TDT 0.6B v3 Q8 · Recommended")),
    same(QT_TRANSLATE_NOOP("Messages", "Parakeet TDT 0.6B v3 Q4 · Small")),
    same(QT_TRANSLATE_NOOP("Messages", "SAGE 95M · Russian")),
    same(QT_TRANSLATE_NOOP("Messages", "Preparing for fast dictation…")),
    same(QT_TRANSLATE_NOOP("Messages", "Ready · kept warm in memory")),
    same(QT_TRANSLATE_NOOP("Messages", "Preparation failed · original text remains available")),
    same(QT_TRANSLATE_NOOP("Messages", "Recommended for Russian: SAGE 95M")),
    same(QT_TRANSLATE_NOOP("Messages", "A compact Russian-specific correction candidate. Conservative mode uses only its punctuation and capitalization while preserving the exact ASR words.")),
    same(QT_TRANSLATE_NOOP("Messages", "Recommended for mixed languages: %1"), text),
    same(QT_TRANSLATE_NOOP("Messages", "Use a multilingual model in Conservative mode. Murmel projects punctuation onto the original ASR words, so a model cannot remove or replace them.")),
    same(QT_TRANSLATE_NOOP("Messages", "Recommended model: %1"), text),
    same(QT_TRANSLATE_NOOP("Messages", "No language-specific corrector has passed Murmel's benchmark for this profile yet. Conservative mode preserves the raw wording.")),
    same(QT_TRANSLATE_NOOP("Messages", "There is no other speech model for this computer.")),
    same(QT_TRANSLATE_NOOP("Messages", "The model is installed.")),
    same(QT_TRANSLATE_NOOP("Messages", "The model downloader is missing from the app or is not the app's own.")),
    same(QT_TRANSLATE_NOOP("Messages", "The model downloader could not be started: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "This file is not on the list of approved downloads.")),
    same(QT_TRANSLATE_NOOP("Messages", "The model downloader ended unexpectedly.")),

    same(QT_TRANSLATE_NOOP("Messages", "unknown to the speech model in use")),
    same(QT_TRANSLATE_NOOP("Messages", "This build cannot download models.")),

    // New versions.
    same(QT_TRANSLATE_NOOP("Messages", "The list of updates cannot be read.")),
    same(QT_TRANSLATE_NOOP("Messages", "The list of updates is not signed by the makers of this app.")),
    same(QT_TRANSLATE_NOOP("Messages", "The list of updates is out of date. Check the computer's clock, or try again later.")),
    same(QT_TRANSLATE_NOOP("Messages", "The list of updates is older than one that was seen before.")),
    same(QT_TRANSLATE_NOOP("Messages", "New versions come from the store that this app came from.")),
    same(QT_TRANSLATE_NOOP("Messages", "This build belongs to no release, so there is nothing that could update it.")),
    same(QT_TRANSLATE_NOOP("Messages", "This copy was built here; build it again to update it.")),
    same(QT_TRANSLATE_NOOP("Messages", "The server with the list of updates cannot be reached.")),
    same(QT_TRANSLATE_NOOP("Messages", "The list of updates is too long.")),
    same(QT_TRANSLATE_NOOP("Messages", "The server has no list of updates.")),
    same(QT_TRANSLATE_NOOP("Messages", "The new version did not arrive as it was released.")),
    same(QT_TRANSLATE_NOOP("Messages", "The new version holds something that does not belong there.")),
    same(QT_TRANSLATE_NOOP("Messages", "The new version is not what the list of updates says.")),
    same(QT_TRANSLATE_NOOP("Messages", "The new version does not start on this computer; the one before was kept.")),
    same(QT_TRANSLATE_NOOP("Messages", "The updater is missing from the app or is not the app's own.")),
    same(QT_TRANSLATE_NOOP("Messages", "The updater ended unexpectedly.")),
    same(QT_TRANSLATE_NOOP("Messages", "The update was stopped.")),
    same(QT_TRANSLATE_NOOP("Messages", "The updater could not be started: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "The update is installed. Start Murmel again: %1"), detail),
    same(QT_TRANSLATE_NOOP("Messages", "This computer's processor cannot run it.")),
    same(QT_TRANSLATE_NOOP("Messages", "The microphone that the desktop has chosen.")),

    // What Murmel says by itself.
    same(QT_TRANSLATE_NOOP("Messages", "This desktop shows no tray icons. Start Murmel once more to open its windows, or use commands like “murmel settings”.")),

    // The build and its start.
    same(QT_TRANSLATE_NOOP("Messages", "Full edition")),
    same(QT_TRANSLATE_NOOP("Messages", "Lite edition")),
    same(QT_TRANSLATE_NOOP("Messages", "Development build")),
    same(QT_TRANSLATE_NOOP("Messages", "Ready offline · Models included")),
    same(QT_TRANSLATE_NOOP("Messages", "Lite · Models on demand")),
    same(QT_TRANSLATE_NOOP("Messages", "Local development")),
    same(QT_TRANSLATE_NOOP("Messages", "Finish enabling Automatic Paste")),
    {"macOS needs a fresh %1 process to apply this permission. The app will reopen automatically, and an active Parakeet download will resume. You do not need to restart your Mac.",
     QT_TRANSLATE_NOOP("Messages", "The desktop needs a fresh %1 process to apply this permission. The app will reopen automatically, and an active Parakeet download will resume. You do not need to restart your computer."),
     detail},
    same(QT_TRANSLATE_NOOP("Messages", "Quit & Reopen")),
    same(QT_TRANSLATE_NOOP("Messages", "Not Now")),
    same(QT_TRANSLATE_NOOP("Messages", "%1 could not reopen"), detail),
});
// clang-format on

}  // namespace

std::span<const ScreenText> screenTexts() {
  return texts;
}

}  // namespace murmel
