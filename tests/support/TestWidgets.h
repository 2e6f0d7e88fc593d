#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QString>

#include <initializer_list>
#include <utility>

// A window's control by its object name; a missing one ends the test program.
template <typename T = QWidget>
T *child(QWidget *window, const QString &name)
{
    T *w = window->findChild<T *>(name);
    if (!w)
        qFatal("no control %s", qPrintable(name));
    return w;
}

// Types into the named fields of a window: {"txtnazwa", "ACME"}, ...
inline void fill(QWidget *window, std::initializer_list<std::pair<const char *, const char *>> fields)
{
    for (const auto &[name, value] : fields)
        child<QLineEdit>(window, QLatin1String(name))->setText(QString::fromUtf8(value));
}

inline void click(QWidget *window, const QString &name)
{
    child<QPushButton>(window, name)->click();
}

// The shown top-level window of type T, such as one a command has just opened; nullptr when none.
template <typename T>
T *shownWindow()
{
    for (QWidget *top : QApplication::topLevelWidgets())
        if (auto *w = qobject_cast<T *>(top); w && w->isVisible())
            return w;
    return nullptr;
}
