#include "Interface/PlatformWords.h"

namespace murmel {

QString inPlatformWords(std::string_view text) {
  auto words = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  words.replace(QStringLiteral("⌘V"), QStringLiteral("Ctrl+V"));
  words.replace(QStringLiteral("macOS needs"), QStringLiteral("The desktop needs"));
  words.replace(QStringLiteral("restart your Mac"), QStringLiteral("restart your computer"));
  return words;
}

}  // namespace murmel
