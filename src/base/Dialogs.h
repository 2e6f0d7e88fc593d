#pragma once

#include <QString>
#include <QUrl>

#include <optional>

// The one door through which the program asks the user anything or tells them anything:
// message boxes, Yes/No questions, input boxes, file choices, the beep and opening a web
// address in the desktop's browser. Windows and the core's sequences call dialogs();
// the desktop program installs a widget implementation, the command line a console one,
// and tests a scripted one that records what was asked and answers without blocking.
class Dialogs {
public:
    enum class Icon { None, Information, Exclamation, Critical, Question };
    enum class UrlResult { Opened, NoBrowser, Failed };
    struct PrintChoice {
        int copies = 1;
        bool preview = false;
    };

    virtual ~Dialogs() = default;

    virtual void message(const QString &text, const QString &title, Icon icon) = 0;
    // A Yes/No question with the question icon; true means Yes.
    virtual bool question(const QString &text, const QString &title) = 0;
    // A one-line input box; nothing when cancelled.
    virtual std::optional<QString> input(const QString &prompt, const QString &title,
                                         const QString &value) = 0;
    // File choosers; empty text when cancelled. `filter` uses the Qt form "Opis (*.ext)".
    virtual QString openFileName(const QString &title, const QString &dir, const QString &filter) = 0;
    virtual QString saveFileName(const QString &title, const QString &path, const QString &filter) = 0;
    virtual void beep() = 0;
    virtual UrlResult openUrl(const QUrl &url) = 0;
    // The copies window before a printout ("Wydruk"): copies and the preview switch, preset
    // from the arguments; nothing when cancelled.
    virtual std::optional<PrintChoice> printCopies(int copies, bool preview) = 0;

    // Shorthands for the usual boxes.
    void information(const QString &text, const QString &title = QString())
    {
        message(text, title, Icon::Information);
    }
    void exclamation(const QString &text, const QString &title = QString())
    {
        message(text, title, Icon::Exclamation);
    }
};

// The dialogs now in force. Never null: before anything is installed it is the console one.
Dialogs &dialogs();
// Installs `d` (not owned; nullptr puts the console one back). Returns the previous one.
Dialogs *setDialogs(Dialogs *d);

// Writes messages to standard error and answers every question with its default (Yes),
// every input and file choice with nothing. Used by the command line and for unattended runs.
class ConsoleDialogs : public Dialogs {
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

// The common error report of every handler that traps an error: a beep, then a box
// titled "Błąd" with the exclamation icon telling the error's description and number.
void ErrorReport(const QString &description, int number = 0);
// The text of that box.
QString errorReportText(const QString &description, int number);
