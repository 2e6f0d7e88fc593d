#pragma once

class QWidget;

// Closes a window of the program: the frame around it when it stands in the main
// window's work area, else the window itself.
void closeWindow(QWidget *window);

class QIcon;
// The program's icon: a payment slip with its character boxes.
QIcon programIcon();
