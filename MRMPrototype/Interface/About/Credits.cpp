#include "Interface/About/Credits.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace murmel {

namespace {

constexpr auto listName = "credits.json";
const std::filesystem::path documentation = "/usr/share/doc";

Credit::Kind kindOf(const QString& word) {
  if (word == QStringLiteral("model")) return Credit::Kind::model;
  if (word == QStringLiteral("engine")) return Credit::Kind::engine;
  return Credit::Kind::library;
}

/// The license of what is shipped lies with it; that of a library, in the documentation of its package.
std::filesystem::path textOf(const QJsonObject& entry, const std::filesystem::path& resources) {
  const auto file = entry[QStringLiteral("file")].toString();
  if (!file.isEmpty()) return resources / "licenses" / file.toStdString();
  const auto packages = entry[QStringLiteral("packages")].toArray();
  return packages.isEmpty() ? std::filesystem::path()
                            : documentation / packages.first().toString().toStdString() / "copyright";
}

}  // namespace

std::vector<Credit> readCredits(const std::filesystem::path& resources) {
  QFile file(QString::fromStdString((resources / listName).string()));
  if (!file.open(QIODevice::ReadOnly)) return {};
  std::vector<Credit> credits;
  const auto entries = QJsonDocument::fromJson(file.readAll()).array();
  for (const auto& value : entries) {
    const auto entry = value.toObject();
    credits.push_back({.kind = kindOf(entry[QStringLiteral("kind")].toString()),
                       .name = entry[QStringLiteral("name")].toString(),
                       .license = entry[QStringLiteral("license")].toString(),
                       .holder = entry[QStringLiteral("holder")].toString(),
                       .address = entry[QStringLiteral("home")].toString(),
                       .text = textOf(entry, resources)});
  }
  return credits;
}

}  // namespace murmel
