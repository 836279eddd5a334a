#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace murmel {

/// Asks before something is lost for good. Does not block; `confirmed` runs when the user agrees. The safe
/// answer is the one that Enter gives.
void confirmRemoval(QWidget* parent, const QString& question, const QString& consequence,
                    const QString& agree, std::function<void()> confirmed);

/// Reads a text file of the user's choice; at most `maximumSize` bytes, and only UTF-8. Exactly one of the
/// two is called, unless the user chooses none.
void openTextFile(QWidget* parent, const QString& title, const QString& filter, qint64 maximumSize,
                  std::function<void(QString text)> done, std::function<void(QString problem)> failed);
/// Writes a text file of the user's choice, readable by the user alone.
void saveTextFile(QWidget* parent, const QString& title, const QString& name, const QString& text,
                  std::function<void(QString path)> done, std::function<void(QString problem)> failed);

}  // namespace murmel
