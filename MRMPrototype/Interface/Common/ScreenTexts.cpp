#include "Interface/Common/ScreenTexts.h"

#include <QCoreApplication>
#include <array>

namespace murmel {

namespace {

using enum ScreenText::Argument;

/// A text that the screen says in the core's words.
#define SAME(text) \
  { text, QT_TRANSLATE_NOOP("Messages", text) }
#define SAME_WITH(text, argument) \
  { text, QT_TRANSLATE_NOOP("Messages", text), argument }

// clang-format off
constexpr auto texts = std::to_array<ScreenText>({
    // How a dictation stands.
    SAME("Ready"),
    SAME("Listening… release shortcut"),
    SAME("Listening · recognition is catching up…"),
    SAME("Transcribing locally…"),
    SAME("Inserted"),
    SAME("Inserted · clipboard restored"),
    SAME("Inserted · transcript kept"),
    SAME("Insertion sent · clipboard changed"),
    {"Copied — press ⌘V", QT_TRANSLATE_NOOP("Messages", "Copied — press %paste")},
    SAME("Cancelled"),

    // What went wrong.
    SAME("Finish the app update before recording."),
    SAME("Download the required Parakeet speech model to use dictation"),
    SAME("Required Parakeet speech model is not installed"),
    SAME("Verifying existing local models…"),
    SAME("Part of the recording was not recognized."),
    SAME("Audio configuration changed. Recording stopped; captured audio processed."),
    SAME("Audio configuration changed. Recording stopped; no speech was recognized."),
    {"The application did not take the text. Copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "The application did not take the text. Copied — press %paste.")},
    {"No text field had the keyboard. Copied — press ⌘V.",
     QT_TRANSLATE_NOOP("Messages", "No text field had the keyboard. Copied — press %paste.")},
    SAME("Something else was copied before the application took the text. Choose Copy Last Dictation."),
    SAME("Your clipboard could not be kept."),
    SAME_WITH("Local model is missing: %1", detail),
    SAME_WITH("Local transcription failed: %1", detail),
    SAME("Microphone permission is required"),
    SAME("Local ASR worker is missing from the app"),
    SAME("Could not start microphone recording"),
    SAME("No speech was detected"),
    SAME("The recording could not be recognized. Please try again."),
    SAME("Smart Local model or runtime is not installed"),
    SAME("Smart Local formatting failed; using the raw transcript"),

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
    SAME("Caps Lock"),
    SAME("No shortcut"),
    SAME("Not configured"),
    SAME("Hold the shortcut while speaking, then release it."),
    SAME("Press Caps Lock once to start and again to stop. Its normal Caps Lock state changes too."),
    {"Tap Option twice to start, then twice again to stop.",
     QT_TRANSLATE_NOOP("Messages", "Tap Alt twice to start, then twice again to stop.")},
    {"Use the menu bar or floating recording control to start dictation.",
     QT_TRANSLATE_NOOP("Messages", "Use the tray icon or floating recording control to start dictation.")},
    SAME("Input Monitoring lets your configured shortcut work while other apps are active."),
    SAME("Record a shortcut"),
    SAME("Press and release your shortcut three times"),
    SAME_WITH("%1 detected", shortcut),
    {"A single typing key would also type in your current app. Use Fn, Option, Control, or add a modifier.",
     QT_TRANSLATE_NOOP("Messages", "A single typing key would also type in your current app. Use Fn, Alt, Ctrl, or add a modifier.")},
    {"%1 was detected. Command and Shift cannot be used alone because normal Mac typing uses them constantly. Use Fn, Option, Control, or hold two modifiers together.",
     QT_TRANSLATE_NOOP("Messages", "%1 was detected. Super and Shift cannot be used alone because normal typing uses them constantly. Use Fn, Alt, Ctrl, or hold two modifiers together."),
     shortcut},
    {"Fn, Option, and Control work alone. Command and Shift must be combined with another modifier or a key. Press Esc to cancel.",
     QT_TRANSLATE_NOOP("Messages", "Fn, Alt, and Ctrl work alone. Super and Shift must be combined with another modifier or a key. Press Esc to cancel.")},

    // What is kept.
    SAME("Secure local storage is unavailable. Changes remain in memory for this session and may not survive relaunch."),
    SAME_WITH("Your previous model, %1, is unavailable. Gemma was selected so you can stay offline. You can download and select your previous model in Speech Models.", text),
    SAME("All 28 languages, recognized automatically"),

    // Models.
    SAME("Qwen3 0.6B Q8 · Fast baseline"),
    SAME("Qwen3 1.7B Q8 · Balanced"),
    SAME("Qwen3 4B Q4 · Best quality"),
    SAME("Gemma 4 E2B Q4 · Recommended"),
    SAME("Parakeet TDT 0.6B v3 Q8 · Recommended"),
    SAME("Parakeet TDT 0.6B v3 Q4 · Small"),
    SAME("SAGE 95M · Russian"),
    SAME("Preparing for fast dictation…"),
    SAME("Ready · kept warm in memory"),
    SAME("Preparation failed · original text remains available"),
    SAME("Recommended for Russian: SAGE 95M"),
    SAME("A compact Russian-specific correction candidate. Conservative mode uses only its punctuation and capitalization while preserving the exact ASR words."),
    SAME_WITH("Recommended for mixed languages: %1", text),
    SAME("Use a multilingual model in Conservative mode. Murmel projects punctuation onto the original ASR words, so a model cannot remove or replace them."),
    SAME_WITH("Recommended model: %1", text),
    SAME("No language-specific corrector has passed Murmel's benchmark for this profile yet. Conservative mode preserves the raw wording."),
    SAME("There is no other speech model for this computer."),
    SAME("The model is installed."),
    SAME("The model downloader is missing from the app or is not the app's own."),
    SAME_WITH("The model downloader could not be started: %1", detail),
    SAME("This file is not on the list of approved downloads."),
    SAME("The model downloader ended unexpectedly."),

    // The build and its start.
    SAME("Full edition"),
    SAME("Lite edition"),
    SAME("Development build"),
    SAME("Ready offline · Models included"),
    SAME("Lite · Models on demand"),
    SAME("Local development"),
    SAME("Finish enabling Automatic Paste"),
    {"macOS needs a fresh %1 process to apply this permission. The app will reopen automatically, and an active Parakeet download will resume. You do not need to restart your Mac.",
     QT_TRANSLATE_NOOP("Messages", "The desktop needs a fresh %1 process to apply this permission. The app will reopen automatically, and an active Parakeet download will resume. You do not need to restart your computer."),
     detail},
    SAME("Quit & Reopen"),
    SAME("Not Now"),
    SAME_WITH("%1 could not reopen", detail),
});
// clang-format on

#undef SAME
#undef SAME_WITH

}  // namespace

std::span<const ScreenText> screenTexts() {
  return texts;
}

}  // namespace murmel
