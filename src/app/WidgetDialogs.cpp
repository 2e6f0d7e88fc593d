#include "WidgetDialogs.h"

#include "print/ui/frmPrintkopie.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

namespace {

QWidget *owner()
{
    return QApplication::activeWindow();
}

QString boxTitle(const QString &title)
{
    return title.isEmpty() ? QStringLiteral("Zlecanki") : title;
}

} // namespace

void WidgetDialogs::message(const QString &text, const QString &title, Icon icon)
{
    QMessageBox box(owner());
    box.setWindowTitle(boxTitle(title));
    box.setText(text);
    switch (icon) {
    case Icon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case Icon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case Icon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case Icon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case Icon::None:
        break;
    }
    box.addButton(QStringLiteral("&OK"), QMessageBox::AcceptRole);
    box.exec();
}

bool WidgetDialogs::question(const QString &text, const QString &title)
{
    QMessageBox box(owner());
    box.setWindowTitle(boxTitle(title));
    box.setText(text);
    box.setIcon(QMessageBox::Question);
    QPushButton *yes = box.addButton(QStringLiteral("&Tak"), QMessageBox::YesRole);
    QPushButton *no = box.addButton(QStringLiteral("&Nie"), QMessageBox::NoRole);
    box.setDefaultButton(yes);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

std::optional<QString> WidgetDialogs::input(const QString &prompt, const QString &title, const QString &value)
{
    QInputDialog dialog(owner());
    dialog.setWindowTitle(boxTitle(title));
    dialog.setLabelText(prompt);
    dialog.setTextValue(value);
    dialog.setOkButtonText(QStringLiteral("&OK"));
    dialog.setCancelButtonText(QStringLiteral("&Anuluj"));
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

QString WidgetDialogs::openFileName(const QString &title, const QString &dir, const QString &filter)
{
    return QFileDialog::getOpenFileName(owner(), title, dir, filter);
}

QString WidgetDialogs::saveFileName(const QString &title, const QString &path, const QString &filter)
{
    return QFileDialog::getSaveFileName(owner(), title, path, filter);
}

void WidgetDialogs::beep()
{
    QApplication::beep();
}

Dialogs::UrlResult WidgetDialogs::openUrl(const QUrl &url)
{
    if (QStandardPaths::findExecutable(QStringLiteral("xdg-open")).isEmpty())
        return UrlResult::NoBrowser;
    return QDesktopServices::openUrl(url) ? UrlResult::Opened : UrlResult::Failed;
}

std::optional<Dialogs::PrintChoice> WidgetDialogs::printCopies(int copies, bool preview)
{
    frmPrintkopie window(copies, preview, owner());
    if (window.exec() != QDialog::Accepted)
        return std::nullopt;
    return PrintChoice{window.copies(), window.preview()};
}
