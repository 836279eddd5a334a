#include "Interface/About/Credits.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <utility>

namespace murmel {

namespace {

constexpr auto listName = "credits.json";
const std::filesystem::path documentation = "/usr/share/doc";

Credit::Kind kindOf(const QString& word) {
  if (word == QStringLiteral("model")) return Credit::Kind::model;
  if (word == QStringLiteral("engine")) return Credit::Kind::engine;
  return Credit::Kind::library;
}

/// Of a library, in the documentation of its package, with the names of everybody.
std::filesystem::path ownText(const QJsonObject& entry) {
  const auto packages = entry[QStringLiteral("packages")].toArray();
  return packages.isEmpty() ? std::filesystem::path()
                            : documentation / packages.first().toString().toStdString() / "copyright";
}

}  // namespace

QString readableLicense(const QString& file) {
  static const QRegularExpression field(QStringLiteral("^([A-Z][A-Za-z-]+):\\s*(.*)$"));
  static const QRegularExpression gap(QStringLiteral("\n\\s*\n"));
  if (!file.startsWith(QStringLiteral("Format:")) && !file.startsWith(QStringLiteral("Upstream-Name:")))
    return file;
  QStringList texts;
  for (const auto& paragraph : file.split(gap, Qt::SkipEmptyParts)) {
    QStringList lines;
    QString name;
    bool isPackaging = false;
    for (auto line : paragraph.split(u'\n')) {
      if (const auto match = field.match(line); match.hasMatch()) {
        name = match.captured(1);
        line = match.captured(2);
        isPackaging |= name == QStringLiteral("Files") && line == QStringLiteral("debian/*");
        if (name == QStringLiteral("License"))
          line.prepend(lines.isEmpty() ? QString() : QStringLiteral("License: "));
      }
      const bool isCopyright = name == QStringLiteral("Copyright");
      if (!isCopyright && name != QStringLiteral("License") && name != QStringLiteral("Comment")) continue;
      line = line.trimmed();
      if (line == QStringLiteral(".")) line.clear();
      if (isCopyright && !line.isEmpty() && line.front().isDigit()) line.prepend(QStringLiteral("© "));
      if (!line.isEmpty() || !lines.isEmpty()) lines += line;
    }
    const auto text = lines.join(u'\n').trimmed();
    if (!text.isEmpty() && !isPackaging && !texts.contains(text)) texts += text;
  }
  return texts.isEmpty() ? file : texts.join(QStringLiteral("\n\n"));
}

std::vector<Credit> readCredits(const std::filesystem::path& resources) {
  QFile file(QString::fromStdString((resources / listName).string()));
  if (!file.open(QIODevice::ReadOnly)) return {};
  std::vector<Credit> credits;
  const auto entries = QJsonDocument::fromJson(file.readAll()).array();
  for (const auto& value : entries) {
    const auto entry = value.toObject();
    std::error_code missing;
    auto text = ownText(entry);
    const bool isGeneral = text.empty() || !std::filesystem::exists(text, missing);
    if (isGeneral)
      text = resources / "licenses" / (entry[QStringLiteral("license")].toString().toStdString() + ".txt");
    credits.push_back({.kind = kindOf(entry[QStringLiteral("kind")].toString()),
                       .name = entry[QStringLiteral("name")].toString(),
                       .license = entry[QStringLiteral("license")].toString(),
                       .holder = entry[QStringLiteral("holder")].toString(),
                       .address = entry[QStringLiteral("home")].toString(),
                       .text = std::move(text),
                       .isTextGeneral = isGeneral});
  }
  return credits;
}

}  // namespace murmel
