"""Owns the clipboard with a screenshot of a large screen, in every form that Qt makes of it when it is asked."""

from PyQt5.QtCore import Qt
from PyQt5.QtGui import QColor, QImage, QLinearGradient, QPainter
from PyQt5.QtWidgets import QApplication

application = QApplication([])
image = QImage(3840, 2160, QImage.Format_ARGB32)
gradient = QLinearGradient(0, 0, 3840, 2160)
gradient.setColorAt(0, QColor("darkblue"))
gradient.setColorAt(1, QColor("orange"))
painter = QPainter(image)
painter.fillRect(image.rect(), gradient)
painter.end()
application.clipboard().setImage(image)
print("owned", flush=True)
application.exec_()
