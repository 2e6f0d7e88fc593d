#pragma once

#include "Dialogs.h"

// The desktop's dialogs: message boxes, questions and input boxes with Polish buttons,
// the file chooser and the browser, over the active window.
class WidgetDialogs : public Dialogs {
public:
    void message(const QString &text, const QString &title, Icon icon) override;
    bool question(const QString &text, const QString &title) override;
    std::optional<QString> input(const QString &prompt, const QString &title, const QString &value) override;
    QString openFileName(const QString &title, const QString &dir, const QString &filter) override;
    QString saveFileName(const QString &title, const QString &path, const QString &filter) override;
    void beep() override;
    UrlResult openUrl(const QUrl &url) override;
    std::optional<PrintChoice> printCopies(int copies, bool preview) override;
};
