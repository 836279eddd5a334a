#include "Interface/Common/Dialogs.h"

#include "Interface/Common/Controls.h"
#include "Interface/Common/Style.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QStringDecoder>
#include <utility>

namespace murmel {

namespace {

struct Dialogs {
  Q_DECLARE_TR_FUNCTIONS(Dialogs)
};

}  // namespace

void confirmRemoval(QWidget* parent, const QString& question, const QString& consequence,
                    const QString& agree, std::function<void()> confirmed) {
  auto* box = new QMessageBox(QMessageBox::Warning, QCoreApplication::applicationName(), question,
                              QMessageBox::NoButton, parent);
  box->setTextFormat(Qt::PlainText);
  box->setInformativeText(consequence);
  constexpr int readableWidth = 340;
  for (auto* words : box->findChildren<QLabel*>()) {
    const bool isQuestion = words->text() == question;
    auto font = words->font();
    if (isQuestion) font.setWeight(QFont::DemiBold);
    words->setFont(font);
    if (isQuestion || words->text() == consequence) words->setMinimumWidth(readableWidth);
  }
  box->setAttribute(Qt::WA_DeleteOnClose);
  auto* keep = box->addButton(literal(Dialogs::tr("Cancel")), QMessageBox::RejectRole);
  auto* remove = box->addButton(literal(agree), QMessageBox::DestructiveRole);
  remove->setProperty(destructiveProperty, true);
  box->setDefaultButton(qobject_cast<QPushButton*>(keep));
  box->setEscapeButton(keep);
  QObject::connect(remove, &QAbstractButton::clicked, box, std::move(confirmed));
  box->open();
}

void openTextFile(QWidget* parent, const QString& title, const QString& filter, qint64 maximumSize,
                  std::function<void(QString text)> done, std::function<void(QString problem)> failed) {
  auto* dialog = new QFileDialog(parent, title, {}, filter);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  QObject::connect(dialog, &QFileDialog::fileSelected, parent,
                   [maximumSize, done = std::move(done), failed = std::move(failed)](const QString& path) {
                     QFile file(path);
                     // A pipe or a device would be waited for.
                     if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
                       return failed(Dialogs::tr("The file cannot be read."));
                     const auto bytes = file.read(maximumSize + 1);
                     if (bytes.size() > maximumSize) return failed(Dialogs::tr("The file is too large."));
                     QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
                     const QString text = decoder(bytes);
                     if (decoder.hasError()) return failed(Dialogs::tr("The file is not a text in UTF-8."));
                     done(text);
                   });
  dialog->open();
}

void saveTextFile(QWidget* parent, const QString& title, const QString& name, const QString& text,
                  std::function<void(QString path)> done, std::function<void(QString problem)> failed) {
  auto* dialog = new QFileDialog(parent, title);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->selectFile(name);
  QObject::connect(dialog, &QFileDialog::fileSelected, parent,
                   [text, done = std::move(done), failed = std::move(failed)](const QString& path) {
                     QSaveFile file(path);
                     const bool saved = file.open(QIODevice::WriteOnly) &&
                                        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                                        file.write(text.toUtf8()) >= 0 && file.commit();
                     if (saved)
                       done(path);
                     else
                       failed(Dialogs::tr("The file cannot be written: %1").arg(file.errorString()));
                   });
  dialog->open();
}

}  // namespace murmel
