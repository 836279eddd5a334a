#include "Interface/QtAlertPresenter.h"

#include "Interface/PlatformWords.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

namespace murmel {

void QtAlertPresenter::show(Alert alert, std::function<void(bool accepted)> answer) {
  auto* box =
      new QMessageBox(QMessageBox::Information, inPlatformWords(alert.title), inPlatformWords(alert.text));
  box->setAttribute(Qt::WA_DeleteOnClose);
  const QAbstractButton* accept =
      box->addButton(inPlatformWords(alert.acceptButton), QMessageBox::AcceptRole);
  if (!alert.declineButton.empty())
    box->addButton(inPlatformWords(alert.declineButton), QMessageBox::RejectRole);
  QObject::connect(box, &QDialog::finished, box,
                   [box, accept, answer = std::move(answer)] { answer(box->clickedButton() == accept); });
  box->open();
}

}  // namespace murmel
